// SPDX-License-Identifier: Apache-2.0
#include "FileFaults.h"

#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

using kxtest::FileFaults;

struct Plan
{
    std::string folder;
    FileFaults::Kind kind = FileFaults::Kind::IoError;
    int failing = 0;
    int count = 0;
    bool isFull = false; ///< no space any more
    std::string failed;
};

// Looked at by every file operation of the program: a plain pointer, which exists before everything else.
thread_local Plan *activePlan = nullptr;

/// What an operation needs.
enum Need : unsigned { Room = 1, Permission = 2, Writing = 4 };

template <class Function> Function real(const char *name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

bool isBelow(const Plan &plan, const char *path)
{
    return path != nullptr && std::strncmp(path, plan.folder.c_str(), plan.folder.size()) == 0;
}

std::string pathOf(int file)
{
    char target[PATH_MAX];
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    const ssize_t length = ::readlink(link.c_str(), target, sizeof target);
    return length > 0 ? std::string(target, static_cast<std::size_t>(length)) : std::string();
}

std::string pathAt(int folder, const char *path)
{
    if (path == nullptr || path[0] == '/' || folder == AT_FDCWD)
        return path != nullptr ? path : "";
    return pathOf(folder) + '/' + path;
}

bool concerns(FileFaults::Kind kind, unsigned needs)
{
    switch (kind) {
    case FileFaults::Kind::NoSpace:
        return (needs & Room) != 0;
    case FileFaults::Kind::NoPermission:
        return (needs & Permission) != 0;
    case FileFaults::Kind::ShortWrite:
        return (needs & Writing) != 0;
    case FileFaults::Kind::IoError:
        break;
    }
    return true;
}

int errorOf(FileFaults::Kind kind)
{
    switch (kind) {
    case FileFaults::Kind::NoPermission:
        return EACCES;
    case FileFaults::Kind::IoError:
        return EIO;
    case FileFaults::Kind::NoSpace:
    case FileFaults::Kind::ShortWrite:
        break;
    }
    return ENOSPC;
}

enum class Fate { Happens, Fails, IsShort };

/// Counts the operation and says what becomes of it; sets errno where it fails.
Fate fateOf(const char *operation, const std::string &path, unsigned needs)
{
    Plan *plan = activePlan;
    if (plan == nullptr || !isBelow(*plan, path.c_str()) || !concerns(plan->kind, needs))
        return Fate::Happens;
    const bool isChosen = ++plan->count == plan->failing;
    if (!isChosen && !plan->isFull)
        return Fate::Happens;
    if (plan->failed.empty())
        plan->failed = std::string(operation) + ' ' + path;
    const bool isShort = isChosen && plan->kind == FileFaults::Kind::ShortWrite;
    plan->isFull = plan->kind == FileFaults::Kind::NoSpace || plan->kind == FileFaults::Kind::ShortWrite;
    errno = errorOf(plan->kind);
    return isShort ? Fate::IsShort : Fate::Fails;
}

bool fails(const char *operation, const std::string &path, unsigned needs)
{
    return activePlan != nullptr && fateOf(operation, path, needs) != Fate::Happens;
}

unsigned needsOfOpening(int flags)
{
    return Permission | ((flags & O_CREAT) != 0 ? Room : 0U);
}

mode_t modeOf(int flags, va_list arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? static_cast<mode_t>(va_arg(arguments, unsigned)) : 0;
}

int openReal(const char *name, const char *path, int flags, mode_t mode)
{
    if (fails("open", path, needsOfOpening(flags)))
        return -1;
    return real<int (*)(const char *, int, ...)>(name)(path, flags, mode);
}

int openAtReal(const char *name, int folder, const char *path, int flags, mode_t mode)
{
    if (activePlan != nullptr && fails("open", pathAt(folder, path), needsOfOpening(flags)))
        return -1;
    return real<int (*)(int, const char *, int, ...)>(name)(folder, path, flags, mode);
}

/// How many of the bytes are to be written; -1: the call fails.
ssize_t writable(const char *operation, int file, std::size_t size)
{
    if (activePlan == nullptr)
        return static_cast<ssize_t>(size);
    const Fate fate = fateOf(operation, pathOf(file), Room | Writing);
    if (fate == Fate::Fails)
        return -1;
    return static_cast<ssize_t>(fate == Fate::IsShort ? size / 2 : size);
}

} // namespace

// What the libraries call has to find these first.
#pragma GCC visibility push(default)

