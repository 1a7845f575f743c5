// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"
#include "SceneGraph/Material.h"
#include "SceneGraph/Result.h"

#include <QString>

#include <string>
#include <vector>

/// A file in which people describe materials: values, colours, pictures, and computed patterns instead of pictures.
/// Docs/material-descriptions.md describes it. Main thread only.
class KX_ASSETSESSION_EXPORT kxMaterialDescription
{
public:
    struct Described
    {
        osg::FCRef<osg::Material> material; ///< with its name and tags
        std::string folder;                 ///< where it belongs in a library; "" or relative
    };

    kxMaterialDescription() = delete;

    /// Whether the name ends in ".materials.json".
    static bool isDescription(const QString &path);

    /// All materials in the order of the file; composites share the materials that they name, which stand before them.
    /// The failure's reason names the file, the material and what is wrong with it: a file is read whole or not at all.
    static osg::Result<std::vector<Described>> read(const QString &path);
};
