// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxFile.h"

#include "Kernel/Internal/ValidFileName.h"
#include "Kernel/kxLog.h"
#include "SceneGraph/AtomicFile.h"

#include <isa-l/crc.h>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

/// Large enough that a call costs nothing beside its copying, small enough to stay in the processor's cache.
constexpr std::size_t ReadSize = std::size_t{256} * 1024;

const char *orEmpty(const char *path)
{
    return path ? path : "";
}

bool isThere(const char *path, bool countDanglingLinks)
{
    struct stat status = {};
    return countDanglingLinks ? ::lstat(path, &status) == 0 : ::stat(path, &status) == 0;
}

std::string homeFolder()
{
    if (const char *home = std::getenv("HOME"))
        return home;
    const passwd *entry = ::getpwuid(::getuid());
    return entry ? entry->pw_dir : "~";
}

bool isVariableCharacter(char character)
{
    return std::isalnum(static_cast<unsigned char>(character)) || character == '_';
}

/// Appends the value of the variable that begins at the dollar sign \a at, and returns the position behind it.
std::size_t appendVariable(const std::string &path, std::size_t at, std::string &result)
{
    const bool isBraced = path.compare(at, 2, "${") == 0;
    const std::size_t begin = at + (isBraced ? 2 : 1);
    std::size_t end = begin;
    while (end < path.size() && isVariableCharacter(path[end]))
        ++end;

    const bool isComplete = end > begin && (!isBraced || (end < path.size() && path[end] == '}'));
    const char *value = isComplete ? std::getenv(path.substr(begin, end - begin).c_str()) : nullptr;
    if (!value) {
        result += '$';
        return at + 1;
    }
    result += value;
    return isBraced ? end + 1 : end;
}

std::string expandVariables(const std::string &path)
{
    std::string result;
    for (std::size_t at = 0; at < path.size();) {
        if (path[at] == '$')
            at = appendVariable(path, at, result);
        else
            result += path[at++];
    }
    return result;
}

std::string parentFolder(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

/// Rights as the process has them now, not as it was started with.
bool isAccessible(const std::string &path, int rights)
{
    return ::faccessat(AT_FDCWD, path.c_str(), rights, AT_EACCESS) == 0;
}

/// Null when the file may be written, else the reason why not.
const char *writeObstacle(const char *path, bool mustBeNew)
{
    struct stat status = {};
    if (::stat(path, &status) == 0) {
        if (S_ISDIR(status.st_mode))
            return std::strerror(EISDIR);
        if (mustBeNew)
            return std::strerror(EEXIST);
        return isAccessible(path, W_OK) ? nullptr : std::strerror(errno);
    }
    if (errno != ENOENT || *path == '\0')
        return std::strerror(errno);
    return isAccessible(parentFolder(path), W_OK | X_OK) ? nullptr : std::strerror(errno);
}

std::uint32_t extendChecksum(std::uint32_t previous, const void *bytes, std::size_t size)
{
    return ::crc32_gzip_refl(previous, static_cast<const unsigned char *>(bytes), size);
}

/// False with errno set when the file could not be read to its end.
bool readChecksum(int file, std::uint32_t &checksum)
{
    const std::unique_ptr<char[]> buffer(new char[ReadSize]);
    for (;;) {
        const ssize_t count = ::read(file, buffer.get(), ReadSize);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count == 0;
        checksum = extendChecksum(checksum, buffer.get(), static_cast<std::size_t>(count));
    }
}

} // namespace

std::string kxFile::expandFilename(const char *path)
{
    std::string given = orEmpty(path);
    if (isThere(given.c_str(), true))
        return given;
    std::string expanded = expandVariables(given);
    if (expanded == "~" || expanded.compare(0, 2, "~/") == 0)
        return homeFolder() + expanded.substr(1);
    return expanded;
}

bool kxFile::checkWrite(const char *path, bool mustBeNew, bool report)
{
    const char *obstacle = writeObstacle(orEmpty(path), mustBeNew);
    if (obstacle && report)
        kxLog::error("Can't write file '%s': %s.", orEmpty(path), obstacle);
    return obstacle == nullptr;
}

std::uint32_t kxFile::getChecksum(const char *path, std::uint32_t previous)
{
    std::uint32_t checksum = previous;
    const int file = ::open(orEmpty(path), O_RDONLY | O_CLOEXEC);
    const bool isRead = file >= 0 && readChecksum(file, checksum);
    const int failure = errno;
    if (file >= 0)
        ::close(file);
    if (isRead)
        return checksum;
    kxLog::error("Failed to read file '%s': %s.", orEmpty(path), std::strerror(failure));
    return 0;
}

std::uint32_t kxFile::getChecksum(std::string_view bytes, std::uint32_t previous)
{
    return extendChecksum(previous, bytes.data(), bytes.size());
}

std::string kxFile::makeValidFileName(const std::string &name)
{
    return kxKernelInternal::makeValidFileName(name);
}

bool kxFile::exists(const char *path, bool expand, bool countDanglingLinks)
{
    const std::string file = expand ? expandFilename(path) : orEmpty(path);
    return isThere(file.c_str(), countDanglingLinks);
}

bool kxFile::remove(const char *path)
{
    return ::unlink(orEmpty(path)) == 0;
}

bool kxFile::write(const char *path, std::string_view content, std::string &error)
{
    return osg::writeFileAtomically(orEmpty(path), content.data(), content.size(), error);
}