extern "C" {

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openReal("open", path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openReal("open64", path, flags, mode);
}

int openat(int folder, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openAtReal("openat", folder, path, flags, mode);
}

int openat64(int folder, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openAtReal("openat64", folder, path, flags, mode);
}

int creat(const char *path, mode_t mode)
{
    return openReal("open", path, O_CREAT | O_WRONLY | O_TRUNC, mode);
}

int creat64(const char *path, mode_t mode)
{
    return openReal("open64", path, O_CREAT | O_WRONLY | O_TRUNC, mode);
}

FILE *fopen(const char *path, const char *mode)
{
    if (fails("fopen", path, needsOfOpening(mode[0] == 'r' ? 0 : O_CREAT)))
        return nullptr;
    return real<FILE *(*)(const char *, const char *)>("fopen")(path, mode);
}

FILE *fopen64(const char *path, const char *mode)
{
    if (fails("fopen", path, needsOfOpening(mode[0] == 'r' ? 0 : O_CREAT)))
        return nullptr;
    return real<FILE *(*)(const char *, const char *)>("fopen64")(path, mode);
}

DIR *opendir(const char *path)
{
    if (fails("opendir", path, Permission))
        return nullptr;
    return real<DIR *(*)(const char *)>("opendir")(path);
}

/// The file is closed all the same, as the system does it.
int close(int file)
{
    const bool hasFailed = activePlan != nullptr && fails("close", pathOf(file), 0);
    const int reason = errno;
    const int result = real<int (*)(int)>("close")(file);
    if (!hasFailed)
        return result;
    errno = reason;
    return -1;
}

ssize_t read(int file, void *bytes, std::size_t size)
{
    if (activePlan != nullptr && fails("read", pathOf(file), 0))
        return -1;
    return real<ssize_t (*)(int, void *, std::size_t)>("read")(file, bytes, size);
}

ssize_t pread64(int file, void *bytes, std::size_t size, off64_t offset)
{
    if (activePlan != nullptr && fails("pread", pathOf(file), 0))
        return -1;
    return real<ssize_t (*)(int, void *, std::size_t, off64_t)>("pread64")(file, bytes, size, offset);
}

ssize_t pread(int file, void *bytes, std::size_t size, off_t offset)
{
    if (activePlan != nullptr && fails("pread", pathOf(file), 0))
        return -1;
    return real<ssize_t (*)(int, void *, std::size_t, off_t)>("pread")(file, bytes, size, offset);
}

ssize_t write(int file, const void *bytes, std::size_t size)
{
    const ssize_t count = writable("write", file, size);
    if (count < 0)
        return -1;
    return real<ssize_t (*)(int, const void *, std::size_t)>("write")(file, bytes, static_cast<std::size_t>(count));
}

ssize_t pwrite64(int file, const void *bytes, std::size_t size, off64_t offset)
{
    const ssize_t count = writable("pwrite", file, size);
    if (count < 0)
        return -1;
    return real<ssize_t (*)(int, const void *, std::size_t, off64_t)>("pwrite64")(
        file, bytes, static_cast<std::size_t>(count), offset);
}

ssize_t pwrite(int file, const void *bytes, std::size_t size, off_t offset)
{
    const ssize_t count = writable("pwrite", file, size);
    if (count < 0)
        return -1;
    return real<ssize_t (*)(int, const void *, std::size_t, off_t)>("pwrite")(file, bytes,
                                                                              static_cast<std::size_t>(count), offset);
}

ssize_t sendfile64(int to, int from, off64_t *offset, std::size_t size) noexcept
{
    const ssize_t count = writable("sendfile", to, size);
    if (count < 0)
        return -1;
    return real<ssize_t (*)(int, int, off64_t *, std::size_t)>("sendfile64")(to, from, offset,
                                                                             static_cast<std::size_t>(count));
}

ssize_t copy_file_range(int from, off64_t *fromOffset, int to, off64_t *toOffset, std::size_t size, unsigned flags)
{
    const ssize_t count = writable("copy_file_range", to, size);
    if (count < 0)
        return -1;
    return real<ssize_t (*)(int, off64_t *, int, off64_t *, std::size_t, unsigned)>("copy_file_range")(
        from, fromOffset, to, toOffset, static_cast<std::size_t>(count), flags);
}

ssize_t writev(int file, const iovec *pieces, int count)
{
    if (activePlan != nullptr && fails("writev", pathOf(file), Room | Writing))
        return -1;
    return real<ssize_t (*)(int, const iovec *, int)>("writev")(file, pieces, count);
}

int fsync(int file)
{
    if (activePlan != nullptr && fails("fsync", pathOf(file), Room))
        return -1;
    return real<int (*)(int)>("fsync")(file);
}

int fdatasync(int file)
{
    if (activePlan != nullptr && fails("fdatasync", pathOf(file), Room))
        return -1;
    return real<int (*)(int)>("fdatasync")(file);
}

int fallocate(int file, int mode, off_t offset, off_t size)
{
    if (activePlan != nullptr && fails("fallocate", pathOf(file), Room))
        return -1;
    return real<int (*)(int, int, off_t, off_t)>("fallocate")(file, mode, offset, size);
}

int fallocate64(int file, int mode, off64_t offset, off64_t size)
{
    if (activePlan != nullptr && fails("fallocate", pathOf(file), Room))
        return -1;
    return real<int (*)(int, int, off64_t, off64_t)>("fallocate64")(file, mode, offset, size);
}

int ftruncate(int file, off_t size) noexcept
{
    if (activePlan != nullptr && fails("ftruncate", pathOf(file), Room))
        return -1;
    return real<int (*)(int, off_t)>("ftruncate")(file, size);
}

int ftruncate64(int file, off64_t size) noexcept
{
    if (activePlan != nullptr && fails("ftruncate", pathOf(file), Room))
        return -1;
    return real<int (*)(int, off64_t)>("ftruncate64")(file, size);
}

int rename(const char *from, const char *to) noexcept
{
    if (fails("rename", from, Room | Permission))
        return -1;
    return real<int (*)(const char *, const char *)>("rename")(from, to);
}

int renameat(int fromFolder, const char *from, int toFolder, const char *to) noexcept
{
    if (activePlan != nullptr && fails("rename", pathAt(fromFolder, from), Room | Permission))
        return -1;
    return real<int (*)(int, const char *, int, const char *)>("renameat")(fromFolder, from, toFolder, to);
}

int renameat2(int fromFolder, const char *from, int toFolder, const char *to, unsigned flags) noexcept
{
    if (activePlan != nullptr && fails("rename", pathAt(fromFolder, from), Room | Permission))
        return -1;
    return real<int (*)(int, const char *, int, const char *, unsigned)>("renameat2")(fromFolder, from, toFolder, to,
                                                                                      flags);
}

int link(const char *from, const char *to) noexcept
{
    if (fails("link", to, Room | Permission))
        return -1;
    return real<int (*)(const char *, const char *)>("link")(from, to);
}

int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags) noexcept
{
    if (activePlan != nullptr && fails("link", pathAt(toFolder, to), Room | Permission))
        return -1;
    return real<int (*)(int, const char *, int, const char *, int)>("linkat")(fromFolder, from, toFolder, to, flags);
}

