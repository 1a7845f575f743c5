// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/DirectoryStamp.h"

#include <QFileSystemWatcher>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTimer>

/// Notices that something changed in folders, once it is quiet there. Main thread only.
///
/// Files that are overwritten where they are change no folder. The directories of assets that a person sees are therefore looked
/// at every second, and no others: a hundred thousand would cost too much.
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

    static constexpr int MaxSeen = 256;

Q_SIGNALS:
    void changed(const QString &folder);
    void assetChanged(const QString &directory);

private:
    void announce();
    void look();

    QFileSystemWatcher _watcher;
    QSet<QString> _changed;
    QSet<QString> _changedAssets;
    QTimer _timer;
    QMap<QString, DirectoryStamp> _seen; ///< asset directories, as they were when they were looked at
    QTimer _lookTimer;
};
