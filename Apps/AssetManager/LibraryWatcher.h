// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/DirectoryStamp.h"

#include <QFileSystemWatcher>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTimer>

#include <map>

/// Notices that something changed in folders, once it is quiet there. Main thread only.
///
/// Files that are overwritten where they are change no folder, and drives that come no folder on them. The directories of assets
/// that a person sees, and the libraries, are therefore looked at every second, and no others: a hundred thousand would cost too
/// much.
class LibraryWatcher final : public QObject
{
    Q_OBJECT

public:
    explicit LibraryWatcher(QObject *parent = nullptr);

    void watch(const QString &folder);
    /// The folder and all below.
    void forget(const QString &folder);
    /// Replaces the asset directories that are looked at; of more than MaxSeen, the first ones are.
    void setSeen(const QStringList &directories);
    /// The same for those that a person sees elsewhere than among the assets.
    void setUsed(const QStringList &directories);
    /// Replaces the libraries of which it is noticed that they go and come, as their drives do.
    void setLibraries(const QStringList &libraries);

    static constexpr int MaxSeen = 256;

Q_SIGNALS:
    void changed(const QString &folder);
    void assetChanged(const QString &directory);

private:
    using Stamps = QMap<QString, DirectoryStamp>;

    /// What a path leads to, which is something else once a drive came or went.
    struct Place
    {
        explicit Place(const QString &path);
        friend bool operator==(const Place &a, const Place &b) { return a.device == b.device && a.file == b.file; }

        quint64 device = 0; ///< both 0 where there is nothing
        quint64 file = 0;
    };

    void announce();
    void look();
    bool isElsewhere(const QString &library, Place &place);
    void lookAt(Stamps &assets);
    void lookWhileNeeded();
    static void replace(Stamps &assets, const QStringList &directories);

    QFileSystemWatcher _watcher;
    QSet<QString> _changed;
    QSet<QString> _changedAssets;
    QTimer _timer;
    Stamps _seen; ///< asset directories, as they were when they were looked at
    Stamps _used;
    std::map<QString, Place> _libraries;
    QTimer _lookTimer;
};
