// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/FCPtr.h"

#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/Transform.h"
#include "SceneGraph/Transform3D.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "SceneGraph/UberMaterial.h"

#include <gtest/gtest.h>

#include <set>
#include <type_traits>
#include <utility>

namespace {

using namespace osg;

static_assert(std::is_convertible_v<SwitchMaterialPtr, MaterialPtr>);
static_assert(std::is_convertible_v<SwitchMaterialPtr, FieldContainerPtr>);
static_assert(!std::is_convertible_v<MaterialPtr, SwitchMaterialPtr>);
static_assert(!std::is_convertible_v<MaterialPtr, NodeCorePtr>);

TEST(FCPtrTest, IsNullByDefault)
{
    const NodePtr none;

    EXPECT_FALSE(none);
    EXPECT_EQ(none, NullFC);
    EXPECT_EQ(none.getFieldContainerId(), 0U);
}

TEST(FCPtrTest, DoesNotCount)
{
    const NodePtr node = Node::create();
    const NodePtr copy = node;

    EXPECT_EQ(copy->getRefCount(), 0);

    addRef(node);
    EXPECT_EQ(copy->getRefCount(), 1);
    subRef(node);
    EXPECT_FALSE(FieldContainerFactory::the().isAlive(copy.getFieldContainerId()));
}

TEST(FCPtrTest, IgnoresCountingOfNull)
{
    addRef(NodePtr());
    subRef(NodePtr());
}

TEST(FCPtrTest, OrdersByIdAlsoWhenTheContainerIsGone)
{
    const FCRef<Group> first(Group::create());
    FCRef<Group> second(Group::create());
    const FCRef<Group> third(Group::create());
    std::set<GroupPtr> groups{third.get(), second.get(), first.get()};
    const GroupPtr stale = second.get();

    second.reset();

    EXPECT_EQ(*groups.begin(), first.get());
    EXPECT_EQ(*groups.rbegin(), third.get());
    EXPECT_TRUE(groups.contains(stale));
    EXPECT_LT(first.get(), stale);
}

TEST(FCPtrTest, CastsDownOnlyAlongTheTypeChain)
{
    const FCRef<UEnvironmentSwitchMaterial> environments(UEnvironmentSwitchMaterial::create());
    const FieldContainerPtr any = environments.get();

    EXPECT_EQ(dcast<MaterialPtr>(any), environments.get());
    EXPECT_EQ(dcast<MultiMaterialPtr>(any), environments.get());
    EXPECT_EQ(dcast<SwitchMaterialPtr>(any), environments.get());
    EXPECT_EQ(dcast<UberMaterialPtr>(any), NullFC);
    EXPECT_EQ(dcast<NodePtr>(any), NullFC);
    EXPECT_EQ(dcast<NodePtr>(NullFC), NullFC);
}

TEST(FCPtrTest, TellsAPlainTransformFromAPlacedOne)
{
    const FCRef<Transform> plain(Transform::create());
    const FCRef<Transform3D> placed(Transform3D::create());

    EXPECT_EQ(dcast<Transform3DPtr>(plain.get()), NullFC);
    EXPECT_EQ(dcast<TransformPtr>(placed.get()), NullFC);
}

#ifndef NDEBUG
TEST(FCPtrDeathTest, AbortsOnAccessToADestroyedContainer)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    FCRef<Group> group(Group::create());
    const GroupPtr stale = group.get();
    group.reset();

    EXPECT_DEATH(stale->getAttachments(), "access through a handle to a destroyed container");
    EXPECT_DEATH(GroupPtr()->getAttachments(), "access through a handle to nothing");
}
#endif

TEST(FCRefTest, DestroysWithTheLastOwner)
{
    FCRef<Group> first(Group::create());
    const std::uint32_t id = first.get().getFieldContainerId();
    FCRef<Group> second = first;
    EXPECT_EQ(first->getRefCount(), 2);

    first.reset();
    EXPECT_TRUE(FieldContainerFactory::the().isAlive(id));
    second = nullptr;

    EXPECT_FALSE(FieldContainerFactory::the().isAlive(id));
}

TEST(FCRefTest, MovesWithoutCounting)
{
    FCRef<Group> first(Group::create());
    const FCRef<Group> second = std::move(first);

    EXPECT_EQ(second->getRefCount(), 1);
}

TEST(FCRefTest, SurvivesAssignmentToItself)
{
    FCRef<Group> group(Group::create());
    const FCRef<Group> &same = group;

    group = same;

    EXPECT_EQ(group->getRefCount(), 1);
}

TEST(FCRefTest, HandsItsReferenceOverAndAdoptsOne)
{
    FCRef<Group> first(Group::create());

    const GroupPtr handedOver = first.take();
    EXPECT_FALSE(first);
    EXPECT_EQ(handedOver->getRefCount(), 1);

    const FCRef<Group> adopted = FCRef<Group>::adopt(handedOver);
    EXPECT_EQ(adopted->getRefCount(), 1);
}

} // namespace
