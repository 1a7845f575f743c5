// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Volume.h"

#include <gtest/gtest.h>

namespace {

using namespace osg;

TEST(VolumeTest, IsEmptyAtFirst)
{
    EXPECT_TRUE(Volume().isEmpty());
}

TEST(VolumeTest, HoldsAPointThatWasPutIntoIt)
{
    Volume volume;
    volume.extend(Vec3d{{1.0, 2.0, 3.0}});

    EXPECT_FALSE(volume.isEmpty());
    EXPECT_EQ(volume.min(), volume.max());
    EXPECT_EQ(volume.size(), Vec3d());
}

TEST(VolumeTest, GrowsByPointsAndVolumes)
{
    Volume volume;
    volume.extend(Vec3d{{-1.0, 0.0, 0.0}});
    Volume other;
    other.extend(Vec3d{{1.0, 4.0, 0.0}});
    volume.extend(other);
    volume.extend(Volume());

    EXPECT_EQ(volume.min(), (Vec3d{{-1.0, 0.0, 0.0}}));
    EXPECT_EQ(volume.max(), (Vec3d{{1.0, 4.0, 0.0}}));
    EXPECT_EQ(volume.center(), (Vec3d{{0.0, 2.0, 0.0}}));
    EXPECT_EQ(volume.size(), (Vec3d{{2.0, 4.0, 0.0}}));
}

TEST(VolumeTest, BoxesItsMappedCorners)
{
    Volume volume;
    volume.extend(Vec3d{{0.0, 0.0, 0.0}});
    volume.extend(Vec3d{{1.0, 2.0, 3.0}});
    const Matrix mirrored{{-1, 0, 0, 10, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}};

    EXPECT_EQ(volume.transformed(mirrored).min(), (Vec3d{{9.0, 0.0, 0.0}}));
    EXPECT_EQ(volume.transformed(mirrored).max(), (Vec3d{{10.0, 2.0, 3.0}}));
    EXPECT_TRUE(Volume().transformed(mirrored).isEmpty());
}

} // namespace
