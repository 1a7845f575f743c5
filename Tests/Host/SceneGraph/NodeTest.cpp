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

#include <cmath>

namespace {

using namespace osg;

NodePtr makeNode()
{
    return makeNodeFor(Group::create());
}

void add(const NodePtr &parent, const NodePtr &child)
{
    const CPEditor edit(parent, Node::ChildrenFieldMask);
    parent->addChild(child);
}

bool isAlive(std::uint32_t id)
{
    return FieldContainerFactory::the().isAlive(id);
}

class NodeTest : public testing::Test
{
protected:
    const FCRef<Node> root{makeNode()};
};

} // namespace

TEST_F(NodeTest, CountsAsAParentsChildAndDiesWithoutOne)
{
    const NodePtr child = makeNode();
    EXPECT_EQ(child->getRefCount(), 0);
    add(root, child);
    EXPECT_EQ(child->getRefCount(), 1);
    EXPECT_EQ(child->getParent(), root.get());
    const std::uint32_t id = child.getFieldContainerId();
    const std::uint32_t core = child->getCore().getFieldContainerId();

    {
        const CPEditor edit(root.get(), Node::ChildrenFieldMask);
        EXPECT_TRUE(root->subChild(child));
    }
    EXPECT_FALSE(isAlive(id));
    EXPECT_FALSE(isAlive(core));
}

TEST_F(NodeTest, TakesANodeFromItsOldParent)
{
    const NodePtr a = makeNode();
    const NodePtr b = makeNode();
    const NodePtr child = makeNode();
    add(root, a);
    add(root, b);
    add(a, child);

    add(b, child);

    EXPECT_EQ(a->getNChildren(), 0U);
    EXPECT_EQ(b->findChild(child), 0);
    EXPECT_EQ(child->getParent(), b);
    EXPECT_EQ(child->getRefCount(), 1);
}

TEST_F(NodeTest, MovesWithinItsParentWithoutDying)
{
    const NodePtr a = makeNode();
    const NodePtr b = makeNode();
    add(root, a);
    add(root, b);

    add(root, a);

    EXPECT_EQ(root->getNChildren(), 2U);
    EXPECT_EQ(root->findChild(b), 0);
    EXPECT_EQ(root->findChild(a), 1);
    EXPECT_EQ(a->getRefCount(), 1);
}

TEST_F(NodeTest, ClampsWhereItInserts)
{
    const NodePtr a = makeNode();
    const NodePtr b = makeNode();
    const NodePtr c = makeNode();
    {
        const CPEditor edit(root.get(), Node::ChildrenFieldMask);
        root->insertChild(99, a);
        root->insertChild(-5, b);
        root->insertChild(1, c);
    }

    EXPECT_EQ(root->getChild(0), b);
    EXPECT_EQ(root->getChild(1), c);
    EXPECT_EQ(root->getChild(2), a);
    EXPECT_FALSE(root->getChild(3));
}

TEST_F(NodeTest, ReplacesAChildInItsPlace)
{
    const NodePtr a = makeNode();
    const NodePtr b = makeNode();
    const NodePtr c = makeNode();
    add(root, a);
    add(root, b);
    const std::uint32_t oldId = a.getFieldContainerId();

    {
        const CPEditor edit(root.get(), Node::ChildrenFieldMask);
        EXPECT_TRUE(root->replaceChildBy(a, c));
        EXPECT_FALSE(root->replaceChildBy(makeNodeFor(nullptr), c)) << "no child of this node";
    }

    EXPECT_EQ(root->findChild(c), 0);
    EXPECT_EQ(root->findChild(b), 1);
    EXPECT_FALSE(isAlive(oldId));
}

TEST_F(NodeTest, RefusesCycles)
{
    const NodePtr a = makeNode();
    const NodePtr b = makeNode();
    add(root, a);
    add(a, b);

    add(b, a);
    add(a, a);
    add(b, root);
    add(a, nullptr);

    EXPECT_EQ(b->getNChildren(), 0U);
    EXPECT_EQ(a->getNChildren(), 1U);
    EXPECT_FALSE(root->getParent());
}

