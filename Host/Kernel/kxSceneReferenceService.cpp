// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxSceneReferenceService.h"

#include "Kernel/kxNodeUtils.h"
#include "SceneGraph/NodeWalk.h"
#include "SceneGraph/ReferenceAttachment.h"

kxSceneReferenceService::kxSceneReferenceService(QObject *parent) : kxReferenceService(parent) {}

kxSceneReferenceService::~kxSceneReferenceService() = default;

std::vector<kxdReferenceNodePtr> kxSceneReferenceService::referenceNodes(const kxdNodePtr &node)
{
    std::vector<kxdReferenceNodePtr> references;
    osg::forEachNode(node ? node->node() : osg::NodePtr(), [&references](const osg::NodePtr &current) {
        if (osg::findAttachment<osg::ReferenceAttachment>(current))
            references.push_back(kxdReferenceNodePtr::create(current.getFieldContainerId()));
    });
    return references;
}

bool kxSceneReferenceService::makeOrdinary(const kxdReferenceNodePtr &node)
{
    const osg::NodePtr reference = node ? node->node() : osg::NodePtr();
    if (!osg::findAttachment<osg::ReferenceAttachment>(reference))
        return false;
    kxNodeUtils::removeAttachment(reference, osg::ReferenceAttachment::getClassType());
    return true;
}
