// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"
#include "AssetSession/kxAssetLibrary.h"
#include "SceneGraph/Result.h"

#include <QString>

#include <string>
#include <vector>

class kxMaterialAssetItem;

/// What can be done to stored assets besides saving them, for all programs alike. Main thread only.
///
/// Assets are named by UUID: several of these replace the item in the registry. Failures name the asset and the reason.
class KX_ASSETSESSION_EXPORT kxAssetOperations
{
public:
    struct TagEdit
    {
        std::vector<std::string> added;
        std::vector<std::string> removed;
        bool clears = false; ///< before the others are added
    };

    kxAssetOperations() = delete;

    /// Changes the tags of a material asset and saves it where it is.
    static osg::Result<void> retag(const std::string &uuid, const TagEdit &edit);
    /// Renders a material asset's preview anew. Its payload stays untouched, so that nothing counts as changed.
    static osg::Result<void> renderPreview(const std::string &uuid);
    /// Where the preview of an asset is, or would be; "" for what is not registered or has no files.
    static QString previewFile(const std::string &uuid);
    static bool hasPreview(const std::string &uuid);

    /// The name of a composite asset of the library, none of \a but, that is made of the asset; "" when there is none.
    static std::string userOf(const kxAssetLibrary &library, const std::string &uuid,
                              const std::vector<std::string> &but = {});
    /// Removes the asset from the disk and the registry, whoever uses it. Nothing happens for what is not registered.
    static osg::Result<void> remove(const std::string &uuid);
};
