// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxNodeUtils.h"

#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxNodeKeys.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/JsonAttachment.h"
#include "SceneGraph/MaterialGroup.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/SynchronizationAttachment.h"
#include "Support/SceneTest.h"
#include "Support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QSignalSpy>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using kxNodeUtilsTest = kxtest::SceneTest;

TEST_F(kxNodeUtilsTest, NamesNodesExactly)
{
    const osg::NodePtr a = addNode(osg::Group::create());
    const osg::NodePtr b = addNode(osg::Group::create());
    EXPECT_EQ(kxNodeUtils::getName(a), "");

    kxNodeUtils::setName(a, "Stühle", false, nullptr);
    kxNodeUtils::setName(b, "Stühle", false, nullptr);

    EXPECT_EQ(kxNodeUtils::getName(a), "Stühle");
    EXPECT_EQ(kxNodeUtils::getName(b), "Stühle");
    EXPECT_EQ(kxNodeUtils::getName(nullptr), "");
    kxNodeUtils::setName(nullptr, "x", true, nullptr);
}

TEST_F(kxNodeUtilsTest, AnnouncesANameOnRequest)
{
    const osg::NodePtr node = addNode(osg::Group::create());
    QSignalSpy names(&kxScenegraph::notifier(), &kxScenegraphNotifier::nameChanged);

    kxNodeUtils::setName(node, "quiet", false, nullptr);
    kxNodeUtils::setName(node, "loud", true, nullptr);

    ASSERT_EQ(names.count(), 1);
    EXPECT_EQ(names[0][0].value<quint32>(), node.getFieldContainerId());
}

TEST_F(kxNodeUtilsTest, NamesOnlyBelowTheRootThatIsGiven)
{
    const osg::NodePtr root = addNode(osg::Group::create());
    const osg::NodePtr inside = addNodeBelow(root, osg::Group::create(), "old");
    const osg::NodePtr outside = addNode(osg::Group::create(), "old");

    kxNodeUtils::setName(inside, "new", false, root);
    kxNodeUtils::setName(outside, "new", false, root);

    EXPECT_EQ(kxNodeUtils::getName(inside), "new");
    EXPECT_EQ(kxNodeUtils::getName(outside), "old");
}

TEST_F(kxNodeUtilsTest, CollectsGeometryNodesParentsFirst)
{
    const osg::NodePtr root = addNode(osg::Geometry::create());
    const osg::NodePtr group = addNodeBelow(root, osg::Group::create());
    const osg::NodePtr below = addNodeBelow(group, osg::Geometry::create());
    const osg::NodePtr last = addNodeBelow(root, osg::Geometry::create());
    std::vector<osg::NodePtr> nodes{group};

    kxNodeUtils::getGeometryNodes(root, nodes);

    EXPECT_THAT(nodes, ElementsAre(group, root, below, last));
    nodes.clear();
    kxNodeUtils::getGeometryNodes(nullptr, nodes);
    EXPECT_THAT(nodes, IsEmpty());
}

TEST_F(kxNodeUtilsTest, WalksTreesOfAnyDepth)
{
    const osg::NodePtr deepest = osg::makeNodeFor(osg::Geometry::create());
    osg::FCRef<osg::Node> top(deepest);
    for (int i = 0; i < 100000; ++i) {
        const osg::FCRef<osg::Node> parent(osg::makeNodeFor(osg::Group::create()));
        {
            const osg::CPEditor edit(parent.get(), osg::Node::ChildrenFieldMask);
            parent->addChild(top);
        }
        top = parent;
    }
    std::vector<osg::NodePtr> nodes;

    kxNodeUtils::getGeometryNodes(top, nodes);

    EXPECT_THAT(nodes, ElementsAre(deepest));
}

TEST_F(kxNodeUtilsTest, AssignsAMaterialToWhateverTakesOne)
{
    const auto material = newMaterial();
    const osg::GeometryPtr geometry = osg::Geometry::create();
    const osg::MaterialGroupPtr group = osg::MaterialGroup::create();

    EXPECT_TRUE(kxNodeUtils::setMaterial(addNode(geometry), material, false, true));
    EXPECT_TRUE(kxNodeUtils::setMaterial(addNode(group), material, false, true));

    EXPECT_EQ(geometry->getMaterial(), material.get());
    EXPECT_EQ(group->getMaterial(), material.get());
}

