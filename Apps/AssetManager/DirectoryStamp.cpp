// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/DirectoryStamp.h"

#include <QFile>

#include <functional>
#include <memory>
#include <string_view>

#include <dirent.h>
#include <sys/stat.h>

namespace {

/// Spreads the bits, so that sums of digests tell their parts.
quint64 mixed(quint64 value)
{
    value = (value ^ (value >> 30U)) * 0xbf58476d1ce4e5b9U;
    value = (value ^ (value >> 27U)) * 0x94d049bb133111ebU;
    return value ^ (value >> 31U);
}

quint64 digestOf(std::string_view name, const struct stat &status)
{
    quint64 digest = std::hash<std::string_view>()(name);
    for (const quint64 part :
         {static_cast<quint64>(status.st_ino), static_cast<quint64>(status.st_size),
          static_cast<quint64>(status.st_mtim.tv_sec), static_cast<quint64>(status.st_mtim.tv_nsec)})
        digest = mixed(digest + part);
    return digest;
}

} // namespace

/// A sum, since directories list their files in no order.
DirectoryStamp::DirectoryStamp(const QString &directory)
{
    const std::unique_ptr<DIR, int (*)(DIR *)> open(opendir(QFile::encodeName(directory).constData()), &closedir);
    if (!open)
        return;
    _digest = 1; // an empty directory is something
    while (const dirent *entry = readdir(open.get())) {
        struct stat status = {};
        if (fstatat(dirfd(open.get()), static_cast<const char *>(entry->d_name), &status, 0) == 0 &&
            S_ISREG(status.st_mode))
            _digest += digestOf(static_cast<const char *>(entry->d_name), status);
    }
}
