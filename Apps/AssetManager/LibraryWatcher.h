// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QSet>
#include <QTimer>

/// Notices that something changed in folders, once it is quiet there. Main thread only.
class LibraryWatcher final : public QObject
{
    Q_OBJECT

public:
    explicit LibraryWatcher(QObject *parent = nullptr);

    void watch(const QString &folder);
    /// The folder and all below.
    void forget(const QString &folder);

Q_SIGNALS:
    void changed(const QString &folder);

private:
    void announce();

    QFileSystemWatcher _watcher;
    QSet<QString> _changed;
    QTimer _timer;
};
