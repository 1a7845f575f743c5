// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"
#include "AssetSession/kxAssetLibrary.h"
#include "AssetSession/kxUnsavedPart.h"
#include "SceneGraph/Material.h"

#include <QString>

#include <functional>
#include <map>
#include <string>
#include <vector>

/// Keeps the materials of foreign files as assets of a library. Main thread only.
///
/// A material is known again by its name and the place of the file that it came from, a composite by its parts: importing the same file once more
/// updates its assets where they are, keeps the names and tags that people gave them, and makes no second ones. A file of
/// the same name in another folder is another file.
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
        std::vector<std::string> failures;    ///< each names the file or material and the reason
        std::vector<kxUnsavedPart> unsaved{}; ///< where the file could be read: what each failure is about
    };

    /// The library must be open, and stay.
    explicit kxMaterialImport(const kxAssetLibrary &library) : _library(library) {}

    /// Tags that every imported material gets.
    void setTags(const std::vector<std::string> &tags) { _tags = tags; }
    /// What is asked many times a second while a file is read, and may handle events; false stops that, and the import
    /// fails.
    void setWhileReading(const std::function<bool()> &goOn) { _whileReading = goOn; }

    /// A scene file gives its materials, an HDR or other picture an environment material, a description what it describes
    /// (kxMaterialDescription). Assets go into \a folder, those of a description into its folders in there.
    /// \a goOn is asked before each material; false ends the import.
    Outcome importFile(const QString &path, const QUrl &folder, const std::function<bool()> &goOn);

private:
    /// Where a material came from, as it is written with it.
    struct Origin
    {
        std::string file;   ///< without its path: assets must not say where things were
        std::string folder; ///< a digest of the path, which tells folders apart and gives none away
    };

    void saveMaterial(const osg::MaterialPtr &material, const Origin &origin, const QUrl &folder, Outcome &outcome);
    std::string findKnownComposite(const osg::MaterialPtr &material);
    std::string findKnown(const osg::MaterialPtr &material, const Origin &origin);
    void remember(const std::string &uuid);

    const kxAssetLibrary &_library;
    std::vector<std::string> _tags;
    std::function<bool()> _whileReading;
    std::multimap<std::string, std::string> _uuidsOfPayloads; ///< by the payloads' names, which renaming leaves alone
    bool _isIndexed = false;
};
