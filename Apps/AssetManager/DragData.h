// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetCategory.h"

#include <QStringList>

#include <cstdint>
#include <string>
#include <vector>

class QMimeData;

/// What is dragged within the program and to others: assets by category and UUID, nodes and materials by container id.
///
/// Each category has its own MIME type, that of its items, with one UUID a line, so that whoever takes only materials sees
/// that before the drop.
class DragData
{
public:
    struct Asset
    {
        kxAssetCategoryType category = Undefined;
        std::string uuid;
    };

    DragData() = delete;

    static QString mimeTypeOf(kxAssetCategoryType category);
    static QString nodeMimeType();
    static QString materialMimeType();
    static QString folderMimeType();

    static void setAssets(QMimeData &data, const std::vector<Asset> &assets);
    /// By category, and in each in the order in which they were dragged.
    static std::vector<Asset> assets(const QMimeData &data);
    static std::vector<std::string> assets(const QMimeData &data, kxAssetCategoryType category);
    static bool hasAssets(const QMimeData &data);

    static void setNodes(QMimeData &data, const std::vector<std::uint32_t> &ids);
    static std::vector<std::uint32_t> nodes(const QMimeData &data);
    static void setMaterials(QMimeData &data, const std::vector<std::uint32_t> &ids);
    static std::vector<std::uint32_t> materials(const QMimeData &data);
    /// Folders of libraries, by path.
    static void setFolders(QMimeData &data, const QStringList &paths);
    static QStringList folders(const QMimeData &data);
};
