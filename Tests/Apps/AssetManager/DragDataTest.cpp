// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/DragData.h"

#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxSceneplateAssetItem.h"

#include <QMimeData>

#include <gtest/gtest.h>

TEST(DragDataTest, HasTheTypesThatTheItemsAnswer)
{
    EXPECT_EQ(DragData::mimeTypeOf(Material), kxMaterialAssetItem().mimeType());
    EXPECT_EQ(DragData::mimeTypeOf(Environment), kxEnvironmentNodeAssetItem().mimeType());
    EXPECT_EQ(DragData::mimeTypeOf(Geometry), kxGeometryAssetItem().mimeType());
    EXPECT_EQ(DragData::mimeTypeOf(Sceneplate), kxSceneplateAssetItem().mimeType());
    EXPECT_EQ(DragData::mimeTypeOf(Undefined), QString());
}

TEST(DragDataTest, KeepsAssetsApartByCategoryAndInOrder)
{
    QMimeData data;

    DragData::setAssets(data, {{Geometry, "g"}, {Material, "b"}, {Material, "a"}});

    EXPECT_EQ(DragData::assets(data, Material), (std::vector<std::string>{"b", "a"}));
    EXPECT_EQ(DragData::assets(data, Geometry), std::vector<std::string>{"g"});
    EXPECT_TRUE(DragData::assets(data, Environment).empty());
    EXPECT_FALSE(data.hasFormat(DragData::mimeTypeOf(Environment)));
    EXPECT_EQ(DragData::assets(data).size(), 3U);
}

TEST(DragDataTest, HasNoAssetsWhereNothingOrSomethingElseIsDragged)
{
    QMimeData data;
    EXPECT_FALSE(DragData::hasAssets(data));

    DragData::setNodes(data, {1, 4294967295U});

    EXPECT_FALSE(DragData::hasAssets(data));
    EXPECT_EQ(DragData::nodes(data), (std::vector<std::uint32_t>{1, 4294967295U}));
    EXPECT_TRUE(DragData::materials(data).empty());
}

TEST(DragDataTest, PassesOverWhatIsNoId)
{
    QMimeData data;
    data.setData(DragData::nodeMimeType(), "7\n\nabc\n-1\n9");

    EXPECT_EQ(DragData::nodes(data), (std::vector<std::uint32_t>{7, 9}));
}

TEST(DragDataTest, CarriesFoldersWithAnyName)
{
    QMimeData data;

    DragData::setFolders(data, {"/a b/ä#1", "/木"});

    EXPECT_EQ(DragData::folders(data), (QStringList{"/a b/ä#1", "/木"}));
}
