// SPDX-License-Identifier: Apache-2.0
#include "HangingDrive.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdarg>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <string>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr std::chrono::seconds Patience(60);

struct Drive
{
    std::mutex mutex; ///< guards what follows
    std::condition_variable changed;
    std::string folder;
    std::thread::id mainThread;
    QStringList askedByMainThread;
    QStringList waiting;
    bool isHanging = false;
};

// Looked at by every file operation of the program: it exists before everything else.
std::atomic<bool> isInUse{false};

Drive &drive()
{
    static auto *const one = new Drive; // threads may be left in it at the end
    return *one;
}

template <class Function> Function real(const char *name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

bool liesIn(const char *path, const std::string &folder)
{
    return path != nullptr && std::strncmp(path, folder.c_str(), folder.size()) == 0 &&
           (path[folder.size()] == '/' || path[folder.size()] == '\0');
}

void ask(const char *operation, const char *path)
{
    if (!isInUse)
        return;
    Drive &asked = drive();
    std::unique_lock lock(asked.mutex);
    if (!asked.isHanging || !liesIn(path, asked.folder))
        return;
    const QString question = QString::fromLatin1(operation) + ' ' + QString::fromUtf8(path);
    if (std::this_thread::get_id() == asked.mainThread) {
        asked.askedByMainThread.append(question);
        return;
    }
    asked.waiting.append(question);
    EXPECT_TRUE(asked.changed.wait_for(lock, Patience, [&asked] { return !asked.isHanging; })) << "nobody let go";
    asked.waiting.removeOne(question);
    asked.changed.notify_all();
}

mode_t modeOf(int flags, va_list arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? static_cast<mode_t>(va_arg(arguments, unsigned)) : 0;
}

} // namespace

HangingDrive::HangingDrive(const QString &folder)
{
    Drive &made = drive();
    const std::lock_guard lock(made.mutex);
    made.folder = folder.toStdString();
    made.mainThread = std::this_thread::get_id();
    made.askedByMainThread.clear();
    made.isHanging = true;
    isInUse = true;
}

HangingDrive::~HangingDrive()
{
    letGo();
    Drive &left = drive();
    std::unique_lock lock(left.mutex);
    left.changed.wait(lock, [&left] { return left.waiting.isEmpty(); });
    isInUse = false;
}

void HangingDrive::letGo()
{
    Drive &held = drive();
    const std::lock_guard lock(held.mutex);
    held.isHanging = false;
    held.changed.notify_all();
}

QStringList HangingDrive::waiting() const
{
    const std::lock_guard lock(drive().mutex);
    return drive().waiting;
}

QStringList HangingDrive::askedByMainThread() const
{
    const std::lock_guard lock(drive().mutex);
    return drive().askedByMainThread;
}

// The libraries that the tests load find these before those of the system.
#pragma GCC visibility push(default)

extern "C" {

int stat(const char *path, struct stat *status) noexcept
{
    ask("stat", path);
    return real<int (*)(const char *, struct stat *)>("stat")(path, status);
}

int stat64(const char *path, struct stat64 *status) noexcept
{
    ask("stat", path);
    return real<int (*)(const char *, struct stat64 *)>("stat64")(path, status);
}

int lstat(const char *path, struct stat *status) noexcept
{
    ask("lstat", path);
    return real<int (*)(const char *, struct stat *)>("lstat")(path, status);
}

int lstat64(const char *path, struct stat64 *status) noexcept
{
    ask("lstat", path);
    return real<int (*)(const char *, struct stat64 *)>("lstat64")(path, status);
}

int statx(int folder, const char *path, int flags, unsigned mask, struct statx *status) noexcept
{
    ask("stat", path);
    return real<int (*)(int, const char *, int, unsigned, struct statx *)>("statx")(folder, path, flags, mask, status);
}

int access(const char *path, int mode) noexcept
{
    ask("access", path);
    return real<int (*)(const char *, int)>("access")(path, mode);
}

char *realpath(const char *path, char *resolved) noexcept
{
    ask("realpath", path);
    return real<char *(*)(const char *, char *)>("realpath")(path, resolved);
}

ssize_t readlink(const char *path, char *target, size_t size) noexcept
{
    ask("readlink", path);
    return real<ssize_t (*)(const char *, char *, size_t)>("readlink")(path, target, size);
}

DIR *opendir(const char *path)
{
    ask("opendir", path);
    return real<DIR *(*)(const char *)>("opendir")(path);
}

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    ask("open", path);
    return real<int (*)(const char *, int, ...)>("open")(path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    ask("open", path);
    return real<int (*)(const char *, int, ...)>("open64")(path, flags, mode);
}

int inotify_add_watch(int instance, const char *path, uint32_t mask) noexcept
{
    ask("watch", path);
    return real<int (*)(int, const char *, uint32_t)>("inotify_add_watch")(instance, path, mask);
}

} // extern "C"

#pragma GCC visibility pop