TEST_F(kxNodeUtilsTest, AssignsNull)
{
    const auto material = newMaterial();
    const osg::GeometryPtr geometry = geometryWith(material);

    EXPECT_TRUE(kxNodeUtils::setMaterial(addNode(geometry), nullptr, false, true));

    EXPECT_FALSE(geometry->getMaterial());
    EXPECT_EQ(material->getRefCount(), 1);
}

TEST_F(kxNodeUtilsTest, KeepsAnAssignmentThatMustNotBeReplaced)
{
    const auto first = newMaterial();
    const auto second = newMaterial();
    const osg::GeometryPtr geometry = osg::Geometry::create();
    const osg::NodePtr node = addNode(geometry);

    EXPECT_TRUE(kxNodeUtils::setMaterial(node, first, false, false));
    EXPECT_FALSE(kxNodeUtils::setMaterial(node, second, false, false));

    EXPECT_EQ(geometry->getMaterial(), first.get());
}

TEST_F(kxNodeUtilsTest, AssignsNothingToWhatTakesNoMaterial)
{
    const auto material = newMaterial();

    EXPECT_FALSE(kxNodeUtils::setMaterial(addNode(osg::Group::create()), material, false, true));
    EXPECT_FALSE(kxNodeUtils::setMaterial(kxScenegraph::getMaterialPoolNode(), material, false, true));
    EXPECT_FALSE(kxNodeUtils::setMaterial(nullptr, material, false, true));
    const osg::FCRef<osg::Node> withoutCore(osg::Node::create());
    EXPECT_FALSE(kxNodeUtils::setMaterial(withoutCore, material, false, true));
}

TEST_F(kxNodeUtilsTest, RefreshesViewsAfterAnAssignmentOnRequest)
{
    const osg::NodePtr node = addNode(osg::Geometry::create());
    QSignalSpy updates(&kxScenegraph::notifier(), &kxScenegraphNotifier::updateRequested);

    kxNodeUtils::setMaterial(node, newMaterial(), false, true);
    QCoreApplication::processEvents();
    EXPECT_EQ(updates.count(), 0);
    kxNodeUtils::setMaterial(node, newMaterial(), true, true);
    QCoreApplication::processEvents();

    EXPECT_EQ(updates.count(), 1);
}

TEST_F(kxNodeUtilsTest, FindsANodeByItsId)
{
    const osg::NodePtr node = addNode(osg::Group::create());
    const std::uint32_t id = node.getFieldContainerId();

    EXPECT_EQ(kxNodeUtils::getNodeFromId(id), node);
    EXPECT_FALSE(kxNodeUtils::getNodeFromId(node->getCore().getFieldContainerId()));
    EXPECT_FALSE(kxNodeUtils::getNodeFromId(0));
    remove(node);
    EXPECT_FALSE(kxNodeUtils::getNodeFromId(id));
}

TEST_F(kxNodeUtilsTest, WritesANodeWithAllBelow)
{
    const kxtest::TemporaryFolder folder;
    const osg::NodePtr node = addNode(osg::Group::create(), "Stuhl");
    addNodeBelow(node, geometryWith(newMaterial("Oak")), "Bein");

    EXPECT_TRUE(kxNodeUtils::writeNode(node, folder.file("Stühle.osb").c_str(), true));

    const auto roots = osg::readSceneFile(folder.file("Stühle.osb"));
    ASSERT_TRUE(roots);
    ASSERT_EQ(roots.value().size(), 1U);
    EXPECT_EQ(osg::findDifference(roots.value()[0], node).value_or("equal"), "equal");
}

