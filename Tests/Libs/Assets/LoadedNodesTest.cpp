// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/LoadedNodes.h"

#include "NodeFixture.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Group.h"

#include <gtest/gtest.h>

using kxAssetsInternal::takeFirstNode;
using kxAssetsInternal::triangulateWhereNeeded;

namespace {

using Nodes = std::vector<osg::FCRef<osg::Node>>;

class LoadedNodesTest : public NodeFixture
{
protected:
    static osg::FCRef<osg::Node> makeNode() { return osg::FCRef<osg::Node>(osg::makeNodeFor(osg::Group::create())); }
    static bool isThere(std::uint32_t id)
    {
        return static_cast<bool>(osg::FieldContainerFactory::the().getContainer(id));
    }
    static std::size_t cornerCount(const osg::NodePtr &node)
    {
        return osg::GeometryPtr::dcast(node->getCore())->getIndices().size();
    }
};

} // namespace

TEST_F(LoadedNodesTest, PassesOverWhatIsNoNodeAndLetsTheOthersGo)
{
    Nodes nodes = {nullptr, makeNode(), nullptr, makeNode()};
    const std::uint32_t first = nodes[1]->getFieldContainerId();
    const std::uint32_t other = nodes[3]->getFieldContainerId();

    const osg::NodePtr node = takeFirstNode(std::move(nodes));

    ASSERT_TRUE(node);
    EXPECT_EQ(node.getFieldContainerId(), first);
    EXPECT_EQ(node->getRefCount(), 0) << "nobody owns it yet";
    EXPECT_FALSE(isThere(other));
    const osg::FCRef<osg::Node> owner(node);
}

TEST_F(LoadedNodesTest, HasNoFirstNodeWhereThereIsNone)
{
    EXPECT_FALSE(takeFirstNode({}));
    EXPECT_FALSE(takeFirstNode({nullptr, nullptr}));
}

TEST_F(LoadedNodesTest, CutsMeshesBetweenEntriesThatAreNone)
{
    const osg::FCRef<osg::Node> group = makeNode();
    const osg::FCRef<osg::Node> first(addSquare(osg::NodePtr(), "First"));
    const osg::FCRef<osg::Node> last(addSquare(osg::NodePtr(), "Last"));

    triangulateWhereNeeded({nullptr, first.get(), group.get(), nullptr, last.get()});

    EXPECT_EQ(cornerCount(first.get()), 6U) << "a square is two triangles";
    EXPECT_EQ(cornerCount(last.get()), 6U);
}
