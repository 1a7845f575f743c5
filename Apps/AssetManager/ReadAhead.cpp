// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ReadAhead.h"

#include "AssetManager/DirectoryStamp.h"
#include "AssetManager/DriveInquiry.h"
#include "Assets/kxUrlManager.h"

#include <QFile>
#include <QSet>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace {

constexpr qint64 MostContents = 1024 * 1024; // bytes: descriptions are short

// One may be held up in a directory that is not the next to be looked at.
constexpr int MaxWorkers = 2;

} // namespace

struct ReadAhead::Wanted
{
    QString directory;
    bool withContents = false;
    kxUrlManager *manager = nullptr; ///< looked up by the main thread: at the end there is no list of them
};

struct ReadAhead::State
{
    explicit State(ReadAhead *reader) : owner(reader) {}

    void drop();
    bool next(Wanted &found);
    void finish(const QString &directory);

    std::mutex mutex; ///< guards what follows
    std::condition_variable changed;
    ReadAhead *owner;          ///< null once nobody wants anything of this any more
    std::vector<Wanted> queue; ///< the next one last
    QSet<QString> wanted;      ///< those, and that which is being read
    QSet<QString> read;
    int workers = 0;
    bool isAwaited = false;
};

/// With the mutex held.
void ReadAhead::State::drop()
{
    queue.clear();
    wanted.clear();
    read.clear();
    isAwaited = false;
}

/// On a worker, as is what follows.
bool ReadAhead::State::next(Wanted &found)
{
    const std::lock_guard lock(mutex);
    if (queue.empty()) {
        --workers;
        changed.notify_all();
        return false;
    }
    found = std::move(queue.back());
    queue.pop_back();
    return true;
}

void ReadAhead::State::finish(const QString &directory)
{
    const std::lock_guard lock(mutex);
    if (!wanted.remove(directory))
        return; // nobody waits for it any more
    read.insert(directory);
    if (!isAwaited || !owner)
        return;
    isAwaited = false;
    QMetaObject::invokeMethod(owner, &ReadAhead::advanced, Qt::QueuedConnection);
}

ReadAhead::ReadAhead(QObject *parent) : QObject(parent), _state(std::make_shared<State>(this)) {}

ReadAhead::~ReadAhead()
{
    leaveState();
    const auto end = std::chrono::steady_clock::now() + DriveInquiry::Farewell;
    for (const std::weak_ptr<State> &left : _givenUp)
        if (const std::shared_ptr<State> state = left.lock()) {
            std::unique_lock lock(state->mutex);
            state->changed.wait_until(lock, end, [&state] { return state->workers == 0; });
        }
}

void ReadAhead::want(const QStringList &directories, bool withContents)
{
    const std::lock_guard lock(_state->mutex);
    for (auto directory = directories.rbegin(); directory != directories.rend(); ++directory)
        if (!_state->wanted.contains(*directory) && !_state->read.contains(*directory)) {
            _state->wanted.insert(*directory);
            _state->queue.push_back(
                {*directory, withContents, kxUrlManager::getUrlManager(QUrl::fromLocalFile(*directory))});
        }
    for (auto most = static_cast<int>(_state->queue.size()); most > 0 && _state->workers < MaxWorkers; --most) {
        ++_state->workers;
        std::thread([state = _state] { work(*state); }).detach();
    }
}

bool ReadAhead::isWanted(const QString &directory) const
{
    const std::lock_guard lock(_state->mutex);
    return _state->wanted.contains(directory) || _state->read.contains(directory);
}

bool ReadAhead::take(const QString &directory)
{
    const std::lock_guard lock(_state->mutex);
    const bool isRead = _state->read.remove(directory);
    _state->isAwaited = !isRead;
    return isRead;
}

void ReadAhead::clear()
{
    const std::lock_guard lock(_state->mutex);
    _state->drop();
}

void ReadAhead::giveUp()
{
    leaveState();
    _state = std::make_shared<State>(this);
}

/// Those that nobody works on any more are forgotten.
void ReadAhead::leaveState()
{
    _givenUp.erase(std::remove_if(_givenUp.begin(), _givenUp.end(),
                                  [](const std::weak_ptr<State> &left) { return left.expired(); }),
                   _givenUp.end());
    {
        const std::lock_guard lock(_state->mutex);
        _state->drop();
        _state->owner = nullptr;
    }
    _givenUp.push_back(_state);
    _state.reset();
}

void ReadAhead::work(State &state)
{
    Wanted wanted;
    while (state.next(wanted)) {
        if (wanted.manager)
            read(*wanted.manager, wanted.directory, wanted.withContents);
        state.finish(wanted.directory);
    }
}

void ReadAhead::read(kxUrlManager &manager, const QString &directory, bool withContents)
{
    const DirectoryStamp stamp(directory); // asks for each file's size and time
    const std::vector<QUrl> files =
        manager.files(QUrl::fromLocalFile(directory), {QStringLiteral("*.xml")}, QDir::NoSort);
    if (!withContents)
        return;
    for (const QUrl &found : files) {
        QFile file(found.toLocalFile());
        if (file.open(QIODevice::ReadOnly))
            file.read(MostContents);
    }
}
