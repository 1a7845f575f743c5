// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Transform3D.h"

#include "SceneGraph/EditCP.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace osg;

TEST(Transform3DTest, IsTheIdentityAtFirst)
{
    EXPECT_EQ(FCRef<Transform3D>(Transform3D::create())->getMatrix(), Matrix());
}

TEST(Transform3DTest, ScalesThenRotatesThenTranslates)
{
    const FCRef<Transform3D> transform(Transform3D::create());
    {
        const CPEditor edit(transform.get());
        transform->setTranslation({{10.0, 20.0, 30.0}});
        // A quarter turn about Z: X becomes Y.
        transform->setRotationAsQuaternion({0.0, 0.0, std::sqrt(0.5), std::sqrt(0.5)});
        transform->setScale({{2.0, 3.0, 4.0}});
    }

    const Vec3d point = transformPoint(transform->getMatrix(), {{1.0, 1.0, 1.0}});

    EXPECT_NEAR(point[0], 10.0 - 3.0, 1e-12);
    EXPECT_NEAR(point[1], 20.0 + 2.0, 1e-12);
    EXPECT_NEAR(point[2], 30.0 + 4.0, 1e-12);
}

} // namespace