TEST_F(kxNodeUtilsTest, LeavesAnExistingFileAloneUnlessItIsToBeReplaced)
{
    const kxtest::TemporaryFolder folder;
    const std::string path = folder.write("old.osb", "old");

    EXPECT_FALSE(kxNodeUtils::writeNode(kxScenegraph::getRoot(), path.c_str(), false));
    EXPECT_EQ(folder.read("old.osb"), "old");
    EXPECT_TRUE(kxNodeUtils::writeNode(kxScenegraph::getRoot(), path.c_str(), true));
    EXPECT_NE(folder.read("old.osb"), "old");
}

TEST_F(kxNodeUtilsTest, FailsToWriteWithoutANodeAPathOrAFolder)
{
    const kxtest::TemporaryFolder folder;
    const kxLogRecorder log;

    EXPECT_FALSE(kxNodeUtils::writeNode(nullptr, folder.file("a.osb").c_str(), true));
    EXPECT_FALSE(kxNodeUtils::writeNode(kxScenegraph::getRoot(), nullptr, true));
    EXPECT_FALSE(kxNodeUtils::writeNode(kxScenegraph::getRoot(), folder.file("missing/a.osb").c_str(), true));

    EXPECT_FALSE(folder.contains("a.osb"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

std::string describe(const osg::NodePtr &node)
{
    std::string text = osg::getName(node);
    for (std::size_t i = 0; i < node->getNChildren(); ++i)
        text += (i == 0 ? "(" : " ") + describe(node->getChild(i)) + (i + 1 == node->getNChildren() ? ")" : "");
    return text;
}

TEST_F(kxNodeUtilsTest, FindsTheOtherNodesOfACoreInTheScene)
{
    const auto core = osg::Group::create();
    const osg::NodePtr node = addNode(core);
    const osg::NodePtr clone = addNodeBelow(addNode(osg::Group::create()), core);
    const osg::FCRef<osg::Node> outside(osg::makeNodeFor(core));
    std::vector<osg::NodePtr> clones{node};

    kxNodeUtils::getAllClonesInScenegraph(node, clones);

    EXPECT_THAT(clones, ElementsAre(node, clone)) << "added to what the list held";
    clones.clear();
    kxNodeUtils::getAllClonesInScenegraph(nullptr, clones);
    EXPECT_THAT(clones, IsEmpty());
}

TEST_F(kxNodeUtilsTest, BringsTheTreesOfClonesUpToDate)
{
    const auto core = osg::Group::create();
    const osg::NodePtr node = addNode(core, "Car");
    const osg::NodePtr clone = addNode(core, "Old");
    const osg::NodePtr wheel = addNodeBelow(node, osg::Group::create(), "Wheel");
    addNodeBelow(wheel, osg::Group::create(), "Tyre");
    addNodeBelow(node, osg::Group::create(), "Door");
    const osg::NodePtr surplus = addNodeBelow(clone, osg::Group::create(), "Surplus");
    const osg::NodePtr kept = addNodeBelow(clone, node->getChild(1)->getCore(), "Kept");
    setUuid(wheel, "wheel-uuid");
    setUuid(kept, "stale");
    const std::uint32_t surplusId = surplus.getFieldContainerId();
    std::vector<osg::NodePtr> clones;
    kxNodeUtils::getAllClonesInScenegraph(node, clones);

    kxNodeUtils::syncCloneTrees(node, {nullptr, node, clones[0]});

    EXPECT_EQ(describe(clone), "Car(Wheel(Tyre) Door)");
    EXPECT_EQ(describe(node), "Car(Wheel(Tyre) Door)");
    EXPECT_EQ(clone->getChild(1), kept) << "what fits stays, at its new place";
    EXPECT_EQ(clone->getChild(0)->getCore(), wheel->getCore());
    EXPECT_EQ(osg::AssetAttachment::getAssetAttachment(clone->getChild(0))->getUuid(), "wheel-uuid");
    EXPECT_FALSE(osg::AssetAttachment::getAssetAttachment(kept));
    EXPECT_FALSE(kxNodeUtils::getNodeFromId(surplusId));
    const std::size_t before = osg::FieldContainerFactory::the().livingContainerCount();
    kxNodeUtils::syncCloneTrees(node, {clone});
    EXPECT_EQ(osg::FieldContainerFactory::the().livingContainerCount(), before) << "nothing is left to do";
}

TEST_F(kxNodeUtilsTest, LeavesClonesAloneThatHoldEachOther)
{
    const auto core = osg::Group::create();
    const osg::NodePtr above = addNode(core, "A");
    const osg::NodePtr below = addNodeBelow(above, core, "B");
    addNodeBelow(above, osg::Group::create(), "C");

    kxNodeUtils::syncCloneTrees(above, {below});
    kxNodeUtils::syncCloneTrees(below, {above});

    EXPECT_EQ(describe(above), "A(B C)");
}

TEST_F(kxNodeUtilsTest, PassesOverDestroyedClones)
{
    const osg::NodePtr node = addNode(osg::Group::create(), "A");
    const osg::NodePtr clone = addNode(node->getCore(), "Old");
    const osg::NodePtr gone = addNode(node->getCore(), "Gone");
    remove(gone);

    kxNodeUtils::syncCloneTrees(node, {gone, clone});

    EXPECT_EQ(describe(clone), "A");
}

TEST_F(kxNodeUtilsTest, LeavesNodesOfOtherCoresAlone)
{
    const osg::NodePtr node = addNode(osg::Group::create(), "A");
    addNodeBelow(node, osg::Group::create(), "B");
    const osg::NodePtr other = addNode(osg::Group::create(), "C");

    kxNodeUtils::syncCloneTrees(node, {other});
    kxNodeUtils::syncCloneTrees(nullptr, {other});

    EXPECT_EQ(describe(other), "C");
}

void synchronise(const osg::NodePtr &node, const std::vector<std::string> &partners)
{
    const auto record = osg::SynchronizationAttachment::create();
    {
        const osg::CPEditor edit(record, osg::SynchronizationAttachment::PartnersFieldMask);
        record->editPartners() = partners;
    }
    const osg::CPEditor edit(node, osg::AttachmentContainer::AttachmentsFieldMask);
    node->addAttachment(record);
}

std::vector<std::string> partnersOf(const osg::NodePtr &node)
{
    const auto record = osg::findAttachment<osg::SynchronizationAttachment>(node);
    return record ? std::vector<std::string>(record->getPartners().begin(), record->getPartners().end())
                  : std::vector<std::string>{"no record"};
}

TEST_F(kxNodeUtilsTest, DropsPartnersThatDoNotNameTheNodeBack)
{
    const osg::NodePtr root = addNode(osg::Group::create());
    const osg::NodePtr a = addNodeBelow(root, osg::Group::create());
    const osg::NodePtr b = addNodeBelow(root, osg::Group::create());
    const osg::NodePtr c = addNodeBelow(root, osg::Group::create());
    const std::string keyA = kxNodeKeys::make(a);
    const std::string keyB = kxNodeKeys::make(b);
    const std::string keyC = kxNodeKeys::make(c);
    synchronise(a, {keyB, "nobody", keyC});
    synchronise(b, {keyA});
    synchronise(c, {"nobody"});

    kxNodeUtils::removeInvalidSynchronizations(root);

    EXPECT_EQ(partnersOf(a), std::vector{keyB});
    EXPECT_EQ(partnersOf(b), std::vector{keyA});
    EXPECT_EQ(partnersOf(c), std::vector<std::string>{"no record"});
    kxNodeUtils::removeInvalidSynchronizations(nullptr);
}

TEST_F(kxNodeUtilsTest, TakesAnAttachmentAway)
{
    const osg::NodePtr node = addNode(osg::Group::create(), "Named");

    kxNodeUtils::removeAttachment(node, osg::JsonAttachment::getClassType());
    kxNodeUtils::removeAttachment(nullptr, osg::NameAttachment::getClassType());
    EXPECT_EQ(osg::getName(node), "Named");
    kxNodeUtils::removeAttachment(node, osg::NameAttachment::getClassType());
    EXPECT_EQ(osg::getName(node), "");
}

} // namespace
