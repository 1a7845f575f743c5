// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/NodePosition.h"

#include "Kernel/kxScenegraph.h"
#include "NodeFixture.h"

#include <gmock/gmock.h>

namespace {

using kxAssetsInternal::NodePosition;
using testing::ElementsAre;
using testing::IsEmpty;

class NodePositionTest : public NodeFixture
{
protected:
    std::vector<NodePosition> positions;
};

} // namespace

TEST_F(NodePositionTest, IsThePlaceAmongTheChildrenOfTheParent)
{
    const osg::NodePtr parent = addGroup(kxScenegraph::getRoot(), "P");
    addGroup(parent, "A");
    const osg::NodePtr second = addGroup(parent, "B");

    storeOriginalPosition(positions, second);

    EXPECT_THAT(positions, ElementsAre(NodePosition{second.getFieldContainerId(), parent.getFieldContainerId(), 1}));
}

TEST_F(NodePositionTest, HasNoIndexWithoutAParent)
{
    const osg::FCRef<osg::Node> loose(addGroup(nullptr, "Loose"));

    storeOriginalPosition(positions, loose);

    EXPECT_THAT(positions, ElementsAre(NodePosition{loose.get().getFieldContainerId(), 0, -1}));
}

TEST_F(NodePositionTest, IsNotStoredForNull)
{
    storeOriginalPosition(positions, nullptr);

    EXPECT_THAT(positions, IsEmpty());
}

TEST_F(NodePositionTest, IsForgottenWhenItIsRestored)
{
    const osg::NodePtr parent = addGroup(kxScenegraph::getRoot(), "P");
    const osg::NodePtr first = addGroup(parent, "A");
    addGroup(parent, "B");
    storeOriginalPosition(positions, first);
    osg::addRef(first);

    restorePositions(positions);
    osg::subRef(first);

    EXPECT_EQ(describe(parent), "P(A B)");
    EXPECT_THAT(positions, IsEmpty());
}
