// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxOSGWidget.h"

#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/CameraCore.h"

#include <vector>

namespace {

std::vector<kxOSGWidget *> &views()
{
    static std::vector<kxOSGWidget *> views;
    return views;
}

} // namespace

kxOSGWidget *kxOSGWidget::getMGLW(int index)
{
    const std::size_t position = index == -1 ? 0 : static_cast<std::size_t>(index);
    return index >= -1 && position < views().size() ? views()[position] : nullptr;
}

void kxOSGWidget::cancelAntialiasing()
{
    const std::vector<kxOSGWidget *> all = views();
    for (kxOSGWidget *view : all)
        view->cancelRefinement();
}

kxOSGWidget::kxOSGWidget()
{
    views().push_back(this);
}

kxOSGWidget::~kxOSGWidget()
{
    std::erase(views(), this);
}

void kxOSGWidget::setRenderRoots(int index, const std::vector<osg::NodePtr> &roots)
{
    if (kxOSGWidget *view = getMGLW(index))
        view->setRenderRoots(roots);
}

osg::UberCameraPtr kxOSGWidget::getUberCamera() const
{
    const osg::NodePtr node = kxScenegraph::getCameraNode();
    const auto core = node ? osg::CameraCorePtr::dcast(node->getCore()) : osg::CameraCorePtr();
    return core ? core->getCamera() : osg::UberCameraPtr();
}

std::vector<osg::NodePtr> kxOSGWidget::getRenderRoots() const
{
    std::vector<osg::NodePtr> roots;
    for (const std::uint32_t id : _renderRoots)
        if (const osg::NodePtr node = kxNodeUtils::getNodeFromId(id))
            roots.push_back(node);
    return roots;
}

void kxOSGWidget::setRenderRoots(const std::vector<osg::NodePtr> &roots)
{
    cancelRefinement();
    _renderRoots.clear();
    for (const osg::NodePtr &node : roots)
        if (node)
            _renderRoots.push_back(node.getFieldContainerId());
    renderRootsChanged();
}

void kxOSGWidget::setIsolateViewOverlayVisible(bool visible)
{
    _isIsolateViewOverlayVisible = visible;
    overlayChanged();
}
