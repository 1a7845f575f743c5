// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/NodeLoading.h"

#include "Assets/kxUrlManager.h"
#include "Kernel/kxController.h"
#include "Rendering/kxOSGWidget.h"

namespace kxAssetsInternal {

namespace {

class RenderPause
{
public:
    RenderPause() : _wasEnabled(kxController::isRenderUpdateEnabled())
    {
        kxOSGWidget::cancelAntialiasing();
        kxController::enableRenderUpdate(false);
    }
    ~RenderPause() { kxController::enableRenderUpdate(_wasEnabled); }
    RenderPause(const RenderPause &) = delete;
    RenderPause &operator=(const RenderPause &) = delete;

private:
    bool _wasEnabled;
};

} // namespace

NodeHold::~NodeHold()
{
    const osg::NodePtr node = _node.take();
    if (node)
        node->subRefWithoutDestroying();
}

NodeInUse::NodeInUse(const osg::NodePtr &node)
{
    if (node && node->getRefCount() == 0)
        _unowned.emplace(node);
    _node = osg::FCRef<osg::Node>(node);
}

bool loadWithoutRendering(const kxUrlManager &manager, const QUrl &directory, NodeKind kind, osg::NodePtr &node)
{
    const RenderPause pause;
    return kind == NodeKind::Sceneplate ? manager.loadSceneplateFromDir(directory, node)
                                        : manager.loadNodeFromDir(directory, node);
}

} // namespace kxAssetsInternal
