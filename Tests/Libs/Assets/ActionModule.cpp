// SPDX-License-Identifier: Apache-2.0
#include "ActionModule.h"

#include "Kernel/kxMessage.h"
#include "Kernel/kxNodeUtils.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/JsonAttachment.h"

bool ActionModule::hasActions(const osg::NodePtr &node)
{
    return static_cast<bool>(osg::findAttachment<osg::JsonAttachment>(node));
}

void ActionModule::removeActions(const osg::NodePtr &node)
{
    kxNodeUtils::removeAttachment(node, osg::JsonAttachment::getClassType());
}

void ActionModule::doReceive(const kxMessage &message)
{
    if (message.code() != 0x100000000 || !message.get<bool>("addActionAttachment").value_or(false))
        return;
    const auto node = message.get<osg::NodePtr>("node").value_or(nullptr);
    asked.push_back(node.getFieldContainerId());
    const auto text = osg::JsonAttachment::create();
    {
        const osg::CPEditor edit(text, osg::JsonAttachment::TextFieldMask);
        text->setText("actions");
    }
    const osg::CPEditor edit(node, osg::AttachmentContainer::AttachmentsFieldMask);
    node->addAttachment(text);
}
