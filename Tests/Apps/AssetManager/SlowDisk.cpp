// SPDX-License-Identifier: Apache-2.0
#include "SlowDisk.h"

#include <QCoreApplication>
#include <QThread>

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <new>

namespace {

constexpr std::chrono::seconds Patience(60);

bool isMainThread()
{
    return QThread::currentThread() == QCoreApplication::instance()->thread();
}

bool liesIn(const QUrl &url, const QString &folder)
{
    return (url.toLocalFile() + '/').startsWith(folder + '/');
}

} // namespace

SlowDisk &SlowDisk::the()
{
    // The first one by address answers: this lies below everything that is made while the program runs. Back-ends are never
    // destroyed.
    alignas(SlowDisk) static std::byte place[sizeof(SlowDisk)];
    static auto *const disk = new (static_cast<void *>(place)) SlowDisk;
    return *disk;
}

SlowDisk::SlowDisk()
{
    registerManager(this);
}

void SlowDisk::begin(const QString &root)
{
    {
        const std::lock_guard lock(_mutex);
        _root = root;
        _held.clear();
        _arePreviewsHeld = false;
        _previewsAsked.clear();
        _readByMainThread.clear();
    }
    EXPECT_EQ(getUrlManager(QUrl::fromLocalFile(root)), this);
}

void SlowDisk::end()
{
    const std::lock_guard lock(_mutex);
    _root.clear();
    _held.clear();
    _arePreviewsHeld = false;
    _changed.notify_all();
}

void SlowDisk::hold(const QString &folder)
{
    const std::lock_guard lock(_mutex);
    _held = folder;
}

void SlowDisk::holdPreviews()
{
    const std::lock_guard lock(_mutex);
    _arePreviewsHeld = true;
}

void SlowDisk::letGo()
{
    const std::lock_guard lock(_mutex);
    _held.clear();
    _arePreviewsHeld = false;
    _changed.notify_all();
}

QStringList SlowDisk::previewsAsked() const
{
    const std::lock_guard lock(_mutex);
    return _previewsAsked;
}

int SlowDisk::waitingCount() const
{
    const std::lock_guard lock(_mutex);
    return _waitingCount;
}

QStringList SlowDisk::readByMainThread() const
{
    const std::lock_guard lock(_mutex);
    return _readByMainThread;
}

bool SlowDisk::accepts(const QUrl &url) const
{
    const std::lock_guard lock(_mutex);
    return !_root.isEmpty() && kxLocalUrlManager::accepts(url) && liesIn(url, _root);
}

std::vector<QUrl> SlowDisk::files(const QUrl &url, const QStringList &nameFilters, QDir::SortFlags sort)
{
    waitFor(url);
    return kxLocalUrlManager::files(url, nameFilters, sort);
}

bool SlowDisk::loadImageFromDir(const QUrl &url, QImage *image) const
{
    {
        std::unique_lock lock(_mutex);
        (isMainThread() ? _readByMainThread : _previewsAsked).append(url.toLocalFile());
        if (!isMainThread())
            waitUntil(lock, [this] { return !_arePreviewsHeld; });
    }
    return kxLocalUrlManager::loadImageFromDir(url, image);
}

void SlowDisk::waitFor(const QUrl &url) const
{
    if (isMainThread())
        return;
    std::unique_lock lock(_mutex);
    waitUntil(lock, [&] { return _held.isEmpty() || !liesIn(url, _held); });
}

void SlowDisk::waitUntil(std::unique_lock<std::mutex> &lock, const std::function<bool()> &isFree) const
{
    ++_waitingCount;
    EXPECT_TRUE(_changed.wait_for(lock, Patience, isFree)) << "nobody let go";
    --_waitingCount;
}
