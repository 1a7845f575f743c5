// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "HostModule.h"
#include "LibraryFixture.h"
#include "SceneGraph/MultiMaterial.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <cstdint>
#include <string>
#include <vector>

class kxMaterialAssetItem;

using Owned = osg::FCRef<osg::Material>;

/// A library, a fresh scene, and materials for both.
class MaterialFixture : public LibraryFixture
{
protected:
    MaterialFixture();
    ~MaterialFixture() override;

    static Owned named(const osg::MaterialPtr &material, const std::string &name);
    static Owned makeSurface(const std::string &name);
    static Owned makeSky(const std::string &name);
    static Owned makeSwitch(const std::string &name, const std::vector<Owned> &parts, int choice = 0);
    static Owned makeMultiPass(const std::string &name, const std::vector<Owned> &parts);

    static void makeAsset(const osg::MaterialPtr &material, const std::string &uuid);
    static void setTags(const osg::MaterialPtr &material, const std::vector<std::string> &tags);
    static std::vector<std::string> tagsOf(const osg::MaterialPtr &material);
    /// Two by two black pixels.
    static void addPreview(const osg::MaterialPtr &material);
    static void setGlow(const osg::MaterialPtr &material, const osg::Color4f &colour);
    static osg::Color4f glowOf(const osg::MaterialPtr &material);
    static std::vector<osg::MaterialPtr> partsOf(const osg::MaterialPtr &material);
    static std::vector<std::string> namesOf(const std::vector<osg::MaterialPtr> &materials);
    static std::string uuidOf(const osg::MaterialPtr &material);
    static bool isUserEdited(const osg::MaterialPtr &material);

    /// Stores the material in the library and forgets it; the item is registered, and loads the material anew.
    std::string store(const Owned &material) const;
    static kxMaterialAssetItem *item(const std::string &uuid);

    /// Writes the metadata of a composite that no payload belongs to, and registers its item.
    kxMaterialAssetItem *describeComposite(const std::string &uuid, const std::string &type,
                                           const std::vector<std::string> &parts, const std::string &more = {}) const;

    HostModule _host;
};
