// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/PreviewCache.h"

#include "Assets/kxUrlManager.h"
#include "SceneGraph/ExternalThread.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QThread>
#include <QUrl>

#include <algorithm>
#include <iterator>

namespace {

constexpr int MaxUnderWay = 4; // few, so that what is scrolled to is not behind what was

bool hasPayload(const QString &directory)
{
    const QFileInfoList files = QDir(directory).entryInfoList({QStringLiteral("*.osb")}, QDir::Files);
    return std::any_of(files.begin(), files.end(), [](const QFileInfo &file) { return file.size() > 0; });
}

} // namespace

struct PreviewCache::Result
{
    QString uuid;
    QImage image;
    bool hasPayload = false;
};

PreviewCache::PreviewCache(int capacity, QObject *parent) : QObject(parent), _pixmaps(capacity)
{
    _timer.setSingleShot(true);
    connect(&_timer, &QTimer::timeout, this, &PreviewCache::loadNext);
}

PreviewCache::~PreviewCache() = default;

QPixmap PreviewCache::find(const QString &uuid) const
{
    const QPixmap *found = _pixmaps.object(uuid);
    return found ? *found : QPixmap();
}

void PreviewCache::want(const std::vector<Wanted> &wanted)
{
    _queue.clear();
    for (auto next = wanted.rbegin(); next != wanted.rend(); ++next)
        if (!_pixmaps.contains(next->uuid) && !_missing.contains(next->uuid) && !_underWay.contains(next->uuid))
            _queue.push_back(*next);
    loadNext();
}

void PreviewCache::forget(const QString &uuid)
{
    _pixmaps.remove(uuid);
    _missing.remove(uuid);
}

void PreviewCache::loadNext()
{
    const int most = std::clamp(QThread::idealThreadCount() - 1, 1, MaxUnderWay);
    while (busyCount() < most) {
        const auto found =
            std::find_if(_queue.rbegin(), _queue.rend(), [this](const Wanted &wanted) { return !isHeldUp(wanted); });
        if (found == _queue.rend())
            break;
        const Wanted next = *found;
        _queue.erase(std::next(found).base());
        Loading &loading = _underWay[next.uuid];
        loading.drive = driveOf(next.directory);
        loading.since.start();
        const kxUrlManager *manager = kxUrlManager::getUrlManager(QUrl::fromLocalFile(next.directory));
        _inquiry.ask([this, next, manager] { return [this, result = load(next, manager)] { receive(result); }; });
    }
    if (!_queue.empty())
        _timer.start(_patience + 1);
}

bool PreviewCache::isIdle() const
{
    return busyCount() == 0 &&
           std::all_of(_queue.begin(), _queue.end(), [this](const Wanted &wanted) { return isHeldUp(wanted); });
}

/// How many are loaded on drives that may be expected to answer.
int PreviewCache::busyCount() const
{
    return static_cast<int>(std::count_if(_underWay.begin(), _underWay.end(), [this](const Loading &loading) {
        return !loading.since.hasExpired(_patience);
    }));
}

QString PreviewCache::driveOf(const QString &directory) const
{
    const QString library = _libraryOf ? _libraryOf(directory) : QString();
    return library.isEmpty() ? QFileInfo(directory).path() : library;
}

/// Whether another asset on the same drive waits for it without an answer.
bool PreviewCache::isHeldUp(const Wanted &wanted) const
{
    if (busyCount() == static_cast<int>(_underWay.size()))
        return false;
    return std::any_of(_underWay.begin(), _underWay.end(),
                       [this, drive = driveOf(wanted.directory)](const Loading &loading) {
                           return loading.since.hasExpired(_patience) && loading.drive == drive;
                       });
}

/// On a worker.
PreviewCache::Result PreviewCache::load(const Wanted &wanted, const kxUrlManager *manager)
{
    Result result{wanted.uuid, {}, hasPayload(wanted.directory)};
    const QUrl url = QUrl::fromLocalFile(wanted.directory);
    if (manager) {
        const osg::KnownThread known;
        manager->loadImageFromDir(url, &result.image);
    }
    if (result.image.width() > Size || result.image.height() > Size)
        result.image = result.image.scaled(Size, Size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return result;
}

void PreviewCache::receive(const Result &result)
{
    _underWay.remove(result.uuid);
    ++_loadedCount;
    if (result.image.isNull()) {
        _missing.insert(result.uuid, new bool(true));
    } else {
        auto *pixmap = new QPixmap(QPixmap::fromImage(result.image));
        _pixmaps.insert(result.uuid, pixmap, std::max(1, pixmap->width() * pixmap->height() * 4 / 1024));
    }
    emit brokenFound(result.uuid, !result.hasPayload);
    emit loaded(result.uuid);
    loadNext();
}
