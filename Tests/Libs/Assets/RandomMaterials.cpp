// SPDX-License-Identifier: Apache-2.0
#include "RandomMaterials.h"

#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/ImageAttachment.h"
#include "SceneGraph/MultiPassMaterial.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/TagAttachment.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"
#include "SceneGraph/USphereEnvironmentMaterial.h"

RandomMaterials::RandomMaterials(RandomNumbers &random) : _random(random)
{
    const auto sky = osg::UEnvironmentMaterialPtr::dcast(kxDefaultEnvironment::getSwitch()->getMaterial(0));
    _held.emplace_back(sky);
    _all.emplace_back(sky);
    _environments.push_back(sky);
    for (int i = 0; i < 4; ++i)
        makeEnvironment();
    for (int i = 0; i < 2; ++i)
        makeEnvironmentSwitch();
    for (int i = 0; i < 4; ++i)
        makeSurface();
    for (int i = 0; i < 3; ++i)
        makeUber();
    for (int i = 0; i < 3; ++i)
        makeComposite();
    for (const osg::MaterialPtr &material : _all)
        decorate(material);
}

void RandomMaterials::keep(const osg::MaterialPtr &material, const std::string &name)
{
    kxMaterials::setName(material, name + std::to_string(_all.size()), false);
    _held.emplace_back(material);
    _all.push_back(material);
}

osg::MaterialPtr RandomMaterials::anyEnvironment()
{
    switch (_random.below(5)) {
    case 0:
        return nullptr;
    case 1:
        return _random.of(_switches);
    case 2:
        return _random.of(_environments);
    default:
        return kxDefaultEnvironment::getDefault();
    }
}

osg::ImagePtr RandomMaterials::makeImage(RandomNumbers &random)
{
    const osg::ImagePtr image = osg::Image::create();
    const osg::CPEditor edit(image, osg::AllFieldMask);
    image->set(2, 1, 3, osg::PixelType::UInt8);
    image->editPixels()[0] = static_cast<std::uint8_t>(random.below(256));
    return image;
}

void RandomMaterials::makeEnvironment()
{
    if (_random.oneIn(2)) {
        const auto sky = osg::USkyEnvironmentMaterial::create();
        keep(sky, "sky");
        _environments.emplace_back(sky);
        return;
    }
    const auto sphere = osg::USphereEnvironmentMaterial::create();
    keep(sphere, "sphere");
    _environments.emplace_back(sphere);
    const osg::CPEditor edit(sphere, osg::AllFieldMask);
    sphere->setImage(makeImage(_random));
    sphere->setIsVisible(_random.oneIn(2));
}

void RandomMaterials::makeEnvironmentSwitch()
{
    const auto chooser = osg::UEnvironmentSwitchMaterial::create();
    {
        const osg::CPEditor edit(chooser, osg::AllFieldMask);
        for (std::size_t i = _random.below(3) + 1; i > 0; --i)
            chooser->addMaterial(_random.of(_environments));
        if (_random.oneIn(4))
            chooser->editMaterials().push_back(nullptr);
        chooser->setChoice(static_cast<std::int32_t>(_random.below(4)) - 1);
    }
    keep(chooser, "chooser");
    _switches.push_back(chooser);
}

void RandomMaterials::makeSurface()
{
    const auto surface = osg::UBRDFMaterial::create();
    const osg::MaterialPtr environment = anyEnvironment();
    osg::UBRDFMaterial::setIgnoreDefaultEnvironment(true); // so that null stays null
    {
        const osg::CPEditor edit(surface, osg::AllFieldMask);
        surface->setRoughness(_random.share());
        surface->setDiffuseColor({_random.share(), _random.share(), _random.share(), 1.0F});
        surface->setEnvironment(environment);
        if (_random.oneIn(3))
            surface->setBumpTexture(osg::Texture::create());
    }
    osg::UBRDFMaterial::setIgnoreDefaultEnvironment(false);
    keep(surface, "surface");
    _surfaces.push_back(surface);
}

/// Layers may be shared with others, repeated and missing.
void RandomMaterials::makeUber()
{
    const auto uber = osg::UberMaterial::create();
    {
        const osg::CPEditor edit(uber, osg::AllFieldMask);
        for (std::size_t i = _random.below(4); i > 0; --i)
            uber->editBRDFMaterials().push_back(_random.oneIn(8) ? nullptr : _random.of(_surfaces));
    }
    keep(uber, "uber");
}

void RandomMaterials::makeComposite()
{
    osg::FCRef<osg::MultiMaterial> composite(osg::MultiMaterial::create());
    if (_random.oneIn(3))
        composite = osg::FCRef<osg::MultiMaterial>(osg::MultiPassMaterial::create());
    else if (_random.oneIn(2))
        composite = osg::FCRef<osg::MultiMaterial>(osg::SwitchMaterial::create());
    {
        const osg::CPEditor edit(composite, osg::AllFieldMask);
        for (std::size_t i = _random.below(4); i > 0; --i)
            composite->addMaterial(_random.of(_all));
        if (const auto chooser = osg::SwitchMaterialPtr::dcast(composite.get()))
            chooser->setChoice(static_cast<std::int32_t>(_random.below(4)) - 1);
    }
    keep(composite.get(), "composite");
}

void RandomMaterials::decorate(const osg::MaterialPtr &material)
{
    if (_random.oneIn(2))
        kxScenegraph::addToMaterialPool(material);
    if (_random.oneIn(4))
        kxMaterials::addValuePair(material, "note", std::to_string(_random.below(9)));
    if (_random.oneIn(5))
        osg::AssetAttachment::createAssetAttachment(material);
    if (_random.oneIn(3)) {
        const auto preview = osg::ImageAttachment::create();
        {
            const osg::CPEditor edit(preview, osg::AllFieldMask);
            preview->setImage(makeImage(_random));
        }
        const osg::CPEditor edit(material, osg::AttachmentContainer::AttachmentsFieldMask);
        material->addAttachment(preview);
    }
}
