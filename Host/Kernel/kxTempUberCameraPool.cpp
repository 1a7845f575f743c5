// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxTempUberCameraPool.h"

#include "Kernel/kxScenegraph.h"
#include "SceneGraph/CameraCore.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/NodeWalk.h"

#include <algorithm>

bool kxTempUberCameraPool::add(const osg::NodePtr &node)
{
    const osg::MaterialPoolPtr scene = kxScenegraph::getMaterialPool();
    if (!scene || !_pool)
        return false;
    bool hasAny = false;
    osg::forEachNode(node, [&](const osg::NodePtr &current) {
        const auto core = osg::CameraCorePtr::dcast(current->getCore());
        const osg::UberCameraPtr camera = core ? core->getCamera() : osg::UberCameraPtr();
        const auto holds = [&camera](const osg::MaterialPoolPtr &pool) {
            return std::find(pool->getCameras().begin(), pool->getCameras().end(), camera) != pool->getCameras().end();
        };
        if (!camera || !holds(scene))
            return;
        hasAny = true;
        if (holds(_pool.get()))
            return;
        const osg::CPEditor edit(_pool.get(), osg::MaterialPool::CamerasFieldMask);
        _pool->editCameras().push_back(camera);
    });
    return hasAny;
}

void kxTempUberCameraPool::reset()
{
    if (!_pool || _pool->getCameras().empty())
        return;
    const osg::CPEditor edit(_pool.get(), osg::MaterialPool::CamerasFieldMask);
    _pool->editCameras().clear();
}
