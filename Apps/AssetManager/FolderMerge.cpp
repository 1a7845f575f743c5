// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/FolderMerge.h"

#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxUrlManager.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace {

QString directoryOf(const std::string &uuid)
{
    kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid);
    return item ? item->directoryUrl().toLocalFile() : QString();
}

} // namespace

FolderMerge::FolderMerge(const QString &from, const QString &to, const AssetsIn &assetsIn)
{
    look(from, to, assetsIn);
}

void FolderMerge::look(const QString &from, const QString &to, const AssetsIn &assetsIn)
{
    const QUrl url = QUrl::fromLocalFile(from);
    kxUrlManager *manager = kxUrlManager::getUrlManager(url);
    if (!manager)
        return;
    _joined.append(from);
    for (const QUrl &directory : manager->subDirectories(url)) {
        const QString path = directory.toLocalFile();
        const QString place = to + '/' + QFileInfo(path).fileName();
        const bool isAsset = manager->containsItems(directory, Undefined);
        if (!isAsset && QFileInfo(place).isDir())
            look(path, place, assetsIn);
        else
            _planned.push_back({{path, place, assetsIn(path)}, isAsset});
    }
    for (const QUrl &file : manager->files(url, {}, QDir::NoSort))
        _planned.push_back({{file.toLocalFile(), to + '/' + manager->fileName(file), {}}, false});
}

std::vector<LibraryActions::Move> FolderMerge::moves() const
{
    std::vector<LibraryActions::Move> moves;
    for (const auto &[planned, isAsset] : _planned) {
        LibraryActions::Move move = planned;
        if (isAsset)
            move.to = move.uuids.empty() ? QString() : directoryOf(move.uuids.front());
        if (!QFileInfo::exists(move.from) && QFileInfo::exists(move.to))
            moves.push_back(std::move(move));
    }
    return moves;
}

QStringList FolderMerge::emptied() const
{
    QStringList gone;
    for (const QString &folder : _joined)
        if (!QFileInfo::exists(folder))
            gone.append(folder);
    return gone;
}
