// SPDX-License-Identifier: Apache-2.0
// Which operations each kind of item has of its own, and which of them only it or its subclasses may call.
#include "Assets/kxAssetItem.h"

#include "Assets/kxEnvironmentMaterialAssetItem.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxSceneplateAssetItem.h"

#include <gmock/gmock.h>

#include <string>
#include <type_traits>
#include <vector>

namespace {

using testing::ElementsAre;

/// Makes what is protected nameable.
template <class Item> struct Open : Item
{
    static constexpr auto Reset = &Open::reset;
    static constexpr auto UpdateAssetAttachment = &Open::updateAssetAttachment;

    template <class Other> static constexpr bool MayLoadWithTheCache = requires(Other &other)
    {
        other.loadMaterial(false);
    };
    template <class Other> static constexpr bool MayWrap = requires(Other &other, osg::NodePtr &node)
    {
        other.insertGeometryAssetRoot(node);
        other.setNodeNameToItemName(node);
        Other::setDefaultBRDFEnvironmentForOverrideMaterials(node);
    };
};

template <class Item>
concept OffersReset = requires(Item &item)
{
    item.reset();
};
template <class Item>
concept OffersLoading = requires(Item &item)
{
    item.loadMaterial();
    Item::getMaterialFromUUID("");
    Item::getMaterialsFromUUIDs({});
};
template <class Item>
concept OffersLoadingWithTheCache = requires(Item &item)
{
    item.loadMaterial(false);
}
|| requires
{
    Item::getMaterialFromUUID("", false);
}
|| requires
{
    Item::getMaterialsFromUUIDs({}, false);
};
template <class Item>
concept OffersWrapping = requires(Item &item, osg::NodePtr &node)
{
    item.insertGeometryAssetRoot(node);
}
|| requires(Item &item, osg::NodePtr &node)
{
    item.setNodeNameToItemName(node);
}
|| requires(osg::NodePtr &node)
{
    Item::setDefaultBRDFEnvironmentForOverrideMaterials(node);
};

/// The names of the operations that the class of the item declares.
template <class Item> class OwnOperations
{
public:
    template <class Class, class Function> OwnOperations &add(const char *name, Function Class::*)
    {
        if (std::is_same_v<Class, Item>)
            names.emplace_back(name);
        return *this;
    }

    std::vector<std::string> names;
};

template <class Item> OwnOperations<Item> operationsOf()
{
    OwnOperations<Item> own;
    own.add("save", &Item::save).add("readMetaData", &Item::readMetaData).add("writeMetaData", &Item::writeMetaData);
    own.add("uuid", &Item::uuid).add("name", &Item::name).add("category", &Item::category);
    own.add("hasCategory", &Item::hasCategory).add("previewImage", &Item::previewImage);
    own.add("setPreviewImage", &Item::setPreviewImage).add("addOverlayIcon", &Item::addOverlayIcon);
    own.add("directoryUrl", &Item::directoryUrl).add("setDirectoryUrl", &Item::setDirectoryUrl);
    own.add("changeName", &Item::changeName).add("checksum", &Item::checksum);
    own.add("hasSameChecksum", &Item::hasSameChecksum).add("lastModified", &Item::lastModified);
    own.add("initFrom", &Item::initFrom).add("data", &Item::data).add("sortData", &Item::sortData);
    own.add("mimeType", &Item::mimeType).add("loadPreviewImage", &Item::loadPreviewImage);
    own.add("reset", Open<Item>::Reset).add("updateAssetAttachment", Open<Item>::UpdateAssetAttachment);
    return own;
}

template <class Item> std::vector<std::string> nodeOperationsOf()
{
    return operationsOf<Item>()
        .add("renderPreview", &Item::renderPreview)
        .add("setNode", &Item::setNode)
        .add("makeNodeValidForSave", &Item::makeNodeValidForSave)
        .names;
}

} // namespace

TEST(kxAssetItemOverridesTest, AreTheseOfMaterials)
{
    EXPECT_THAT(operationsOf<kxMaterialAssetItem>().names,
                ElementsAre("save", "readMetaData", "writeMetaData", "name", "addOverlayIcon", "checksum", "initFrom",
                            "data", "mimeType", "loadPreviewImage", "reset"));
}

TEST(kxAssetItemOverridesTest, AreTheseOfNodes)
{
    EXPECT_THAT(nodeOperationsOf<kxGeometrySceneplateCommon>(),
                ElementsAre("initFrom", "data", "renderPreview", "setNode", "makeNodeValidForSave"));
    EXPECT_THAT(nodeOperationsOf<kxGeometryAssetItem>(),
                ElementsAre("save", "mimeType", "reset", "renderPreview", "makeNodeValidForSave"));
    EXPECT_THAT(nodeOperationsOf<kxSceneplateAssetItem>(),
                ElementsAre("save", "readMetaData", "writeMetaData", "data", "mimeType", "reset", "renderPreview",
                            "setNode", "makeNodeValidForSave"));
}

TEST(kxAssetItemOverridesTest, AreTheseOfEnvironments)
{
    EXPECT_THAT(operationsOf<kxEnvironmentMaterialAssetItem>().names, ElementsAre("data", "mimeType", "reset"));
    EXPECT_THAT(operationsOf<kxEnvironmentNodeAssetItem>().names,
                ElementsAre("save", "addOverlayIcon", "initFrom", "data", "mimeType", "reset"));
}

TEST(kxAssetItemOverridesTest, KeepTheResetOfMaterialsForTheirSubclasses)
{
    EXPECT_FALSE(OffersReset<kxMaterialAssetItem>);
}

TEST(kxAssetItemOverridesTest, KeepTheCacheOfMaterialsFromAllOthers)
{
    EXPECT_TRUE(OffersLoading<kxMaterialAssetItem>);
    EXPECT_FALSE(OffersLoadingWithTheCache<kxMaterialAssetItem>);
    EXPECT_FALSE(Open<kxMaterialAssetItem>::MayLoadWithTheCache<Open<kxMaterialAssetItem>>);
}

TEST(kxAssetItemOverridesTest, KeepTheWrappingOfNodesForTheirSubclasses)
{
    EXPECT_FALSE(OffersWrapping<kxGeometrySceneplateCommon>);
    EXPECT_TRUE(Open<kxGeometryAssetItem>::MayWrap<Open<kxGeometryAssetItem>>);
}
