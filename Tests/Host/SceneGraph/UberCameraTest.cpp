// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/UberCamera.h"

#include "SceneGraph/Compare.h"
#include "SceneGraph/EditCP.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using namespace osg;

class UberCameraTest : public testing::Test
{
protected:
    FCRef<UberCamera> camera{UberCamera::create()};
};

TEST_F(UberCameraTest, FramesABoxWithoutTurning)
{
    Volume box;
    box.extend({9.0, -1.0, -1.0});
    box.extend({11.0, 1.0, 1.0});
    const CPEditor edit(camera.get(), AllFieldMask);
    camera->setFrom({3.0, 0.0, 4.0});

    camera->zoomTo(box, true, {0.0, 0.0, 0.0});

    // Seen along (-0.6, 0, -0.8): corners reach 1.4 sideways and forwards, and are framed with a margin of 6 %.
    EXPECT_EQ(camera->getAt(), (Vec3d{10.0, 0.0, 0.0}));
    const double away = std::hypot(camera->getFrom()[0] - 10.0, camera->getFrom()[1], camera->getFrom()[2]);
    EXPECT_NEAR(camera->getFrom()[0], 10.0 + 0.6 * away, 1e-9);
    EXPECT_NEAR(camera->getFrom()[2], 0.8 * away, 1e-9);
    double widest = 0.0;
    for (const double x : {-1.0, 1.0})
        for (const double z : {-1.0, 1.0}) {
            const double depth = away - 0.6 * x - 0.8 * z;
            widest = std::max({widest, std::abs(0.8 * x - 0.6 * z) / depth, 1.0 / depth});
        }
    EXPECT_NEAR(widest, std::tan(0.3) / 1.06, 1e-9);
    EXPECT_NEAR(camera->getNear(), away - 1.4, 1e-9);
    EXPECT_NEAR(camera->getFar(), away + 1.4, 1e-9);
}

TEST_F(UberCameraTest, FramesAPointAndABoxAroundItself)
{
    Volume point;
    point.extend({1.0, 2.0, 3.0});
    const CPEditor edit(camera.get(), AllFieldMask);
    camera->setAt(camera->getFrom());

    camera->zoomTo(point, true, {0.0, 0.0, 0.0});

    EXPECT_EQ(camera->getAt(), (Vec3d{1.0, 2.0, 3.0}));
    EXPECT_GT(camera->getFrom()[2], 3.0);
    EXPECT_GT(camera->getNear(), 0.0);
}

TEST_F(UberCameraTest, StaysWhereItIsForAnEmptyBox)
{
    const FCRef<UberCamera> before(UberCamera::create());
    const CPEditor edit(camera.get(), AllFieldMask);

    camera->zoomTo(Volume(), true, {1.0, 2.0, 3.0});

    EXPECT_EQ(findDifference(camera.get(), before.get()), std::nullopt);
}

TEST_F(UberCameraTest, CopiesExactlyTheFieldsThatItIsTold)
{
    const FCRef<UberCamera> other(UberCamera::create());
    {
        const CPEditor edit(other.get(), AllFieldMask);
        other->setFrom({1.0, 2.0, 3.0});
        other->setAt({4.0, 5.0, 6.0});
        other->setUp({0.0, 0.0, 1.0});
        other->setFieldOfView(0.9);
        other->setNear(0.5);
        other->setFar(7.0);
    }
    const CPEditor edit(camera.get(), AllFieldMask);

    camera->syncWith(other.get(), UberCamera::AtFieldMask, true);
    EXPECT_EQ(camera->getAt(), other->getAt());
    EXPECT_EQ(camera->getFrom(), (Vec3d{0.0, 0.0, 5.0}));
    camera->syncWith(other.get(), UberCamera::getCombinedCameraAttributesMask(), true);
    EXPECT_EQ(camera->getFar(), 7.0);
    EXPECT_EQ(camera->getUp(), (Vec3d{0.0, 1.0, 0.0}));
    camera->syncWith(other.get(),
                     UberCamera::getCombinedCameraAttributesMask() | UberCamera::getCombinedViewingAttributesMask(),
                     true);
    EXPECT_EQ(findDifference(camera.get(), other.get()), std::nullopt);
    camera->syncWith(nullptr, AllFieldMask, true);
}

} // namespace
