// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxTypeConverter.h"

#include "SceneGraph/Group.h"
#include "Support/SceneTest.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class kxTypeConverterTest : public kxtest::SceneTest
{
protected:
    static kxdNodePtr script(const osg::NodePtr &node) { return kxTypeConverter::convertNode(node); }
    static kxdNodePtr gone()
    {
        const osg::FCRef<osg::Node> node(osg::makeNodeFor(osg::Group::create()));
        return script(node.get());
    }
};

TEST_F(kxTypeConverterTest, GivesScriptsANodeByItsIdAndTakesItBack)
{
    const osg::NodePtr node = addNode(osg::Group::create());

    const kxdNodePtr converted = script(node);

    ASSERT_TRUE(converted);
    EXPECT_EQ(converted->getObjectId(), node.getFieldContainerId());
    EXPECT_EQ(kxTypeConverter::convertNode(converted), node);
}

TEST_F(kxTypeConverterTest, GivesNullForNullAndForADestroyedNode)
{
    EXPECT_FALSE(kxTypeConverter::convertNode(osg::NodePtr()));
    EXPECT_FALSE(kxTypeConverter::convertNode(kxdNodePtr()));
    EXPECT_FALSE(kxTypeConverter::convertNode(gone()));
}

TEST_F(kxTypeConverterTest, LeavesNullsAndDestroyedNodesOutOfAList)
{
    const osg::NodePtr first = addNode(osg::Group::create());
    const osg::NodePtr second = addNode(osg::Group::create());

    EXPECT_THAT(kxTypeConverter::convertToKxNodes({script(second), nullptr, gone(), script(first), script(second)}),
                ElementsAre(second, first, second));
    EXPECT_THAT(kxTypeConverter::convertToKxNodes({}), IsEmpty());
}

TEST_F(kxTypeConverterTest, ConvertsTextsToUtf8InTheirOrder)
{
    EXPECT_THAT(kxTypeConverter::convertStringList({"b", QString::fromUtf8("ä木"), ""}), ElementsAre("b", "ä木", ""));
    EXPECT_THAT(kxTypeConverter::convertStringList({}), IsEmpty());
}

} // namespace
