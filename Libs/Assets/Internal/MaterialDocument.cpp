// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/MaterialDocument.h"

#include "Assets/kxAssetItemDocument.h"
#include "Kernel/kxMaterials.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/MultiPassMaterial.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/TagAttachment.h"
#include "SceneGraph/UBRDFMaterial.h"

namespace kxAssetsInternal {

namespace {

bool isComposite(const osg::FieldContainerType &type)
{
    return type.isDerivedFrom(osg::SwitchMaterial::getClassType()) ||
           type.isDerivedFrom(osg::MultiPassMaterial::getClassType());
}

void attachIdentity(const osg::MaterialPtr &material, const std::string &uuid)
{
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::createAssetAttachment(material);
    {
        osg::CPEditor edit(attachment, osg::AssetAttachment::UuidFieldMask);
        attachment->setUuid(uuid);
    }
    osg::CPEditor edit(attachment, osg::AssetAttachment::CategoryFieldMask);
    attachment->setCategory(kxAssetCategory::getInternalCategoryName(Material));
}

osg::TagAttachmentPtr findOrMakeTags(const osg::MaterialPtr &material)
{
    if (const auto tags = osg::findAttachment<osg::TagAttachment>(material))
        return tags;
    const osg::TagAttachmentPtr tags = osg::TagAttachment::create();
    osg::CPEditor edit(material, osg::AttachmentContainer::AttachmentsFieldMask);
    material->addAttachment(tags);
    return tags;
}

} // namespace

bool describeMaterial(kxAssetItemDocument &document, const osg::MaterialPtr &material)
{
    document.setMaterialType(material->getType());
    if (const auto tags = osg::findAttachment<osg::TagAttachment>(material))
        document.setMaterialTags(tags->getTagString());

    const auto composite = osg::dcast<osg::MultiMaterialPtr>(material);
    if (composite && !document.setSubMaterialAssets(composite->getMaterials()))
        return false;
    if (const auto choices = osg::dcast<osg::SwitchMaterialPtr>(material))
        document.setSwitchMaterialChoice(choices->getChoice());

    const auto surface = osg::dcast<osg::UBRDFMaterialPtr>(material);
    if (surface && surface->getEnvironment())
        document.setMaterialBRDFEnvironmentName(kxMaterials::getName(surface->getEnvironment()));
    return true;
}

osg::FCRef<osg::Material> makeComposite(const kxAssetItemDocument &document)
{
    const osg::FieldContainerType *type = document.getMaterialType();
    if (!type || !isComposite(*type))
        return nullptr;
    // Owned before it is looked at, so that nothing stays behind of a container that is no material.
    const osg::FCRef<osg::FieldContainer> made(
        osg::FieldContainerFactory::the().createFieldContainer(type->getCName()));
    return osg::dcast<osg::MaterialPtr>(made);
}

void assemble(const osg::MaterialPtr &composite, const std::vector<osg::MaterialPtr> &parts, int choice)
{
    const auto multi = osg::dcast<osg::MultiMaterialPtr>(composite);
    {
        osg::CPEditor edit(multi, osg::MultiMaterial::MaterialsFieldMask);
        for (const osg::MaterialPtr &part : parts)
            multi->addMaterial(part); // which passes over null, so that later parts move up
    }
    const auto choices = osg::dcast<osg::SwitchMaterialPtr>(composite);
    if (!choices || choice < 0 || static_cast<std::size_t>(choice) >= choices->getMaterials().size())
        return;
    osg::CPEditor edit(choices, osg::SwitchMaterial::ChoiceFieldMask);
    choices->setChoice(choice);
}

void identify(const osg::MaterialPtr &material, const kxAssetItemDocument &document)
{
    kxMaterials::setName(material, document.getAssetName(), true);
    attachIdentity(material, document.getAssetUUID());

    const osg::TagAttachmentPtr tags = findOrMakeTags(material);
    const QStringList names = document.getMaterialTags();
    osg::CPEditor edit(tags, osg::TagAttachment::MaterialsFieldMask);
    for (const QString &name : names)
        tags->addMaterialTag(name.toStdString());
}

} // namespace kxAssetsInternal
