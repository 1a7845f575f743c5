// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"
#include "AssetSession/kxAssetLibrary.h"
#include "SceneGraph/Material.h"

#include <QString>

#include <functional>
#include <string>
#include <vector>

/// Keeps the materials of foreign files as assets of a library. Main thread only.
///
/// A material is known again by its name and the name of the file that it came from: importing the same file once more
/// updates its assets and makes no second ones.
class KX_ASSETSESSION_EXPORT kxMaterialImport
{
public:
    struct Saved
    {
        std::string uuid;
        std::string name;
        bool isUpdate = false;
    };
    struct Outcome
    {
        std::vector<Saved> saved;
        std::vector<std::string> failures; ///< each names the file or material and the reason
    };

    explicit kxMaterialImport(const kxAssetLibrary &library) : _library(library) {}

    /// Tags that every imported material gets.
    void setTags(const std::vector<std::string> &tags) { _tags = tags; }

    /// A scene file gives its materials, an HDR or other picture an environment material. Assets go into \a folder.
    /// \a goOn is asked before each material; false ends the import.
    Outcome importFile(const QString &path, const QUrl &folder, const std::function<bool()> &goOn) const;

private:
    void saveMaterial(const osg::MaterialPtr &material, const std::string &source, const QUrl &folder,
                      Outcome &outcome) const;
    std::string knownUuid(const std::string &name, const std::string &source) const;

    const kxAssetLibrary &_library;
    std::vector<std::string> _tags;
};
