// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxMaterialTags.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/TagAttachment.h"

namespace {

osg::TagAttachmentPtr findOrCreateAttachment(const osg::MaterialPtr &material)
{
    osg::TagAttachmentPtr attachment = osg::findAttachment<osg::TagAttachment>(material);
    if (attachment)
        return attachment;
    attachment = osg::TagAttachment::create();
    const osg::CPEditor edit(material, osg::Material::AttachmentsFieldMask);
    material->addAttachment(attachment);
    return attachment;
}

} // namespace

void kxMaterialTags::addTag(const osg::MaterialPtr &material, const std::string &tag)
{
    if (!material)
        return;
    const osg::TagAttachmentPtr attachment = findOrCreateAttachment(material);
    if (attachment->hasMaterialTag(tag))
        return;
    const osg::CPEditor edit(attachment, osg::TagAttachment::MaterialsFieldMask);
    attachment->addMaterialTag(tag);
}
