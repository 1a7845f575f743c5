// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/CameraView.h"

#include "SceneGraph/EditCP.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using kxRender::CameraView;

constexpr double Right = 1.5707963267948966; // angle

/// A camera that stands at (0, 0, 2), looks at the origin and sees one unit upwards and downwards there.
class CameraViewTest : public testing::Test
{
protected:
    CameraViewTest() : camera(osg::UberCamera::create())
    {
        const osg::CPEditor edit(camera.get(), osg::AllFieldMask);
        camera->setFrom({0.0, 0.0, 2.0});
        camera->setFieldOfView(2.0 * std::atan(0.5));
    }

    void move(const osg::Vec3d &from, const osg::Vec3d &at, const osg::Vec3d &up)
    {
        const osg::CPEditor edit(camera.get(), osg::AllFieldMask);
        camera->setFrom(from);
        camera->setAt(at);
        camera->setUp(up);
    }

    void expectFrom(const osg::Vec3d &place) const
    {
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(camera->getFrom()[i], place[i], 1e-9) << "axis " << i;
    }

    osg::FCRef<osg::UberCamera> camera;
};

TEST_F(CameraViewTest, OrbitsAroundATarget)
{
    move({1.0, 0.0, 2.0}, {1.0, 0.0, 0.0}, {0.0, 1.0, 0.0});
    CameraView view(camera.get());

    view.orbit(Right, 0.0);
    view.applyTo(camera.get());

    expectFrom({-1.0, 0.0, 0.0});
}

TEST_F(CameraViewTest, OrbitsAroundAnotherUpwardsDirection)
{
    move({2.0, 0.0, 0.0}, {}, {0.0, 0.0, 3.0});
    CameraView view(camera.get());

    view.orbit(-Right, 0.0);
    view.applyTo(camera.get());

    expectFrom({0.0, 2.0, 0.0});
}

TEST_F(CameraViewTest, LeavesAPoleThatItStandsOn)
{
    move({0.0, 2.0, 0.0}, {}, {0.0, 1.0, 0.0});
    CameraView view(camera.get());

    view.orbit(0.0, -Right);
    view.applyTo(camera.get());

    EXPECT_NEAR(camera->getFrom()[1], 0.0, 1e-9);
    EXPECT_NEAR(std::hypot(camera->getFrom()[0], camera->getFrom()[2]), 2.0, 1e-9);
}

TEST_F(CameraViewTest, NeverReachesItsTarget)
{
    CameraView view(camera.get());

    view.zoom(0.0);
    view.applyTo(camera.get());
    expectFrom({0.0, 0.0, 1e-4});

    move({0.0, 0.0, 0.0}, {}, {0.0, 1.0, 0.0});
    CameraView inside(camera.get());
    inside.zoom(3.0);
    inside.applyTo(camera.get());
    expectFrom({0.0, 0.0, 3.0});
}

} // namespace
