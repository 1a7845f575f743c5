// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ReadAhead.h"

#include "AssetManager/DirectoryStamp.h"
#include "Assets/kxUrlManager.h"

#include <QFile>
#include <QUrl>
#include <QtConcurrent>

namespace {

constexpr qint64 MostContents = 1024 * 1024; // bytes: descriptions are short

// One may be held up in a directory that is not the next to be looked at.
constexpr int MaxWorkers = 2;

} // namespace

ReadAhead::ReadAhead(QObject *parent) : QObject(parent)
{
    _pool.setMaxThreadCount(MaxWorkers);
}

ReadAhead::~ReadAhead()
{
    clear();
    _pool.waitForDone();
}

void ReadAhead::want(const QStringList &directories, bool withContents)
{
    const std::lock_guard lock(_mutex);
    for (auto directory = directories.rbegin(); directory != directories.rend(); ++directory)
        if (!_wanted.contains(*directory) && !_read.contains(*directory)) {
            _wanted.insert(*directory);
            _queue.push_back({*directory, withContents});
        }
    while (!_queue.empty() && _workers < MaxWorkers) {
        ++_workers;
        QtConcurrent::run(&_pool, this, &ReadAhead::work);
    }
}

bool ReadAhead::isWanted(const QString &directory) const
{
    const std::lock_guard lock(_mutex);
    return _wanted.contains(directory) || _read.contains(directory);
}

bool ReadAhead::take(const QString &directory)
{
    const std::lock_guard lock(_mutex);
    const bool isRead = _read.remove(directory);
    _isAwaited = !isRead;
    return isRead;
}

void ReadAhead::clear()
{
    const std::lock_guard lock(_mutex);
    _queue.clear();
    _wanted.clear();
    _read.clear();
    _isAwaited = false;
}

/// On a worker, as is what it calls.
void ReadAhead::work()
{
    Wanted wanted;
    while (next(wanted)) {
        read(wanted);
        finish(wanted.directory);
    }
}

bool ReadAhead::next(Wanted &wanted)
{
    const std::lock_guard lock(_mutex);
    if (_queue.empty()) {
        --_workers;
        return false;
    }
    wanted = std::move(_queue.back());
    _queue.pop_back();
    return true;
}

void ReadAhead::finish(const QString &directory)
{
    const std::lock_guard lock(_mutex);
    if (!_wanted.remove(directory))
        return; // nobody waits for it any more
    _read.insert(directory);
    if (!_isAwaited)
        return;
    _isAwaited = false;
    QMetaObject::invokeMethod(this, &ReadAhead::advanced, Qt::QueuedConnection);
}

void ReadAhead::read(const Wanted &wanted)
{
    const QUrl url = QUrl::fromLocalFile(wanted.directory);
    kxUrlManager *manager = kxUrlManager::getUrlManager(url);
    if (!manager)
        return;
    const DirectoryStamp stamp(wanted.directory); // asks for each file's size and time
    const std::vector<QUrl> files = manager->files(url, {QStringLiteral("*.xml")}, QDir::NoSort);
    if (!wanted.withContents)
        return;
    for (const QUrl &found : files) {
        QFile file(found.toLocalFile());
        if (file.open(QIODevice::ReadOnly))
            file.read(MostContents);
    }
}
