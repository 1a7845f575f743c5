// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QSet>
#include <QStringList>
#include <QThreadPool>

#include <mutex>
#include <vector>

/// Reads directories before the main thread does, which then finds in memory what it asks for: the window does not stand still
/// over a drive that takes its time to answer. What is read is dropped; who reads after it sees what is there then.
///
/// Main thread only, but for the reading itself.
class ReadAhead final : public QObject
{
    Q_OBJECT

public:
    explicit ReadAhead(QObject *parent = nullptr);
    /// Waits for the directory that is being read.
    ~ReadAhead() override;

    /// Has these read before all that was wanted earlier, the first one first; without the descriptions of assets when only what
    /// changed is looked for. Those that are wanted already are left out.
    void want(const QStringList &directories, bool withContents);
    bool isWanted(const QString &directory) const;
    /// Whether it was read, which is forgotten then. Otherwise it is told when that may have changed.
    bool take(const QString &directory);
    /// Nothing is wanted any more.
    void clear();

Q_SIGNALS:
    /// More was read since take() failed.
    void advanced();

private:
    struct Wanted
    {
        QString directory;
        bool withContents = false;
    };

    void work();
    bool next(Wanted &wanted);
    void finish(const QString &directory);
    static void read(const Wanted &wanted);

    mutable std::mutex _mutex;  ///< guards what follows
    std::vector<Wanted> _queue; ///< the next one last
    QSet<QString> _wanted;      ///< those, and that which is being read
    QSet<QString> _read;
    int _workers = 0;
    bool _isAwaited = false;

    QThreadPool _pool;
};
