// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

/// What the program remembers from one start to the next. Main thread only.
class Settings
{
public:
    Settings() = delete;

    static QStringList libraries();
    static void setLibraries(const QStringList &paths);
    /// The libraries that assets were seen in.
    static QStringList filledLibraries();
    static void setFilled(const QString &library, bool isFilled);
    static QString folder();
    static void setFolder(const QString &path);

    static QStringList favourites();
    static void setFavourites(const QStringList &uuids);
    /// The last used one last; as many as MaxRecent.
    static QStringList recent();
    static void addRecent(const QStringList &uuids);
    static constexpr int MaxRecent = 100;

    static int tileSize();
    static void setTileSize(int size);
    /// Of the list of assets; empty where nobody has chosen any.
    static QList<int> columnWidths();
    static void setColumnWidths(const QList<int> &widths);
    static bool showsLines();
    static void setShowsLines(bool shows);

    static QByteArray windowGeometry();
    static QByteArray windowState();
    static void setWindow(const QByteArray &geometry, const QByteArray &state);

    /// Whether the program runs for the first time; false from the next call of setWelcomed() on.
    static bool isFirstStart();
    static void setWelcomed();
};
