// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/DirectoryMover.h"

#include "Assets/Internal/LocalPath.h"
#include "Assets/Internal/StandardOutput.h"
#include "Assets/kxLocalUrlManager.h"
#include "Kernel/kxModalQuestion.h"

#include <QFileInfo>

#include <vector>

namespace kxAssetsInternal {

namespace {

QString canonical(const QString &path)
{
    return QFileInfo(path).canonicalFilePath();
}

bool isSame(const QString &a, const QString &b)
{
    return !a.isEmpty() && a == b;
}

bool isSameOrBelow(const QString &path, const QString &directory)
{
    return isSame(path, directory) || (!directory.isEmpty() && path.startsWith(directory + QLatin1Char('/')));
}

/// Onto itself or into itself, by whatever spelling and through whatever links.
bool isMoveIntoItself(const QString &source, const QString &targetDirectory, const QString &result)
{
    return isSame(placeOf(source), placeOf(result)) || isSame(canonical(source), canonical(result)) ||
           isSameOrBelow(canonical(targetDirectory), canonical(source));
}

/// "." and ".." stand for places that are called something else.
bool isName(const QString &name)
{
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..");
}

bool wantsMerge(const QString &name)
{
    return kxModalQuestion::warning(nullptr, kxLocalUrlManager::tr("Asset Manager"),
                                    kxLocalUrlManager::tr("The target already contains a folder named '%1'.\n"
                                                          "Merge folders?")
                                        .arg(name),
                                    QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes) == QMessageBox::Yes;
}

} // namespace

bool DirectoryMover::move(const QUrl &source, const QUrl &targetDirectory, QUrl &result, Collision collision)
{
    const QString name = _manager.directoryName(source);
    result = _manager.extendByDirectory(targetDirectory, name);
    if (!isName(name) || result == source ||
        isMoveIntoItself(entryPath(source), entryPath(targetDirectory), entryPath(result)))
        return false;

    printLine("move " + source.toString().toStdString() + " to " + targetDirectory.toString().toStdString());
    if (!isTaken(entryPath(result)))
        return _manager.rename(source, result);
    if (collision == Collision::Asks && !wantsMerge(name))
        return false;
    return _manager.merge(source, result);
}

bool DirectoryMover::merge(const QUrl &source, const QUrl &target)
{
    if (source.toLocalFile().isEmpty() || target.toLocalFile().isEmpty())
        return false;
    const std::vector<QUrl> directories = _manager.subDirectories(source);
    const std::vector<QUrl> files = _manager.files(source, {}, QDir::NoSort);
    // Names are extended from the nearest directory, which would be the one around the target.
    if (!_manager.isDirectory(target) && !(directories.empty() && files.empty()))
        return false;

    bool isComplete = true;
    for (const QUrl &directory : directories)
        isComplete = moveDirectory(directory, target) && isComplete;
    const QDir targetDirectory(target.toLocalFile());
    for (const QUrl &file : files) {
        const QUrl moved = QUrl::fromLocalFile(targetDirectory.absoluteFilePath(_manager.fileName(file)));
        isComplete = _manager.rename(file, moved) && isComplete;
    }
    QDir().rmdir(source.toLocalFile());
    return isComplete;
}

bool DirectoryMover::moveDirectory(const QUrl &directory, const QUrl &target)
{
    if (_manager.containsItems(directory, Undefined)) {
        const QString name = _manager.getUniqueDirectoryName(target, _manager.directoryName(directory));
        return _manager.rename(directory, _manager.extendByDirectory(target, name));
    }
    QUrl discarded;
    return _manager.move(directory, target, discarded, true);
}

} // namespace kxAssetsInternal
