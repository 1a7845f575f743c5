// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/KeptVersion.h"

#include "AssetManager/DirectoryMove.h"
#include "AssetManager/DiskTrouble.h"
#include "AssetManager/ShownName.h"
#include "AssetManager/SilentDrives.h"

#include <QDir>
#include <QFileInfo>

#include <filesystem>
#include <system_error>
#include <utility>

namespace {

namespace fs = std::filesystem;

/// Of the directory itself, or of the one that the file is in.
DirectoryStamp stampOf(const QString &path)
{
    const QFileInfo info(path);
    return DirectoryStamp(info.isDir() ? path : info.path());
}

QString reasonOf(const std::error_code &error, const QString &path)
{
    const QString name = ShownName::of(path);
    if (DiskTrouble::of(error) == DiskTrouble::Kind::Full)
        return KeptVersion::tr("\"%1\" was left as it is: the disk is too full to keep its present version.").arg(name);
    return KeptVersion::tr("\"%1\" was left as it is: its present version could not be kept.").arg(name) + ' ' +
           DiskTrouble::sentence(error);
}

} // namespace

QString KeptVersion::keep(const QString &path)
{
    _former = path;
    _now = path;
    _original = stampOf(path);
    if (!QFileInfo::exists(path))
        return {};
    const osg::Result<QString> place = _trash.makeHiddenPlaceFor(path);
    if (!place)
        return QString::fromStdString(place.reason());
    _kept = place.value();
    std::error_code error;
    fs::copy(fs::path(path.toStdU16String()), fs::path(_kept.toStdU16String()),
             fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
    return error ? reasonOf(error, path) : QString();
}

KeptVersion::KeptVersion(KeptVersion &&other) noexcept
    : _trash(std::move(other._trash)), _kept(std::exchange(other._kept, {})), _former(std::move(other._former)),
      _now(std::move(other._now)), _original(other._original)
{}

KeptVersion &KeptVersion::operator=(KeptVersion &&other) noexcept
{
    std::swap(_trash, other._trash);
    std::swap(_kept, other._kept);
    std::swap(_former, other._former);
    std::swap(_now, other._now);
    std::swap(_original, other._original);
    return *this;
}

KeptVersion::~KeptVersion()
{
    if (!_kept.isEmpty() && !SilentDrives::the().hold(_kept))
        discard();
}

void KeptVersion::discard()
{
    if (!_kept.isEmpty())
        QDir(QFileInfo(_kept).path()).removeRecursively();
}

bool KeptVersion::isReplacedAt(const QString &now) const
{
    return now != _former || stampOf(now) != _original;
}

/// Everything is as before where the answer is a reason.
QString KeptVersion::moveBoth(const QString &place) const
{
    if (!place.isEmpty())
        if (QString reason = DirectoryMove::move(_now, place); !reason.isEmpty())
            return reason;
    if (_kept.isEmpty())
        return {};
    QString reason = DirectoryMove::move(_kept, _former);
    if (!reason.isEmpty() && !place.isEmpty())
        DirectoryMove::move(place, _now);
    return reason;
}

QString KeptVersion::exchange()
{
    if (!_kept.isEmpty() && !QFileInfo::exists(_kept))
        return tr("The former version of \"%1\" is not there any more: the deleted assets were removed for good.")
            .arg(ShownName::of(_former));
    if (_former != _now && QFileInfo::exists(_former))
        return tr("\"%1\" could not be put back: something else is at its place now.").arg(ShownName::of(_former));
    QString place;
    if (QFileInfo::exists(_now)) {
        const osg::Result<QString> made = _trash.makeHiddenPlaceFor(_now);
        if (!made)
            return QString::fromStdString(made.reason());
        place = made.value();
    }
    QString reason = moveBoth(place);
    if (!reason.isEmpty()) {
        if (!place.isEmpty())
            QDir().rmdir(QFileInfo(place).path());
        return reason;
    }
    discard(); // the folder, empty now
    _kept = place;
    std::swap(_former, _now);
    return {};
}
