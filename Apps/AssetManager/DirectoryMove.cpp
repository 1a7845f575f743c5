// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/DirectoryMove.h"

#include "AssetManager/DiskTrouble.h"
#include "AssetManager/ShownName.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <filesystem>
#include <system_error>

namespace {

namespace fs = std::filesystem;

fs::path pathOf(const QString &path)
{
    return {path.toStdU16String()};
}

/// To a hidden sibling first, so that half a copy is never taken for an asset.
std::error_code copyAndRemove(const fs::path &from, const fs::path &to)
{
    std::error_code error;
    const fs::path unfinished = to.parent_path() / (".unfinished-" + to.filename().string());
    std::error_code ignored;
    fs::copy(from, unfinished, fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
    if (!error)
        fs::rename(unfinished, to, error);
    if (error) {
        fs::remove_all(unfinished, ignored);
        return error;
    }
    // Out of the way as a whole before anything of it is removed: there is never only a part of it.
    const fs::path leaving = from.parent_path() / (".leaving-" + from.filename().string());
    fs::rename(from, leaving, error);
    fs::remove_all(error ? to : leaving, ignored);
    return error;
}

QString reasonOf(const std::error_code &error, const QString &from)
{
    const auto translated = [](const char *text) { return QCoreApplication::translate("DirectoryMove", text); };
    const QString name = ShownName::of(from);
    if (error == std::errc::no_such_file_or_directory && !QFileInfo::exists(from))
        return translated(QT_TRANSLATE_NOOP("DirectoryMove", "\"%1\" could not be moved: it is not there any more."))
            .arg(name);
    const DiskTrouble::Kind trouble = DiskTrouble::of(error);
    if (trouble == DiskTrouble::Kind::Forbidden)
        return translated(QT_TRANSLATE_NOOP("DirectoryMove", "\"%1\" could not be moved: you may not write there."))
            .arg(name);
    if (trouble == DiskTrouble::Kind::Full)
        return translated(QT_TRANSLATE_NOOP("DirectoryMove", "\"%1\" could not be moved: the disk is full.")).arg(name);
    return translated(QT_TRANSLATE_NOOP("DirectoryMove", "\"%1\" could not be moved.")).arg(name) + ' ' +
           DiskTrouble::sentence(error);
}

} // namespace

QString DirectoryMove::move(const QString &from, const QString &to)
{
    std::error_code error;
    fs::rename(pathOf(from), pathOf(to), error);
    if (error == std::errc::cross_device_link)
        error = copyAndRemove(pathOf(from), pathOf(to));
    return error ? reasonOf(error, from) : QString();
}
