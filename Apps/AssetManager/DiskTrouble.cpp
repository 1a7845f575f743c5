// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/DiskTrouble.h"

#include <QCoreApplication>
#include <QUuid>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;

constexpr std::size_t ProbeSize = 65536; // bytes: more than a description has
const char *const FullDisk = QT_TRANSLATE_NOOP("DiskTrouble", "The disk is full.");
const char *const NoPermission = QT_TRANSLATE_NOOP("DiskTrouble", "You may not write there.");

} // namespace

DiskTrouble::Kind DiskTrouble::of(const std::error_code &error)
{
    if (!error)
        return Kind::None;
    for (const auto full : {std::errc::no_space_on_device, std::errc::file_too_large, std::errc(EDQUOT)})
        if (error == full)
            return Kind::Full;
    for (const auto forbidden :
         {std::errc::permission_denied, std::errc::operation_not_permitted, std::errc::read_only_file_system})
        if (error == forbidden)
            return Kind::Forbidden;
    return Kind::Other;
}

DiskTrouble::Kind DiskTrouble::whenWritingInto(const QString &directory)
{
    const QString name = QStringLiteral(".probe-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    const fs::path file = fs::path(directory.toStdU16String()) / name.toStdU16String();
    errno = 0;
    std::ofstream stream(file, std::ios::binary);
    stream << std::string(ProbeSize, ' ');
    stream.close(); // a full disk says so here
    const std::error_code error = stream ? std::error_code() : std::error_code(errno, std::generic_category());
    std::error_code ignored;
    fs::remove(file, ignored);
    return of(error);
}

QString DiskTrouble::advice(const QString &directory, const QString &other)
{
    switch (whenWritingInto(directory)) {
    case Kind::Full:
        return QCoreApplication::translate("DiskTrouble", FullDisk);
    case Kind::Forbidden:
        return QCoreApplication::translate("DiskTrouble", NoPermission);
    case Kind::None:
    case Kind::Other:
        break;
    }
    return other;
}