TEST_F(NodeTest, SaysThatAStrangerIsNoChild)
{
    const FCRef<Node> stranger(makeNode());

    EXPECT_EQ(root->findChild(stranger), -1);
    EXPECT_EQ(root->findChild(nullptr), -1);
    const CPEditor edit(root.get(), Node::ChildrenFieldMask);
    EXPECT_FALSE(root->subChild(stranger));
}

TEST_F(NodeTest, LeavesChildrenThatOthersHoldWithoutAParent)
{
    FCRef<Node> parent(makeNode());
    const FCRef<Node> child(makeNode());
    add(parent, child);

    parent.reset();

    EXPECT_FALSE(child->getParent());
}

TEST_F(NodeTest, DiesInChainsOfAnyLength)
{
    const std::size_t before = FieldContainerFactory::the().livingContainerCount();
    FCRef<Node> chain(makeNode());
    for (int i = 0; i < 100000; ++i) {
        const FCRef<Node> parent(makeNode());
        add(parent, chain);
        chain = parent;
    }

    chain.reset();

    EXPECT_EQ(FieldContainerFactory::the().livingContainerCount(), before);
}

TEST_F(NodeTest, PlacesThingsByThePlacementsAbove)
{
    const Transform3DPtr moved = Transform3D::create();
    {
        const CPEditor edit(moved, AllFieldMask);
        moved->setTranslation({1.0, 2.0, 3.0});
        moved->setScale({2.0, 2.0, 2.0});
    }
    const NodePtr outer = makeNodeFor(moved);
    const GeometryPtr point = Geometry::create();
    {
        const CPEditor edit(point, Geometry::PositionsFieldMask);
        point->editPositions().push_back({1.0F, 0.0F, 0.0F});
    }
    const NodePtr shape = makeNodeFor(point);
    add(root, outer);
    add(outer, shape);

    EXPECT_EQ(shape->getToWorld(), moved->getMatrix());
    EXPECT_EQ(root->getWorldVolume().min(), (Vec3d{3.0, 2.0, 3.0}));
    EXPECT_EQ(root->getWorldVolume().max(), (Vec3d{3.0, 2.0, 3.0}));
    EXPECT_TRUE(FCRef<Node>(makeNode())->getWorldVolume().isEmpty());
}

TEST(TransformTest, KeepsItsMatrixBitForBit)
{
    Matrix matrix;
    matrix.at(0, 1) = 0.1;
    matrix.at(2, 3) = -1e-300;
    const FCRef<Transform> transform(Transform::create());
    const CPEditor edit(transform.get(), Transform::MatrixFieldMask);
    transform->setMatrix(matrix);

    EXPECT_EQ(transform->getMatrix(), matrix);
    EXPECT_FALSE(transform->getType().isDerivedFrom(Transform3D::getClassType()));
}

TEST(Transform3DTest, TurnsAfterScalingAndMovesLast)
{
    const FCRef<Transform3D> transform(Transform3D::create());
    const CPEditor edit(transform.get(), AllFieldMask);
    transform->setTranslation({10.0, 0.0, 0.0});
    transform->setRotationAsQuaternion({0.0, 0.0, std::sqrt(0.5), std::sqrt(0.5)}); // a quarter turn about Z
    transform->setScale({2.0, 3.0, 4.0});

    const Vec3d p = transformPoint(transform->getMatrix(), {1.0, 0.0, 0.0});

    EXPECT_NEAR(p[0], 10.0, 1e-12);
    EXPECT_NEAR(p[1], 2.0, 1e-12);
}

TEST(MatrixTest, InvertsWhatIsNotSingular)
{
    const Matrix matrix = composeMatrix({1.0, 2.0, 3.0}, {}, {2.0, 4.0, 8.0});
    Matrix flat;
    flat.at(0, 0) = 0.0;

    ASSERT_TRUE(inverted(matrix));
    EXPECT_EQ(matrix * *inverted(matrix), Matrix());
    EXPECT_FALSE(inverted(flat));
}
