// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/ImageIndex.h"

#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Texture.h"
#include "SceneGraph/USphereEnvironmentMaterial.h"

namespace kxKernelInternal {

osg::ImagePtr ImageIndex::findEqual(const osg::ImagePtr &image, const std::set<std::uint32_t> &excluded)
{
    const auto candidates = _byForm.find(formOf(*image));
    if (candidates == _byForm.end())
        return nullptr;
    for (const Id id : candidates->second) {
        const auto candidate = osg::ImagePtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
        if (candidate != image && excluded.count(id) == 0 && areEqual(*image, *candidate))
            return candidate;
    }
    return nullptr;
}

void ImageIndex::containerChanged(osg::FieldContainer &container, osg::FieldMask fields)
{
    const osg::FieldContainerPtr handle(&container);
    const Id id = handle.getFieldContainerId();
    if (const auto texture = osg::TexturePtr::dcast(handle)) {
        if ((fields & osg::Texture::ImageFieldMask) != 0)
            setImage(id, texture->getImage());
    } else if (const auto environment = osg::USphereEnvironmentMaterialPtr::dcast(handle)) {
        if ((fields & osg::USphereEnvironmentMaterial::ImageFieldMask) != 0)
            setImage(id, environment->getImage());
    } else if (const auto image = osg::ImagePtr::dcast(handle)) {
        _hashes.erase(id);
        if (_usersOf.count(id) != 0) {
            leave(id);
            enter(*image);
        }
    }
}

void ImageIndex::containerDestroyed(osg::FieldContainer &container)
{
    setImage(container.getFieldContainerId(), nullptr);
    _hashes.erase(container.getFieldContainerId());
}

ImageIndex::Form ImageIndex::formOf(const osg::Image &image)
{
    return {image.getWidth(), image.getHeight(), image.getChannels(), image.getDataType()};
}

std::uint64_t ImageIndex::hashOf(const osg::Image &image)
{
    const auto [entry, isNew] = _hashes.emplace(image.getFieldContainerId(), 0);
    if (isNew)
        entry->second = image.contentHash();
    return entry->second;
}

bool ImageIndex::areEqual(const osg::Image &a, const osg::Image &b)
{
    if (!a.source().empty() && a.source() == b.source())
        return true;
    return hashOf(a) == hashOf(b) && a.getPixels() == b.getPixels();
}

void ImageIndex::setImage(Id user, const osg::ImagePtr &image)
{
    const auto before = _imageOf.find(user);
    if (before != _imageOf.end()) {
        const Id old = before->second;
        _imageOf.erase(before);
        std::set<Id> &users = _usersOf[old];
        users.erase(user);
        if (users.empty()) {
            _usersOf.erase(old);
            leave(old);
        }
    }
    if (!image)
        return;
    _imageOf[user] = image.getFieldContainerId();
    _usersOf[image.getFieldContainerId()].insert(user);
    enter(*image);
}

void ImageIndex::enter(const osg::Image &image)
{
    const Form form = formOf(image);
    _forms[image.getFieldContainerId()] = form;
    _byForm[form].insert(image.getFieldContainerId());
}

void ImageIndex::leave(Id image)
{
    const auto known = _forms.find(image);
    if (known == _forms.end())
        return;
    std::set<Id> &sameForm = _byForm[known->second];
    sameForm.erase(image);
    if (sameForm.empty())
        _byForm.erase(known->second);
    _forms.erase(known);
}

} // namespace kxKernelInternal
