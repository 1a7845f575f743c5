// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/GeometryPreview.h"

#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSelectionManager.h"
#include "Rendering/kxImageRenderWidget.h"
#include "Rendering/kxOSGWidget.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "SceneGraph/USphereEnvironmentMaterial.h"

#include <vector>

namespace kxAssetsInternal {

namespace {

constexpr int Width = 512;
constexpr int Height = 384;

using SpherePtr = osg::USphereEnvironmentMaterialPtr;

void setVisible(const SpherePtr &sphere, bool visible)
{
    const osg::CPEditor edit(sphere, osg::USphereEnvironmentMaterial::IsVisibleFieldMask);
    sphere->setIsVisible(visible);
}

std::vector<std::uint32_t> idsOf(const std::vector<osg::NodePtr> &nodes)
{
    std::vector<std::uint32_t> ids;
    ids.reserve(nodes.size());
    for (const osg::NodePtr &node : nodes)
        ids.push_back(node.getFieldContainerId());
    return ids;
}

std::vector<osg::NodePtr> livingNodes(const std::vector<std::uint32_t> &ids)
{
    std::vector<osg::NodePtr> nodes;
    for (const std::uint32_t id : ids)
        if (const osg::NodePtr node = kxNodeUtils::getNodeFromId(id))
            nodes.push_back(node);
    return nodes;
}

/// What the view looked like before, and brings it back; rendering may run an event loop, so that all is known by id.
class ViewState
{
public:
    explicit ViewState(kxOSGWidget &view);
    ~ViewState();
    ViewState(const ViewState &) = delete;
    ViewState &operator=(const ViewState &) = delete;

private:
    void hideEnvironment();
    void restoreCamera() const;

    osg::FCRef<osg::UberCamera> _camera;
    osg::FCRef<osg::UberCamera> _copy;
    std::vector<std::uint32_t> _roots;
    std::vector<std::uint32_t> _selection;
    std::uint32_t _hiddenSphere = 0;
};

ViewState::ViewState(kxOSGWidget &view)
    : _camera(view.getUberCamera()), _copy(osg::deepClone(view.getUberCamera(), {})),
      _roots(idsOf(view.getRenderRoots()))
{
    hideEnvironment();
    const std::vector<osg::NodePtr> selected = kxScenegraph::getSelectedNodes();
    _selection = idsOf(selected);
    kxSelectionManager::selectNodes(selected, false);
}

void ViewState::hideEnvironment()
{
    const osg::UEnvironmentSwitchMaterialPtr choices = kxDefaultEnvironment::getSwitch();
    if (!kxScenegraph::environmentGeometrySwitch() || !choices)
        return;
    const auto sphere = SpherePtr::dcast(choices->getCurrentMaterial());
    if (!sphere || !sphere->getIsVisible())
        return;
    setVisible(sphere, false);
    _hiddenSphere = sphere.getFieldContainerId();
}

void ViewState::restoreCamera() const
{
    const osg::FieldMask mask =
        osg::UberCamera::getCombinedCameraAttributesMask() | osg::UberCamera::getCombinedViewingAttributesMask();
    const osg::CPEditor edit(_camera.get(), mask);
    _camera->syncWith(_copy.get(), mask, true);
}

ViewState::~ViewState()
{
    kxImageRenderWidget::setAlpha(false);
    kxImageRenderWidget::setAlphaColor(0, 0, 0);
    restoreCamera();
    _copy.reset();
    if (const auto sphere = SpherePtr::dcast(osg::FieldContainerFactory::the().getContainer(_hiddenSphere)))
        setVisible(sphere, true);
    kxSelectionManager::selectNodes(livingNodes(_selection));
    if (kxOSGWidget *view = kxOSGWidget::getMGLW(-1))
        view->setIsolateViewOverlayVisible(true);
    kxOSGWidget::setRenderRoots(-1, livingNodes(_roots));
    kxController::updateRender(true);
}

osg::FCRef<osg::Image> renderAlone(const QString &label)
{
    kxImageRenderWidget widget(nullptr, Width, Height, 0, false, 1, true, true, 1, false);
    widget.setLabelText(label);
    widget.setShowCancelButton(false);
    if (!widget.isValid())
        return nullptr;
    const std::vector<osg::ImagePtr> images = widget.render(nullptr, 0, false, true);
    return images.empty() ? osg::FCRef<osg::Image>() : osg::FCRef<osg::Image>(images.front());
}

} // namespace

osg::ImagePtr renderGeometryPreview(const osg::NodePtr &node, const QString &label)
{
    kxOSGWidget *view = node ? kxOSGWidget::getMGLW(-1) : nullptr;
    const osg::UberCameraPtr camera = view ? view->getUberCamera() : osg::UberCameraPtr();
    if (!camera)
        return nullptr;
    osg::FCRef<osg::Image> image;
    {
        const ViewState before(*view);
        view->setRenderRoots({node});
        view->setIsolateViewOverlayVisible(false);
        {
            const osg::CPEditor edit(camera, osg::AllFieldMask);
            camera->zoomTo(node->getWorldVolume(), true, {0.0, 0.0, 0.0});
        }
        kxImageRenderWidget::setAlpha(true);
        kxImageRenderWidget::setAlphaColor(0, 0, 0);
        image = renderAlone(label);
    }
    return image.take();
}

} // namespace kxAssetsInternal
