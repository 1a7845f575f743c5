// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetsInterfaceImpl.h"

#include "AssetManagerModule.h"
#include "Assets/kxAssetItemFactory.h"
#include "Kernel/kxAssetsInterface.h"
#include "Kernel/kxInterfaceFactory.h"
#include "Kernel/kxScenegraph.h"
#include "NodeFixture.h"
#include "Support/CapturedOutput.h"
#include "VirtualTable.h"

#include <gmock/gmock.h>

#include <typeinfo>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class kxAssetsInterfaceImplTest : public NodeFixture
{
protected:
    kxAssetsInterface *object = kxInterfaceFactory::the().get<kxAssetsInterface>();
    AssetManagerModule manager;
};

TEST_F(kxAssetsInterfaceImplTest, IsThereFromTheLibrarysLoadingOn)
{
    ASSERT_TRUE(object);
    EXPECT_EQ(object->interfaceType(), kxAssetsInterface::staticInterfaceType());
    EXPECT_STREQ(object->interfaceTypeName(), typeid(kxAssetsInterface).name());
    kxtest::CapturedOutput output;

    object->test();

    EXPECT_EQ(output.text(), "hallo!!!\n");
    EXPECT_THAT(manager.calls, IsEmpty());
}

TEST_F(kxAssetsInterfaceImplTest, LoadsPlatesInTheirOrderAndThenHasTheViewsRefreshOnce)
{
    const osg::NodePtr parent = addGroup(kxScenegraph::getSceneplateRoot(), "Plates");

    object->loadSceneplateAssets({"b", "a", "ü"}, parent);

    EXPECT_THAT(manager.plates,
                ElementsAre(Pair("b", parent.getFieldContainerId()), Pair("a", parent.getFieldContainerId()),
                            Pair(QString::fromUtf8("ü"), parent.getFieldContainerId())));
    EXPECT_THAT(manager.calls,
                ElementsAre("loadSceneplateAsset", "loadSceneplateAsset", "loadSceneplateAsset", "broadcast 32768"));
}

TEST_F(kxAssetsInterfaceImplTest, SendsZeroForNoParentAndNothingForNoPlates)
{
    object->loadSceneplateAssets({}, nullptr);
    EXPECT_THAT(manager.calls, IsEmpty());

    object->loadSceneplateAssets({"a"}, nullptr);
    EXPECT_THAT(manager.plates, ElementsAre(Pair("a", 0U)));
}

TEST_F(kxAssetsInterfaceImplTest, KeepsTheOrderOfItsVirtualOperations)
{
    EXPECT_EQ(tableEntryOf(&kxAssetsInterface::interfaceType), 0);
    EXPECT_EQ(tableEntryOf(&kxAssetsInterface::interfaceTypeName), 1);
    EXPECT_EQ(tableEntryOf(&kxAssetsInterface::test), 4) << "after the destructor's two entries";
    EXPECT_EQ(tableEntryOf(&kxAssetsInterface::loadSceneplateAssets), 5);
}

TEST_F(kxAssetsInterfaceImplTest, HoldsNothingItself)
{
    EXPECT_EQ(sizeof(kxAssetsInterfaceImpl), sizeof(kxAssetsInterface));
}

} // namespace
