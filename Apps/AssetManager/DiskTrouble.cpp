// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/DiskTrouble.h"

#include <QCoreApplication>
#include <QUuid>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr std::size_t ProbeSize = 65536; // bytes: more than a description has
const char *const FullDisk = QT_TRANSLATE_NOOP("DiskTrouble", "The disk is full.");
const char *const NoPermission = QT_TRANSLATE_NOOP("DiskTrouble", "You may not write there.");
const char *const GoneFolder = QT_TRANSLATE_NOOP("DiskTrouble", "Its folder is not there any more.");
const char *const NoAnswer = QT_TRANSLATE_NOOP("DiskTrouble", "The drive does not answer. Is it connected?");
const char *const InUse = QT_TRANSLATE_NOOP("DiskTrouble", "Another program is using it.");
const char *const LongName = QT_TRANSLATE_NOOP("DiskTrouble", "Its name is too long for the drive.");
const char *const TakenName = QT_TRANSLATE_NOOP("DiskTrouble", "There is something of that name already.");

QString translated(const char *text)
{
    return QCoreApplication::translate("DiskTrouble", text);
}

/// By the system's numbers.
const std::vector<std::pair<int, const char *>> &sentences()
{
    static const std::vector<std::pair<int, const char *>> all{
        {ENOSPC, FullDisk},    {EFBIG, FullDisk},        {EDQUOT, FullDisk},    {EACCES, NoPermission},
        {EPERM, NoPermission}, {EROFS, NoPermission},    {ENOENT, GoneFolder},  {ENOTDIR, GoneFolder},
        {EIO, NoAnswer},       {ENXIO, NoAnswer},        {ENODEV, NoAnswer},    {ENOTCONN, NoAnswer},
        {ESTALE, NoAnswer},    {EHOSTDOWN, NoAnswer},    {ETIMEDOUT, NoAnswer}, {EBUSY, InUse},
        {ETXTBSY, InUse},      {ENAMETOOLONG, LongName}, {EEXIST, TakenName},   {ENOTEMPTY, TakenName}};
    return all;
}

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
        return translated(FullDisk);
    case Kind::Forbidden:
        return translated(NoPermission);
    case Kind::None:
    case Kind::Other:
        break;
    }
    return other;
}

QString DiskTrouble::sentence(const std::error_code &error)
{
    for (const auto &[code, text] : sentences())
        if (error == std::errc(code))
            return translated(text);
    return translated(QT_TRANSLATE_NOOP("DiskTrouble", "The system reports error %1.")).arg(error.value());
}

QString DiskTrouble::sentenceFor(const std::string &text)
{
    for (const auto &[code, sentence] : sentences())
        if (text.find(std::generic_category().message(code)) != std::string::npos)
            return translated(sentence);
    return {};
}