int unlink(const char *path) noexcept
{
    if (fails("unlink", path, Permission))
        return -1;
    return real<int (*)(const char *)>("unlink")(path);
}

int unlinkat(int folder, const char *path, int flags) noexcept
{
    if (activePlan != nullptr && fails("unlink", pathAt(folder, path), Permission))
        return -1;
    return real<int (*)(int, const char *, int)>("unlinkat")(folder, path, flags);
}

int remove(const char *path) noexcept
{
    if (fails("remove", path, Permission))
        return -1;
    return real<int (*)(const char *)>("remove")(path);
}

int mkdir(const char *path, mode_t mode) noexcept
{
    if (fails("mkdir", path, Room | Permission))
        return -1;
    return real<int (*)(const char *, mode_t)>("mkdir")(path, mode);
}

int mkdirat(int folder, const char *path, mode_t mode) noexcept
{
    if (activePlan != nullptr && fails("mkdir", pathAt(folder, path), Room | Permission))
        return -1;
    return real<int (*)(int, const char *, mode_t)>("mkdirat")(folder, path, mode);
}

int rmdir(const char *path) noexcept
{
    if (fails("rmdir", path, Permission))
        return -1;
    return real<int (*)(const char *)>("rmdir")(path);
}

} // extern "C"

#pragma GCC visibility pop

namespace kxtest {

FileFaults::FileFaults(const std::string &folder, Kind kind, int failing)
{
    activePlan = new Plan{folder, kind, failing, 0, false, {}};
}

FileFaults::~FileFaults()
{
    Plan *plan = activePlan;
    activePlan = nullptr;
    delete plan;
}

bool FileFaults::hasFailed() const
{
    return !activePlan->failed.empty();
}

std::string FileFaults::failed() const
{
    return activePlan->failed;
}

} // namespace kxtest
