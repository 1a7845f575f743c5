// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxSceneplateTree.h"

#include "Kernel/kxController.h"
#include "Kernel/kxScenegraph.h"
#include "Rendering/kxSceneplatePainter.h"

namespace {

constexpr QSize PreviewSize(512, 384);

} // namespace

kxSceneplateTree::kxSceneplateTree(QObject *parent) : kxSceneplateService(parent) {}

kxSceneplateTree::~kxSceneplateTree() = default;

void kxSceneplateTree::nodesChanged()
{
    kxScenegraph::update(false);
    kxController::updateRender(false);
}

QImage kxSceneplateTree::previewImage(const kxdNodePtr &node)
{
    return kxSceneplatePainter::preview(node ? node->node() : osg::NodePtr(), PreviewSize);
}
