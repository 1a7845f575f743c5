// SPDX-License-Identifier: Apache-2.0
#include "Import/kxForeignFormats.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

TEST(kxForeignFormatsTest, KnowsScenesByTheirExtensionInAnyCase)
{
    for (const char *path : {"a.gltf", "a.GLB", "/x.y/a b.Obj", "ü.fbx", "a.dae", "a.ply", "a.STL"})
        EXPECT_TRUE(kxForeignFormats::isSceneFile(path)) << path;
    for (const char *path : {"a.png", "a", "", "a.", "a.mtl", "a.obj/b", ".", "a.osb"})
        EXPECT_FALSE(kxForeignFormats::isSceneFile(path)) << path;
}

TEST(kxForeignFormatsTest, KnowsPictures)
{
    for (const char *path : {"a.hdr", "a.EXR", "a.b.jpeg", "a.png"})
        EXPECT_TRUE(kxForeignFormats::isImageFile(path)) << path;
    for (const char *path : {"a.obj", "hdr", "", "a.hdr/"})
        EXPECT_FALSE(kxForeignFormats::isImageFile(path)) << path;
}

TEST(kxForeignFormatsTest, ListsExtensionsInOrder)
{
    const auto &scenes = kxForeignFormats::sceneExtensions();
    const auto &images = kxForeignFormats::imageExtensions();

    EXPECT_TRUE(std::is_sorted(scenes.begin(), scenes.end()));
    EXPECT_TRUE(std::is_sorted(images.begin(), images.end()));
}

} // namespace
