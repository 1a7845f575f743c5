// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxTextureManager.h"

#include "Kernel/Internal/SceneIndexes.h"
#include "Kernel/kxMaterials.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Texture.h"
#include "SceneGraph/USphereEnvironmentMaterial.h"

#include <map>
#include <set>
#include <variant>
#include <vector>

namespace {

struct ImageUsers
{
    std::vector<osg::TexturePtr> textures;
    std::vector<osg::USphereEnvironmentMaterialPtr> environments;
};

/// By image, so that what shares an image goes on sharing one.
using UsersByImage = std::map<osg::ImagePtr, ImageUsers>;

void collectTextures(const osg::MaterialPtr &material, UsersByImage &users)
{
    for (const osg::FieldInfo &field : material->getType().fields()) {
        const osg::FieldPointer address = field.address(*material);
        const auto *reference = std::get_if<osg::RefFieldBase *>(&address);
        const auto texture = reference ? osg::TexturePtr::dcast((*reference)->getContainer()) : osg::TexturePtr();
        if (texture && texture->getImage())
            users[texture->getImage()].textures.push_back(texture);
    }
}

UsersByImage usersIn(const osg::MaterialPtr &material)
{
    UsersByImage users;
    std::vector<osg::MaterialPtr> parts;
    kxMaterials::getRecursiveMaterials(material, parts, true);
    for (const osg::MaterialPtr &part : parts) {
        collectTextures(part, users);
        const auto environment = osg::USphereEnvironmentMaterialPtr::dcast(part);
        if (environment && environment->getImage())
            users[environment->getImage()].environments.push_back(environment);
    }
    return users;
}

void replaceImage(const ImageUsers &users, const osg::ImagePtr &image)
{
    for (const osg::TexturePtr &texture : users.textures) {
        const osg::CPEditor edit(texture, osg::Texture::ImageFieldMask);
        texture->setImage(image);
    }
    for (const osg::USphereEnvironmentMaterialPtr &environment : users.environments) {
        const osg::CPEditor edit(environment, osg::USphereEnvironmentMaterial::ImageFieldMask);
        environment->setImage(image);
    }
}

} // namespace

int kxTextureManager::shareImagesRecursive(const osg::MaterialPtr &material)
{
    const UsersByImage users = usersIn(material);
    std::set<std::uint32_t> taken;
    for (const auto &[image, usersOfImage] : users)
        taken.insert(image.getFieldContainerId());

    int replaced = 0;
    for (const auto &[image, usersOfImage] : users) {
        const osg::ImagePtr equal = kxKernelInternal::SceneIndexes::the().images.findEqual(image, taken);
        if (!equal)
            continue;
        taken.insert(equal.getFieldContainerId());
        replaceImage(usersOfImage, equal);
        ++replaced;
    }
    return replaced;
}
