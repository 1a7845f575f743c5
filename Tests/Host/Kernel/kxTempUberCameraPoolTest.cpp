// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxTempUberCameraPool.h"

#include "SceneGraph/CameraCore.h"
#include "Support/SceneTest.h"

namespace {

using kxTempUberCameraPoolTest = kxtest::SceneTest;

TEST_F(kxTempUberCameraPoolTest, TakesTheScenesCamerasThatANodeRefersTo)
{
    const osg::MaterialPoolPtr scene = kxScenegraph::getMaterialPool();
    const auto camera = osg::UberCamera::create();
    {
        const osg::CPEditor edit(scene, osg::MaterialPool::CamerasFieldMask);
        scene->editCameras().push_back(camera);
        scene->editCameras().push_back(osg::UberCamera::create());
    }
    const osg::NodePtr node = addNode(osg::Group::create());
    for (const osg::UberCameraPtr &used : {camera, camera, osg::UberCamera::create()}) {
        const auto core = osg::CameraCore::create();
        {
            const osg::CPEditor edit(core, osg::CameraCore::CameraFieldMask);
            core->setCamera(used);
        }
        addNodeBelow(node, core);
    }
    const osg::FCRef<osg::MaterialPool> core(osg::MaterialPool::create());
    kxTempUberCameraPool pool(core.get());

    EXPECT_TRUE(pool.add(node));
    ASSERT_EQ(core->getCameras().size(), 1U) << "once, and not what the node alone has";
    EXPECT_EQ(core->getCameras()[0], camera);
    pool.reset();
    EXPECT_TRUE(core->getCameras().empty());
    EXPECT_EQ(scene->getCameras().size(), 2U);

    EXPECT_FALSE(pool.add(addNode(osg::Group::create())));
    EXPECT_FALSE(pool.add(nullptr));
}

} // namespace
