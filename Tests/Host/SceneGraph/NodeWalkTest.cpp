// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/NodeWalk.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/NameAttachment.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NodeWalkTest : public testing::Test
{
protected:
    static osg::NodePtr add(const osg::NodePtr &parent, const std::string &name)
    {
        const osg::NodePtr node = osg::makeNodeFor(osg::Group::create());
        osg::setName(node, name);
        if (parent) {
            const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
            parent->addChild(node);
        }
        return node;
    }

    static std::vector<std::string> visited(const osg::NodePtr &root)
    {
        std::vector<std::string> names;
        osg::forEachNode(root, [&names](const osg::NodePtr &node) { names.push_back(osg::getName(node)); });
        return names;
    }

    const osg::FCRef<osg::Node> root{add(nullptr, "root")};
};

TEST_F(NodeWalkTest, VisitsParentsFirstAndChildrenInOrder)
{
    const osg::NodePtr a = add(root.get(), "a");
    add(root.get(), "b");
    add(a, "a1");
    add(a, "a2");

    EXPECT_THAT(visited(root.get()), ElementsAre("root", "a", "a1", "a2", "b"));
    EXPECT_THAT(visited(a), ElementsAre("a", "a1", "a2"));
    EXPECT_THAT(visited(nullptr), IsEmpty());
}

TEST_F(NodeWalkTest, StopsAtTheFirstNodeThatFits)
{
    const osg::NodePtr a = add(root.get(), "a");
    const osg::NodePtr found = add(a, "x");
    add(root.get(), "x");
    int asked = 0;

    EXPECT_EQ(osg::findNode(root.get(),
                            [&asked](const osg::NodePtr &node) {
                                ++asked;
                                return osg::getName(node) == "x";
                            }),
              found);

    EXPECT_EQ(asked, 3) << "root, a, x";
    EXPECT_EQ(osg::findNode(root.get(), [](const osg::NodePtr &) { return false; }), nullptr);
    EXPECT_EQ(osg::findNode(nullptr, [](const osg::NodePtr &) { return true; }), nullptr);
}

TEST_F(NodeWalkTest, ReachesTheEndOfADeepChain)
{
    constexpr int Depth = 200000; // calls of this depth would not fit onto the stack
    osg::NodePtr last = root.get();
    for (int i = 0; i < Depth; ++i)
        last = add(last, "");
    int count = 0;

    osg::forEachNode(root.get(), [&count](const osg::NodePtr &) { ++count; });

    EXPECT_EQ(count, Depth + 1);
}

} // namespace
