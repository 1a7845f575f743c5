// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/FieldContainer.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/MaterialGroup.h"
#include "SceneGraph/MultiMaterial.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/SceneListener.h"
#include "SceneGraph/UberMaterial.h"

#include <gtest/gtest.h>

namespace {

using namespace osg;

bool isAlive(const FieldContainerPtr &container)
{
    return FieldContainerFactory::the().isAlive(container.getFieldContainerId());
}

TEST(FieldContainerTest, StartsWithoutReferences)
{
    const NodePtr node = Node::create();

    EXPECT_EQ(node->getRefCount(), 0);

    const FCRef<Node> destroys(node);
}

TEST(FieldContainerTest, NeverReusesAnId)
{
    std::uint32_t last = 0;
    for (int i = 0; i < 10'000; ++i) {
        const FCRef<Group> group(Group::create());
        EXPECT_GT(group.get().getFieldContainerId(), last);
        last = group.get().getFieldContainerId();
    }
}

TEST(FieldContainerTest, AddsOneAsChild)
{
    const FCRef<Node> parent(Node::create());
    const NodePtr child = Node::create();
    {
        const CPEditor edit(parent.get(), Node::ChildrenFieldMask);
        parent->addChild(child);
    }
    EXPECT_EQ(child->getRefCount(), 1);

    const CPEditor edit(parent.get(), Node::ChildrenFieldMask);
    parent->subChild(child);

    EXPECT_FALSE(isAlive(child));
}

TEST(FieldContainerTest, AddsOneAsCoreForEachNode)
{
    const GroupPtr core = Group::create();
    FCRef<Node> first(makeNodeFor(core));
    FCRef<Node> second(makeNodeFor(core));
    EXPECT_EQ(core->getRefCount(), 2);

    first.reset();
    EXPECT_EQ(core->getRefCount(), 1);
    second.reset();

    EXPECT_FALSE(isAlive(core));
}

TEST(FieldContainerTest, AddsOneAsAttachment)
{
    FCRef<Node> node(Node::create());
    setName(node.get(), "name");
    const AttachmentPtr attachment = node->getAttachments()[0];
    EXPECT_EQ(attachment->getRefCount(), 1);

    node.reset();

    EXPECT_FALSE(isAlive(attachment));
}

TEST(FieldContainerTest, AddsOneAsFieldValue)
{
    const FCRef<MaterialGroup> group(MaterialGroup::create());
    const MaterialPtr first = UBRDFMaterial::create();
    const MaterialPtr second = UBRDFMaterial::create();
    const CPEditor edit(group.get(), MaterialGroup::MaterialFieldMask);
    group->setMaterial(first);
    EXPECT_EQ(first->getRefCount(), 1);

    group->setMaterial(second);
    EXPECT_FALSE(isAlive(first));
    group->setMaterial(second);
    EXPECT_EQ(second->getRefCount(), 1);
    group->setMaterial(nullptr);

    EXPECT_FALSE(isAlive(second));
}

TEST(FieldContainerTest, AddsOneForEachEntryOfAList)
{
    const FCRef<MultiMaterial> composite(MultiMaterial::create());
    const FCRef<UBRDFMaterial> entry(UBRDFMaterial::create());
    const FCRef<UBRDFMaterial> other(UBRDFMaterial::create());
    const CPEditor edit(composite.get(), MultiMaterial::MaterialsFieldMask);
    auto &list = composite->editMaterials();

    list = {entry.get(), entry.get(), MaterialPtr()};
    EXPECT_EQ(entry->getRefCount(), 3);
    list.replace(0, other.get());
    EXPECT_EQ(entry->getRefCount(), 2);
    EXPECT_EQ(other->getRefCount(), 2);
    list.insert(0, entry.get());
    EXPECT_EQ(entry->getRefCount(), 3);
    list.erase(0);
    list.erase(2);
    EXPECT_EQ(entry->getRefCount(), 2);
    const MField<MaterialPtr> copy(list);
    EXPECT_EQ(entry->getRefCount(), 3);
    list.clear();

    EXPECT_EQ(entry->getRefCount(), 2);
    EXPECT_EQ(other->getRefCount(), 2);
}

TEST(FieldContainerTest, DestroysADeepChainWithoutRecursion)
{
    const std::size_t before = FieldContainerFactory::the().livingContainerCount();
    FCRef<Node> root(Node::create());
    NodePtr parent = root;
    for (int i = 0; i < 100'000; ++i) {
        const NodePtr child = Node::create();
        const CPEditor edit(parent, Node::ChildrenFieldMask);
        parent->addChild(child);
        parent = child;
    }

    root.reset();

    EXPECT_EQ(FieldContainerFactory::the().livingContainerCount(), before);
}

TEST(FieldContainerTest, DestroysADeepChainOfFieldValuesWithoutRecursion)
{
    const std::size_t before = FieldContainerFactory::the().livingContainerCount();
    FCRef<UBRDFMaterial> first(UBRDFMaterial::create());
    for (int i = 0; i < 100'000; ++i) {
        const FCRef<UBRDFMaterial> next(UBRDFMaterial::create());
        const CPEditor edit(next.get(), UBRDFMaterial::EnvironmentFieldMask);
        next->setEnvironment(first.get());
        first = next;
    }

    first.reset();

    EXPECT_EQ(FieldContainerFactory::the().livingContainerCount(), before);
}

/// Takes a reference to what is about to go, and gives it back at once.
struct CuriousListener final : SceneListener
{
    CuriousListener() { FieldContainerFactory::the().addListener(*this); }
    ~CuriousListener() override { FieldContainerFactory::the().removeListener(*this); }

    void containerChanged(FieldContainer &, FieldMask) override {}
    void containerDestroyed(FieldContainer &container) override
    {
        const FCRef<FieldContainer> brief{FieldContainerPtr(&container)};
        ++destroyed;
    }

    int destroyed = 0;
};

TEST(FieldContainerTest, DiesOnceWhereAListenerTakesABriefReference)
{
    CuriousListener listener;
    FCRef<Node> node(makeNodeFor(Group::create()));

    node.reset();

    EXPECT_EQ(listener.destroyed, 2);
}

} // namespace
