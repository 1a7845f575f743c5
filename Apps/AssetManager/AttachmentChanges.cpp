// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AttachmentChanges.h"

#include "AssetManager/FieldStep.h"
#include "AssetManager/SceneCommand.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/FieldContainerFactory.h"

AttachmentChanges::AttachmentChanges(const std::vector<std::uint32_t> &containerIds)
{
    for (const std::uint32_t id : containerIds) {
        const auto container = osg::AttachmentContainerPtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
        const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(container);
        if (!attachment)
            continue;
        for (const char *name : {"Uuid", "Category", "Url", "Checksum", "UserEdited"})
            if (const osg::FieldInfo *field = attachment->getType().findField(name))
                _fields.push_back({attachment.getFieldContainerId(), name, osg::FieldValue::of(*attachment, *field)});
    }
}

void AttachmentChanges::adoptInto(SceneCommand &command) const
{
    for (const Field &before : _fields) {
        const osg::FieldContainerPtr attachment = osg::FieldContainerFactory::the().getContainer(before.attachmentId);
        const osg::FieldInfo *field = attachment ? attachment->getType().findField(before.name) : nullptr;
        if (!field)
            continue;
        const osg::FieldValue now = osg::FieldValue::of(*attachment, *field);
        if (now != before.before)
            command.adopt(FieldStep::done(before.attachmentId, before.name, before.before, now));
    }
}
