// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxFileIO.h"

#include "Kernel/Internal/LoadProgress.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <QString>

namespace {

bool isEnvironmentOfBRDF(const osg::FieldContainer &owner, const osg::FieldInfo &field)
{
    return owner.getType().isDerivedFrom(osg::UBRDFMaterial::getClassType()) &&
           field.mask == osg::UBRDFMaterial::EnvironmentFieldMask;
}

std::vector<osg::FCRef<osg::Material>> materialsAmong(const osg::SceneRoots &roots)
{
    std::vector<osg::FCRef<osg::Material>> materials;
    for (const osg::FCRef<osg::FieldContainer> &root : roots) {
        if (const auto material = osg::MaterialPtr::dcast(root.get()))
            materials.emplace_back(material);
    }
    return materials;
}

} // namespace

std::vector<osg::FCRef<osg::Material>> kxFileIO::loadMaterial(const char *path, int progress, bool intoPool)
{
    const std::string file = path ? path : "";
    const kxKernelInternal::LoadProgress shown(file.c_str(), progress);
    const osg::Result<osg::SceneRoots> roots = osg::readSceneFile(file);
    if (!roots) {
        kxLog::error("%s", roots.reason().c_str());
        return {};
    }
    std::vector<osg::FCRef<osg::Material>> materials = materialsAmong(roots.value());
    if (materials.empty())
        kxLog::error("Failed to load a material from '%s': the file holds none.", file.c_str());
    if (intoPool) {
        for (const osg::FCRef<osg::Material> &material : materials)
            kxScenegraph::addToMaterialPool(material);
    }
    return materials;
}

bool kxFileIO::saveMaterial(const osg::MaterialPtr &material, const char *path, bool withoutEnvironments)
{
    if (!material || !path)
        return false;
    osg::SceneWriteOptions options;
    if (withoutEnvironments)
        options.leavesOut = isEnvironmentOfBRDF;
    const osg::Result<void> result = osg::writeSceneFile(path, {material}, options);
    if (!result)
        kxLog::debug("%s", result.reason().c_str());
    return static_cast<bool>(result);
}
