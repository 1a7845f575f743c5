// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Node.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/Switch.h"
#include "SceneGraph/Transform.h"
#include "SceneGraph/Transform3D.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace osg;

class NodeTest : public testing::Test
{
protected:
    NodeTest()
    {
        for (const NodePtr &child : {a, b, c})
            add(parent, child);
    }

    static void add(const NodePtr &to, const NodePtr &child)
    {
        const CPEditor edit(to, Node::ChildrenFieldMask);
        to->addChild(child);
    }
    void insert(std::int32_t index, const NodePtr &child)
    {
        const CPEditor edit(parent.get(), Node::ChildrenFieldMask);
        parent->insertChild(index, child);
    }
    bool replace(const NodePtr &old, const NodePtr &replacement)
    {
        const CPEditor edit(parent.get(), Node::ChildrenFieldMask);
        return parent->replaceChildBy(old, replacement);
    }
    static std::vector<NodePtr> childrenOf(const NodePtr &node) { return node->getChildren().values(); }
    static bool isAlive(const NodePtr &node)
    {
        return FieldContainerFactory::the().isAlive(node.getFieldContainerId());
    }
    using Nodes = std::vector<NodePtr>;

    FCRef<Node> parent{Node::create()};
    FCRef<Node> other{Node::create()};
    NodePtr a = Node::create();
    NodePtr b = Node::create();
    NodePtr c = Node::create();
};

TEST_F(NodeTest, AppendsChildrenInOrder)
{
    EXPECT_EQ(childrenOf(parent), (Nodes{a, b, c}));
    EXPECT_EQ(parent->getNChildren(), 3U);
    EXPECT_EQ(a->getParent(), parent.get());
    EXPECT_EQ(parent->getParent(), NullFC);
}

TEST_F(NodeTest, AnswersNullForAChildOutOfRange)
{
    EXPECT_EQ(parent->getChild(2), c);
    EXPECT_EQ(parent->getChild(3), NullFC);
    EXPECT_EQ(parent->getChild(static_cast<std::size_t>(-1)), NullFC);
}

TEST_F(NodeTest, FindsChildrenByIdentity)
{
    EXPECT_EQ(parent->findChild(a), 0);
    EXPECT_EQ(parent->findChild(c), 2);
    EXPECT_EQ(parent->findChild(other.get()), -1);
    EXPECT_EQ(parent->findChild(nullptr), -1);
    EXPECT_EQ(parent->findChild(parent.get()), -1);
}

TEST_F(NodeTest, TakesANodeFromItsOldParent)
{
    add(other, b);

    EXPECT_EQ(childrenOf(parent), (Nodes{a, c}));
    EXPECT_EQ(childrenOf(other), (Nodes{b}));
    EXPECT_EQ(b->getParent(), other.get());
    EXPECT_EQ(b->getRefCount(), 1);
}

TEST_F(NodeTest, MovesANodeInsideItsOwnParentWithoutDestroyingIt)
{
    add(parent, a);

    EXPECT_EQ(childrenOf(parent), (Nodes{b, c, a}));
    EXPECT_TRUE(isAlive(a));
    EXPECT_EQ(a->getRefCount(), 1);
}

TEST_F(NodeTest, InsertsAtTheIndexWithinItsRange)
{
    const NodePtr d = Node::create();
    const NodePtr e = Node::create();
    const NodePtr f = Node::create();

    insert(1, d);
    insert(-5, e);
    insert(99, f);

    EXPECT_EQ(childrenOf(parent), (Nodes{e, a, d, b, c, f}));
}

TEST_F(NodeTest, CountsTheIndexWithoutTheMovedNode)
{
    insert(1, a);

    EXPECT_EQ(childrenOf(parent), (Nodes{b, a, c}));
}

TEST_F(NodeTest, RefusesNullItselfAndItsAncestors)
{
    const std::size_t count = parent->getNChildren();
    const CPEditor editA(a, Node::ChildrenFieldMask);
    const CPEditor edit(parent.get(), Node::ChildrenFieldMask);

    parent->addChild(nullptr);
    parent->addChild(parent.get());
    a->addChild(parent.get());
    a->addChild(a);

    EXPECT_EQ(parent->getNChildren(), count);
    EXPECT_EQ(a->getNChildren(), 0U);
    EXPECT_EQ(a->getParent(), parent.get());
    EXPECT_EQ(parent->getParent(), NullFC);
}

TEST_F(NodeTest, PutsAReplacementInTheSamePlace)
{
    const FCRef<Node> keepsB(b);
    const NodePtr d = Node::create();

    EXPECT_TRUE(replace(b, d));

    EXPECT_EQ(childrenOf(parent), (Nodes{a, d, c}));
    EXPECT_EQ(d->getParent(), parent.get());
    EXPECT_EQ(b->getParent(), NullFC);
    EXPECT_EQ(b->getRefCount(), 1);
}

TEST_F(NodeTest, DestroysWhatWasReplacedAndHasNoOwner)
{
    EXPECT_TRUE(replace(b, Node::create()));

    EXPECT_FALSE(isAlive(b));
}

TEST_F(NodeTest, ReplacesByAnotherOfItsChildren)
{
    EXPECT_TRUE(replace(b, a));

    EXPECT_EQ(childrenOf(parent), (Nodes{a, c}));
}

TEST_F(NodeTest, ReplacesNothingThatIsNoChild)
{
    EXPECT_FALSE(replace(other.get(), Node::create()));
    EXPECT_FALSE(replace(nullptr, a));
    EXPECT_FALSE(replace(a, nullptr));
    EXPECT_FALSE(replace(a, parent.get()));
    EXPECT_FALSE(replace(a, a));

    EXPECT_EQ(childrenOf(parent), (Nodes{a, b, c}));
}

