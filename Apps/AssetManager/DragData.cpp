// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/DragData.h"

#include <QMimeData>

#include <algorithm>

namespace {

QStringList linesOf(const QMimeData &data, const QString &type)
{
    return QString::fromUtf8(data.data(type)).split('\n', Qt::SkipEmptyParts);
}

void setLines(QMimeData &data, const QString &type, const QStringList &lines)
{
    if (!lines.isEmpty())
        data.setData(type, lines.join('\n').toUtf8());
}

void setIds(QMimeData &data, const QString &type, const std::vector<std::uint32_t> &ids)
{
    QStringList lines;
    for (const std::uint32_t id : ids)
        lines.append(QString::number(id));
    setLines(data, type, lines);
}

std::vector<std::uint32_t> idsOf(const QMimeData &data, const QString &type)
{
    std::vector<std::uint32_t> ids;
    for (const QString &line : linesOf(data, type)) {
        bool isNumber = false;
        const std::uint32_t id = line.toUInt(&isNumber);
        if (isNumber)
            ids.push_back(id);
    }
    return ids;
}

} // namespace

QString DragData::mimeTypeOf(kxAssetCategoryType category)
{
    switch (category) {
    case Material:
        return QStringLiteral("application/sarn-material-asset");
    case Environment:
        return QStringLiteral("application/sarn-environment-asset");
    case Geometry:
        return QStringLiteral("application/sarn-geometry-asset");
    case Sceneplate:
        return QStringLiteral("application/sarn-sceneplate-asset");
    case Undefined:
        break;
    }
    return {};
}

QString DragData::nodeMimeType()
{
    return QStringLiteral("application/x-kx-nodes");
}

QString DragData::materialMimeType()
{
    return QStringLiteral("application/x-kx-materials");
}

QString DragData::folderMimeType()
{
    return QStringLiteral("application/x-kx-folders");
}

void DragData::setAssets(QMimeData &data, const std::vector<Asset> &assets)
{
    for (const kxAssetCategoryType category : kxAssetCategory::getAllCategories()) {
        QStringList uuids;
        for (const Asset &asset : assets)
            if (asset.category == category)
                uuids.append(QString::fromStdString(asset.uuid));
        setLines(data, mimeTypeOf(category), uuids);
    }
}

std::vector<DragData::Asset> DragData::assets(const QMimeData &data)
{
    std::vector<Asset> all;
    for (const kxAssetCategoryType category : kxAssetCategory::getAllCategories())
        for (const std::string &uuid : assets(data, category))
            all.push_back({category, uuid});
    return all;
}

std::vector<std::string> DragData::assets(const QMimeData &data, kxAssetCategoryType category)
{
    std::vector<std::string> uuids;
    for (const QString &line : linesOf(data, mimeTypeOf(category)))
        uuids.push_back(line.toStdString());
    return uuids;
}

bool DragData::hasAssets(const QMimeData &data)
{
    const auto categories = kxAssetCategory::getAllCategories();
    return std::any_of(categories.begin(), categories.end(),
                       [&](kxAssetCategoryType category) { return data.hasFormat(mimeTypeOf(category)); });
}

void DragData::setNodes(QMimeData &data, const std::vector<std::uint32_t> &ids)
{
    setIds(data, nodeMimeType(), ids);
}

std::vector<std::uint32_t> DragData::nodes(const QMimeData &data)
{
    return idsOf(data, nodeMimeType());
}

void DragData::setMaterials(QMimeData &data, const std::vector<std::uint32_t> &ids)
{
    setIds(data, materialMimeType(), ids);
}

std::vector<std::uint32_t> DragData::materials(const QMimeData &data)
{
    return idsOf(data, materialMimeType());
}

void DragData::setFolders(QMimeData &data, const QStringList &paths)
{
    setLines(data, folderMimeType(), paths);
}

QStringList DragData::folders(const QMimeData &data)
{
    return linesOf(data, folderMimeType());
}
