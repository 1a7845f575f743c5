// SPDX-License-Identifier: Apache-2.0
#include "MaterialFixture.h"

#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxLocalUrlManager.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxRaytracingManager.h"
#include "Kernel/kxRaytracingUtils.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/ImageAttachment.h"
#include "SceneGraph/MultiPassMaterial.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/TagAttachment.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"

namespace {

void fill(const osg::MultiMaterialPtr &composite, const std::vector<Owned> &parts)
{
    osg::CPEditor edit(composite, osg::MultiMaterial::MaterialsFieldMask);
    for (const Owned &part : parts)
        composite->addMaterial(part);
}

void setRaytracingDefaults()
{
    kxRaytracingManager::getRaytracingUtils().setPhotometric(false);
    kxRaytracingManager::getRaytracingUtils().setPhotometricConversionFactor(100.0F);
}

} // namespace

MaterialFixture::MaterialFixture()
{
    kxScenegraph::newDocument();
    setRaytracingDefaults();
}

MaterialFixture::~MaterialFixture()
{
    kxScenegraph::closeDocument();
    setRaytracingDefaults();
}

Owned MaterialFixture::named(const osg::MaterialPtr &material, const std::string &name)
{
    kxMaterials::setName(material, name, false);
    return material;
}

Owned MaterialFixture::makeSurface(const std::string &name)
{
    return named(osg::UBRDFMaterial::create(), name);
}

Owned MaterialFixture::makeSky(const std::string &name)
{
    return named(osg::USkyEnvironmentMaterial::create(), name);
}

Owned MaterialFixture::makeSwitch(const std::string &name, const std::vector<Owned> &parts, int choice)
{
    const osg::SwitchMaterialPtr material = osg::SwitchMaterial::create();
    fill(material, parts);
    osg::CPEditor edit(material, osg::SwitchMaterial::ChoiceFieldMask);
    material->setChoice(choice);
    return named(material, name);
}

Owned MaterialFixture::makeMultiPass(const std::string &name, const std::vector<Owned> &parts)
{
    const osg::MultiPassMaterialPtr material = osg::MultiPassMaterial::create();
    fill(material, parts);
    return named(material, name);
}

void MaterialFixture::makeAsset(const osg::MaterialPtr &material, const std::string &uuid)
{
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::createAssetAttachment(material);
    osg::CPEditor edit(attachment, osg::AssetAttachment::UuidFieldMask);
    attachment->setUuid(uuid);
}

void MaterialFixture::setTags(const osg::MaterialPtr &material, const std::vector<std::string> &tags)
{
    const osg::TagAttachmentPtr attachment = osg::TagAttachment::create();
    {
        osg::CPEditor edit(material, osg::AttachmentContainer::AttachmentsFieldMask);
        material->addAttachment(attachment);
    }
    osg::CPEditor edit(attachment, osg::TagAttachment::MaterialsFieldMask);
    for (const std::string &tag : tags)
        attachment->addMaterialTag(tag);
}

std::vector<std::string> MaterialFixture::tagsOf(const osg::MaterialPtr &material)
{
    const auto attachment = osg::findAttachment<osg::TagAttachment>(material);
    return attachment ? attachment->getMaterials().values() : std::vector<std::string>{"(no attachment)"};
}

void MaterialFixture::addPreview(const osg::MaterialPtr &material)
{
    const osg::FCRef<osg::Image> image(osg::Image::create());
    image->set(2, 2, 3, osg::PixelType::UInt8);
    const osg::ImageAttachmentPtr attachment = osg::ImageAttachment::create();
    {
        osg::CPEditor edit(material, osg::AttachmentContainer::AttachmentsFieldMask);
        material->addAttachment(attachment);
    }
    osg::CPEditor edit(attachment, osg::ImageAttachment::ImageFieldMask);
    attachment->setImage(image);
}

void MaterialFixture::setGlow(const osg::MaterialPtr &material, const osg::Color4f &colour)
{
    const auto surface = osg::dcast<osg::UBRDFMaterialPtr>(material);
    osg::CPEditor edit(surface, osg::UBRDFMaterial::IncandescenceColorFieldMask);
    surface->setIncandescenceColor(colour);
}

osg::Color4f MaterialFixture::glowOf(const osg::MaterialPtr &material)
{
    return osg::dcast<osg::UBRDFMaterialPtr>(material)->getIncandescenceColor();
}

std::vector<osg::MaterialPtr> MaterialFixture::partsOf(const osg::MaterialPtr &material)
{
    return kxMaterials::getSubMaterials(material);
}

std::vector<std::string> MaterialFixture::namesOf(const std::vector<osg::MaterialPtr> &materials)
{
    std::vector<std::string> names;
    names.reserve(materials.size());
    for (const osg::MaterialPtr &material : materials)
        names.push_back(material ? kxMaterials::getName(material) : "(null)");
    return names;
}

std::string MaterialFixture::uuidOf(const osg::MaterialPtr &material)
{
    const auto attachment = osg::AssetAttachment::getAssetAttachment(material);
    return attachment ? attachment->getUuid() : "(no attachment)";
}

bool MaterialFixture::isUserEdited(const osg::MaterialPtr &material)
{
    return osg::AssetAttachment::getAssetAttachment(material)->getUserEdited();
}

std::string MaterialFixture::store(const Owned &material) const
{
    kxMaterialAssetItem saved;
    saved.initFrom(material, uuidOf(material) == "(no attachment)" ? "" : uuidOf(material), true);
    EXPECT_TRUE(saved.save(url()));
    return saved.uuid();
}

kxMaterialAssetItem *MaterialFixture::item(const std::string &uuid)
{
    return dynamic_cast<kxMaterialAssetItem *>(kxAssetItemFactory::the().findItem(uuid));
}

kxMaterialAssetItem *MaterialFixture::describeComposite(const std::string &uuid, const std::string &type,
                                                        const std::vector<std::string> &parts,
                                                        const std::string &more) const
{
    std::string content = "<category>Materials</category><uuid>" + uuid + "</uuid><name>" + uuid +
                          "</name><material><type>" + type + "</type>" + more + "<subMaterials>";
    for (const std::string &part : parts)
        content += "<uuid>" + part + "</uuid>";
    const QUrl directory = writeAsset("MAT_" + uuid, content + "</subMaterials></material>");
    kxLocalUrlManager::the()->collectItems(directory, Undefined, nullptr);
    return item(uuid);
}
