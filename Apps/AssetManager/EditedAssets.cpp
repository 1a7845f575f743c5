// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/EditedAssets.h"

#include "AssetManager/FieldStep.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/NodeWalk.h"
#include "SceneGraph/Transform.h"
#include "SceneGraph/Transform3D.h"

#include <vector>

namespace {

void note(SceneCommand &command, const osg::AttachmentContainerPtr &container)
{
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(container);
    if (attachment && !attachment->getUserEdited())
        command.perform(std::make_unique<FieldStep>(attachment.getFieldContainerId(), "UserEdited", true));
}

std::vector<osg::NodePtr> nodesWith(const osg::NodeCorePtr &core)
{
    std::vector<osg::NodePtr> found;
    for (const osg::NodePtr &root : {kxScenegraph::getRoot(), kxScenegraph::getSceneplateRoot()})
        osg::forEachNode(root, [&](const osg::NodePtr &node) {
            if (node->getCore() == core)
                found.push_back(node);
        });
    return found;
}

bool isPlacement(const osg::NodeCorePtr &core)
{
    return isOfType(core, osg::Transform::getClassType()) || isOfType(core, osg::Transform3D::getClassType());
}

} // namespace

void EditedAssets::noteAtOrAbove(SceneCommand &command, osg::NodePtr node)
{
    for (; node; node = node->getParent())
        note(command, node);
}

void EditedAssets::noteField(SceneCommand &command, std::uint32_t containerId, const std::string &field)
{
    const osg::FieldContainerPtr container = osg::FieldContainerFactory::the().getContainer(containerId);
    if (const auto core = osg::NodeCorePtr::dcast(container)) {
        const bool isPlace = isPlacement(core) && field != "Attachments";
        for (const osg::NodePtr &node : nodesWith(core))
            noteAtOrAbove(command, isPlace ? node->getParent() : node);
    } else if (const auto node = osg::NodePtr::dcast(container)) {
        noteAtOrAbove(command, node);
    } else {
        note(command, osg::AttachmentContainerPtr::dcast(container));
    }
}