TEST_F(NodeTest, GivesChildrenAway)
{
    const FCRef<Node> keepsA(a);
    const CPEditor edit(parent.get(), Node::ChildrenFieldMask);

    EXPECT_TRUE(parent->subChild(a));
    EXPECT_TRUE(parent->subChild(b));
    EXPECT_FALSE(parent->subChild(a));
    EXPECT_FALSE(parent->subChild(nullptr));

    EXPECT_EQ(childrenOf(parent), (Nodes{c}));
    EXPECT_EQ(a->getParent(), NullFC);
    EXPECT_FALSE(isAlive(b));
}

TEST_F(NodeTest, LeavesKeptChildrenWithoutParentWhenItDies)
{
    const FCRef<Node> keepsA(a);

    parent.reset();

    EXPECT_EQ(a->getParent(), NullFC);
    EXPECT_FALSE(isAlive(b));
}

TEST_F(NodeTest, GrowsUpwardsAndDownwardsToAnyDepth)
{
    const std::size_t before = FieldContainerFactory::the().livingContainerCount();
    FCRef<Node> root(Node::create());
    NodePtr leaf = root;
    for (int i = 0; i < 50'000; ++i) {
        const FCRef<Node> above(Node::create());
        add(above.get(), root.get());
        root = above;
        const NodePtr below = Node::create();
        add(leaf, below);
        leaf = below;
    }
    EXPECT_EQ(leaf->getParent()->getNChildren(), 1U);

    root.reset();

    EXPECT_EQ(FieldContainerFactory::the().livingContainerCount(), before);
}

TEST_F(NodeTest, SharesACore)
{
    const GroupPtr group = Group::create();
    for (const NodePtr &node : {a, b}) {
        const CPEditor edit(node, Node::CoreFieldMask);
        node->setCore(group);
    }

    EXPECT_EQ(a->getCore(), b->getCore());
    EXPECT_EQ(group->getRefCount(), 2);
}

TransformPtr makeTranslation(double x)
{
    const TransformPtr transform = Transform::create();
    const CPEditor edit(transform);
    Matrix matrix;
    matrix.at(0, 3) = x;
    transform->setMatrix(matrix);
    return transform;
}

Transform3DPtr makeScale(double factor)
{
    const Transform3DPtr transform = Transform3D::create();
    const CPEditor edit(transform);
    transform->setScale({{factor, factor, factor}});
    return transform;
}

GeometryPtr makeTriangle()
{
    const GeometryPtr geometry = Geometry::create();
    const CPEditor edit(geometry);
    geometry->editPositions() = {{{0.0F, 0.0F, 0.0F}}, {{1.0F, 0.0F, 0.0F}}, {{0.0F, 2.0F, 3.0F}}};
    geometry->editIndices() = {0, 1, 2};
    return geometry;
}

TEST(NodeWorldTest, MultipliesPlacementsFromTheRootDown)
{
    const FCRef<Node> root(makeNodeFor(makeTranslation(10.0)));
    const NodePtr scaled = makeNodeFor(makeScale(2.0));
    const NodePtr moved = makeNodeFor(makeTranslation(3.0));
    {
        const CPEditor edit(root.get(), Node::ChildrenFieldMask);
        root->addChild(scaled);
    }
    {
        const CPEditor edit(scaled, Node::ChildrenFieldMask);
        scaled->addChild(moved);
    }

    EXPECT_EQ(transformPoint(moved->getToWorld(), {{1.0, 0.0, 0.0}}), (Vec3d{{18.0, 0.0, 0.0}}));
    EXPECT_EQ(root->getToWorld().at(0, 3), 10.0);
}

TEST(NodeWorldTest, BoxesTheGeometryBelowInWorldCoordinates)
{
    const FCRef<Node> root(makeNodeFor(makeTranslation(10.0)));
    {
        const CPEditor edit(root.get(), Node::ChildrenFieldMask);
        root->addChild(makeNodeFor(makeTriangle()));
        root->addChild(makeNodeFor(Group::create()));
        root->addChild(Node::create());
    }

    EXPECT_EQ(root->getWorldVolume().min(), (Vec3d{{10.0, 0.0, 0.0}}));
    EXPECT_EQ(root->getChild(0)->getWorldVolume().max(), (Vec3d{{11.0, 2.0, 3.0}}));
    EXPECT_TRUE(root->getChild(1)->getWorldVolume().isEmpty());
}

TEST(NodeWorldTest, BoxesTheChosenChildOfASwitch)
{
    const SwitchPtr chooser = Switch::create();
    const FCRef<Node> root(makeNodeFor(chooser));
    const NodePtr far = makeNodeFor(makeTranslation(100.0));
    {
        const CPEditor edit(root.get(), Node::ChildrenFieldMask);
        root->addChild(makeNodeFor(makeTriangle()));
        root->addChild(far);
    }
    {
        const CPEditor edit(far, Node::ChildrenFieldMask);
        far->addChild(makeNodeFor(makeTriangle()));
    }
    const auto maxX = [&](std::int32_t choice) {
        const CPEditor edit(chooser, Switch::ChoiceFieldMask);
        chooser->setChoice(choice);
        const Volume volume = root->getWorldVolume();
        return volume.isEmpty() ? -1.0 : volume.max()[0];
    };

    EXPECT_EQ(maxX(0), 1.0);
    EXPECT_EQ(maxX(1), 101.0);
    EXPECT_EQ(maxX(Switch::All), 101.0);
    EXPECT_EQ(maxX(2), -1.0);
    EXPECT_EQ(maxX(-1), -1.0);
}

} // namespace
