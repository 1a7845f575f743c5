// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/AtomicFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <memory>
#include <random>
#include <string_view>
#include <utility>

namespace osg {

namespace {

/// Small writes are gathered up to this size, so that a field at a time costs no system call each.
constexpr std::size_t BufferSize = std::size_t{256} * 1024;

constexpr int MaxLinks = 40; // as many as the system itself follows

class Descriptor
{
public:
    Descriptor() = default;
    explicit Descriptor(int number) : _number(number) {}
    Descriptor(Descriptor &&other) noexcept : _number(std::exchange(other._number, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(_number, other._number);
        return *this;
    }
    ~Descriptor() { close(); }

    bool isOpen() const { return _number >= 0; }
    int number() const { return _number; }

    /// False when the system reports a write that failed late, as network file systems do.
    bool close()
    {
        const int number = std::exchange(_number, -1);
        return number < 0 || ::close(number) == 0 || errno == EINTR;
    }

private:
    int _number = -1;
};

std::string directoryOf(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return {};
    return path.substr(0, slash + 1);
}

/// The path behind the links at its end, whether or not something is there. Empty with errno set on a loop.
std::string resolveLinks(std::string path)
{
    std::array<char, PATH_MAX> target{};
    for (int i = 0; i < MaxLinks; ++i) {
        const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
        if (length < 0)
            return path;
        const std::string link(target.data(), static_cast<std::size_t>(length));
        path = link.front() == '/' ? link : directoryOf(path).append(link);
    }
    errno = ELOOP;
    return {};
}

constexpr std::string_view SiblingStart = ".kx-";
constexpr std::string_view SiblingEnd = ".part";
constexpr std::size_t SiblingDigits = 16;

bool isSiblingName(std::string_view name)
{
    return name.size() == SiblingStart.size() + SiblingDigits + SiblingEnd.size() && name.starts_with(SiblingStart) &&
           name.ends_with(SiblingEnd);
}

/// Removes the file when nobody has written it for a while and nobody holds it: a process holds its own until it ends.
void removeIfAbandoned(const std::string &path)
{
    constexpr std::time_t WhileSeconds = 60; // far longer than from the making of a file to holding it
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode) ||
        std::time(nullptr) - status.st_mtime < WhileSeconds)
        return;
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (file.isOpen() && ::flock(file.number(), LOCK_EX | LOCK_NB) == 0)
        ::unlink(path.c_str());
}

/// A process that was killed while it wrote has left its sibling behind.
void removeAbandonedSiblings(const std::string &folder)
{
    const std::unique_ptr<DIR, int (*)(DIR *)> entries(::opendir(folder.empty() ? "." : folder.c_str()), ::closedir);
    while (const dirent *entry = entries ? ::readdir(entries.get()) : nullptr)
        if (isSiblingName(static_cast<const char *>(entry->d_name)))
            removeIfAbandoned(folder + static_cast<const char *>(entry->d_name));
}

/// Independent of the target's name, which may fill the whole length that a name may have.
std::string siblingPath(const std::string &target)
{
    std::random_device random;
    std::array<char, 32> name{};
    static_assert(sizeof(unsigned) * 4 == SiblingDigits);
    std::snprintf(name.data(), name.size(), ".kx-%08x%08x.part", random(), random());
    return directoryOf(target) + name.data();
}

Descriptor createSibling(const std::string &target, mode_t permissions, std::string &sibling)
{
    for (int attempt = 0; attempt < 16; ++attempt) {
        sibling = siblingPath(target);
        const int number = ::open(sibling.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, permissions);
        if (number >= 0)
            ::flock(number, LOCK_EX | LOCK_NB); // where a file system knows no locks, nobody removes anything
        if (number >= 0 || errno != EEXIST)
            return Descriptor(number);
    }
    return Descriptor();
}

bool writeAll(int number, const char *data, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = ::write(number, data, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        if (written == 0) {
            errno = ENOSPC;
            return false;
        }
        data += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

/// Pipes and devices know no flushing, which is no failure.
bool flush(int number)
{
    return ::fsync(number) == 0 || errno == EINVAL;
}

/// Owner and group are kept where the system lets us; the permissions are the owner's business and have to be.
bool copyPermissions(int number, const struct stat &from)
{
    [[maybe_unused]] const int owned = ::fchown(number, from.st_uid, from.st_gid);
    return ::fchmod(number, from.st_mode & 07777) == 0;
}

/// True where a new name cannot be made in the folder although the file that is there may be written.
bool forbidsNewNames(int reason)
{
    return reason == EACCES || reason == EPERM || reason == EROFS || reason == EBUSY || reason == ETXTBSY;
}

} // namespace

class AtomicFile::Private
{
public:
    enum class Mode {
        Closed,
        Sibling, ///< written beside the target, then renamed
        Kept,    ///< kept in memory, then written over the target
        Direct   ///< device or pipe, written as it comes
    };

    explicit Private(std::string targetPath) : path(std::move(targetPath)) {}

    bool open();
    bool openRegular();
    bool flushBuffer();
    bool finish();
    bool finishSibling();
    bool overwriteTarget();
    bool copyOverTarget();
    bool reserve(off_t size) const;
    void close();

    std::string path;    ///< as given
    std::string target;  ///< behind the links
    std::string sibling; ///< empty: there is none
    struct stat targetStatus = {};
    bool targetExists = false;
    Mode mode = Mode::Closed;
    Descriptor file;
    std::string buffer;
    int failure = 0; ///< errno of the first one
};

bool AtomicFile::Private::open()
{
    target = resolveLinks(path);
    if (target.empty())
        return false;
    targetExists = ::stat(target.c_str(), &targetStatus) == 0;
    if (!targetExists && errno != ENOENT)
        return false;
    if (targetExists && S_ISDIR(targetStatus.st_mode)) {
        errno = EISDIR;
        return false;
    }
    if (targetExists && !S_ISREG(targetStatus.st_mode)) {
        file = Descriptor(::open(target.c_str(), O_WRONLY | O_CLOEXEC));
        mode = Mode::Direct;
        return file.isOpen();
    }
    return openRegular();
}

bool AtomicFile::Private::openRegular()
{
    if (targetExists && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0)
        return false;
    removeAbandonedSiblings(directoryOf(target));
    // What replaces an existing file is nobody else's to read before it has that file's permissions.
    file = createSibling(target, targetExists ? 0600 : 0666, sibling);
    if (file.isOpen()) {
        mode = Mode::Sibling;
        return true;
    }
    sibling.clear();
    if (!targetExists || !forbidsNewNames(errno))
        return false;
    file = Descriptor(::open(target.c_str(), O_WRONLY | O_CLOEXEC));
    mode = Mode::Kept;
    return file.isOpen();
}

bool AtomicFile::Private::flushBuffer()
{
    if (mode == Mode::Kept)
        return true;
    const bool isWritten = writeAll(file.number(), buffer.data(), buffer.size());
    buffer.clear();
    return isWritten;
}

bool AtomicFile::Private::finish()
{
    switch (mode) {
    case Mode::Sibling:
        return finishSibling();
    case Mode::Kept:
        return overwriteTarget() && flush(file.number()) && file.close();
    case Mode::Direct:
        return flushBuffer() && flush(file.number()) && file.close();
    case Mode::Closed:
        break;
    }
    errno = EBADF;
    return false;
}

bool AtomicFile::Private::finishSibling()
{
    if (!flushBuffer() || (targetExists && !copyPermissions(file.number(), targetStatus)) || !flush(file.number()))
        return false;
    // A failure that comes as late as the closing has to find the old content in its place; the duplicate goes on holding
    // the file, so that nobody takes it for abandoned.
    Descriptor held(::fcntl(file.number(), F_DUPFD_CLOEXEC, 0));
    if (!held.isOpen() || !file.close())
        return false;
    file = std::move(held);
    if (::rename(sibling.c_str(), target.c_str()) != 0)
        return targetExists && forbidsNewNames(errno) && copyOverTarget();
    sibling.clear();
    file.close();
    return true;
}

/// Space that cannot be had is noticed before the old content is touched.
bool AtomicFile::Private::reserve(off_t size) const
{
#if defined(__linux__)
    if (size > targetStatus.st_size && ::fallocate(file.number(), 0, 0, size) != 0)
        return errno == EOPNOTSUPP || errno == ENOSYS;
#else
    static_cast<void>(size);
#endif
    return true;
}

bool AtomicFile::Private::overwriteTarget()
{
    // Cut to length last: cutting first would give back the space that was reserved.
    const auto size = static_cast<off_t>(buffer.size());
    return reserve(size) && writeAll(file.number(), buffer.data(), buffer.size()) &&
           ::ftruncate(file.number(), size) == 0;
}

/// The folder let us make a name but not replace one (another owner's file in a shared folder, a mounted file).
bool AtomicFile::Private::copyOverTarget()
{
    const Descriptor source = std::move(file);
    file = Descriptor(::open(target.c_str(), O_WRONLY | O_CLOEXEC));
    const off_t size = ::lseek(source.number(), 0, SEEK_END);
    if (!file.isOpen() || size < 0 || ::lseek(source.number(), 0, SEEK_SET) != 0 || !reserve(size))
        return false;

    buffer.resize(BufferSize);
    for (;;) {
        const ssize_t count = ::read(source.number(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 || !writeAll(file.number(), buffer.data(), static_cast<std::size_t>(count)))
            return false;
        if (count == 0)
            return ::ftruncate(file.number(), size) == 0 && flush(file.number()) && file.close();
    }
}

void AtomicFile::Private::close()
{
    file.close();
    if (!sibling.empty())
        ::unlink(sibling.c_str());
    sibling.clear();
    buffer = std::string();
    mode = Mode::Closed;
}

AtomicFile::AtomicFile(std::string path) : _d(std::make_unique<Private>(std::move(path))) {}

AtomicFile::~AtomicFile()
{
    discard();
}

bool AtomicFile::open(std::string &error)
{
    _d->failure = 0;
    if (_d->open())
        return true;
    error = std::strerror(errno);
    _d->close();
    return false;
}

bool AtomicFile::write(const void *data, std::size_t size)
{
    if (_d->mode == Private::Mode::Closed || _d->failure != 0)
        return false;
    const char *bytes = static_cast<const char *>(data);
    bool isWritten = true;
    if (_d->mode == Private::Mode::Kept || _d->buffer.size() + size <= BufferSize)
        _d->buffer.append(bytes, size);
    else
        isWritten = _d->flushBuffer() && writeAll(_d->file.number(), bytes, size);
    if (!isWritten)
        _d->failure = errno;
    return isWritten;
}

bool AtomicFile::commit(std::string &error)
{
    if (_d->failure != 0)
        errno = _d->failure;
    const bool isDone = _d->failure == 0 && _d->finish();
    if (!isDone)
        error = std::strerror(errno);
    _d->close();
    return isDone;
}

void AtomicFile::discard()
{
    _d->close();
}

bool writeFileAtomically(const std::string &path, const void *data, std::size_t size, std::string &error)
{
    AtomicFile file(path);
    if (!file.open(error))
        return false;
    file.write(data, size);
    return file.commit(error);
}

} // namespace osg
