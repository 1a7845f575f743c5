// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxCreateGroupedNodes.h"

#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateService.h"
#include "Kernel/kxSceneplateUtils.h"
#include "NodeFixture.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Transform.h"

#include <gmock/gmock.h>

#include <memory>
#include <random>

namespace {

class PlateService final : public kxSceneplateService
{
public:
    void nodesChanged() override { ++changes; }
    QImage previewImage(const kxdNodePtr &) override { return {}; }

    int changes = 0;
};

class kxCreateGroupedNodesTest : public NodeFixture
{
protected:
    kxCreateGroupedNodesTest() { kxKernelServiceFactory::the().setService<kxSceneplateService>(&service); }
    ~kxCreateGroupedNodesTest() override
    {
        kxKernelServiceFactory::the().setService<kxSceneplateService>(nullptr);
        kxScenegraph::enableUpdate(true);
    }

    static osg::NodePtr root() { return kxScenegraph::getRoot(); }
    static osg::NodePtr addMatrix(const osg::NodePtr &parent, const std::string &name, const osg::Matrix &matrix)
    {
        const auto core = osg::Transform::create();
        {
            const osg::CPEditor edit(core, osg::Transform::MatrixFieldMask);
            core->setMatrix(matrix);
        }
        return addNode(parent, core, name);
    }

    PlateService service;
    kxCreateGroupedNodes geometry{Geometry};
    kxCreateGroupedNodes plates{Sceneplate};
};

} // namespace

TEST_F(kxCreateGroupedNodesTest, GathersSiblingsWithoutWrappersAndPutsThemBack)
{
    const osg::NodePtr parent = addPlaced(root(), "P", {5.0, 0.0, 0.0});
    std::vector<osg::NodePtr> nodes;
    for (const char *name : {"A", "B", "C", "D"})
        nodes.push_back(addGroup(parent, name));

    EXPECT_TRUE(geometry.prepare({nodes[3], nodes[0], nodes[2]}));

    ASSERT_TRUE(geometry.getRoot());
    EXPECT_EQ(describe(geometry.getRoot()), "(D A C)");
    EXPECT_EQ(geometry.getRoot()->getParent(), root());
    EXPECT_EQ(root()->getChild(root()->getNChildren() - 1), geometry.getRoot());
    const auto core = osg::Transform3DPtr::dcast(geometry.getRoot()->getCore());
    ASSERT_TRUE(core);
    EXPECT_EQ(core->getMatrix(), osg::Matrix());
    EXPECT_EQ(describe(parent), "P(B)");
    EXPECT_TRUE(kxScenegraph::isUpdateEnabled());

    geometry.unprepare();
    EXPECT_FALSE(geometry.getRoot());
    EXPECT_EQ(describe(parent), "P(A B C D)");
    geometry.unprepare();
    EXPECT_EQ(describe(parent), "P(A B C D)");
}

TEST_F(kxCreateGroupedNodesTest, KeepsAPlacementWithinTheCommonAncestor)
{
    const osg::NodePtr world = addPlaced(root(), "World", {100.0, 0.0, 0.0});
    const osg::NodePtr direct = addGroup(world, "Direct");
    const osg::NodePtr placed = addPlaced(world, "Placed", {1.0, 2.0, 3.0});
    const osg::NodePtr inside = addGroup(placed, "Inside");

    EXPECT_TRUE(geometry.prepare({direct, inside}));

    ASSERT_EQ(geometry.getRoot()->getNChildren(), 2U);
    EXPECT_EQ(geometry.getRoot()->getChild(0), direct);
    const osg::NodePtr wrapper = geometry.getRoot()->getChild(1);
    ASSERT_EQ(wrapper->getNChildren(), 1U);
    EXPECT_EQ(wrapper->getChild(0), inside);
    const auto core = osg::Transform3DPtr::dcast(wrapper->getCore());
    ASSERT_TRUE(core);
    EXPECT_EQ(core->getTranslation(), (osg::Vec3d{1.0, 2.0, 3.0})) << "the ancestor's own placement is left out";
    const std::uint32_t wrapperId = wrapper.getFieldContainerId();

    geometry.unprepare();
    EXPECT_EQ(describe(world), "World(Direct Placed(Inside))");
    EXPECT_FALSE(osg::FieldContainerFactory::the().getContainer(wrapperId)) << "wrappers go";
}

TEST_F(kxCreateGroupedNodesTest, KeepsShearAsAMatrix)
{
    osg::Matrix shear;
    shear.at(0, 1) = 0.5;
    const osg::NodePtr world = addGroup(root(), "World");
    const osg::NodePtr other = addGroup(world, "Other");
    const osg::NodePtr inside = addGroup(addMatrix(world, "Sheared", shear), "Inside");

    EXPECT_TRUE(geometry.prepare({other, inside}));

    const auto core = osg::TransformPtr::dcast(geometry.getRoot()->getChild(1)->getCore());
    ASSERT_TRUE(core);
    EXPECT_EQ(core->getMatrix(), shear);
}

TEST_F(kxCreateGroupedNodesTest, KeepsRotationScaleAndMirroringAsParts)
{
    for (const osg::Vec3d &scale : {osg::Vec3d{2.0, 3.0, 0.5}, osg::Vec3d{-2.0, -2.0, -2.0}}) {
        const osg::Matrix placement = osg::composeMatrix({1.0, 0.0, 0.0}, {0.0, 0.6, 0.0, 0.8}, scale);
        const osg::NodePtr world = addGroup(root(), "World");
        const osg::NodePtr other = addGroup(world, "Other");
        const osg::NodePtr inside = addGroup(addMatrix(world, "Placed", placement), "Inside");
        kxCreateGroupedNodes group(Geometry);

        EXPECT_TRUE(group.prepare({other, inside}));

        const auto core = osg::Transform3DPtr::dcast(group.getRoot()->getChild(1)->getCore());
        ASSERT_TRUE(core);
        for (std::size_t i = 0; i < 16; ++i)
            EXPECT_NEAR(core->getMatrix().values[i], placement.values[i], 1e-6);
    }
}

TEST_F(kxCreateGroupedNodesTest, TakesPlacementsWithinAMillionthForNone)
{
    osg::Matrix nearly;
    nearly.at(0, 3) = 9e-7;
    osg::Matrix beyond;
    beyond.at(0, 3) = 1.1e-6;
    const osg::NodePtr world = addGroup(root(), "World");
    const osg::NodePtr other = addGroup(world, "Other");
    const osg::NodePtr first = addGroup(addMatrix(world, "", nearly), "First");
    const osg::NodePtr second = addGroup(addMatrix(world, "", beyond), "Second");

    EXPECT_TRUE(geometry.prepare({other, first, second}));

    EXPECT_EQ(describe(geometry.getRoot()), "(Other First (Second))");
}

TEST_F(kxCreateGroupedNodesTest, TakesASingularAncestorForNone)
{
    osg::Matrix flat;
    flat.at(2, 2) = 0.0;
    const osg::NodePtr world = addMatrix(root(), "Flat", flat);
    const osg::NodePtr other = addGroup(world, "Other");
    const osg::NodePtr inside = addGroup(addPlaced(world, "Placed", {1.0, 0.0, 0.0}), "Inside");

    EXPECT_TRUE(geometry.prepare({other, inside}));

    const auto core = osg::TransformPtr::dcast(geometry.getRoot()->getChild(1)->getCore());
    const auto parts = osg::Transform3DPtr::dcast(geometry.getRoot()->getChild(1)->getCore());
    ASSERT_TRUE(core || parts);
    EXPECT_EQ((core ? core->getMatrix() : parts->getMatrix()).at(2, 2), 0.0);
}

TEST_F(kxCreateGroupedNodesTest, RefusesAnEmptyListBeforeAnythingElse)
{
    EXPECT_FALSE(geometry.prepare({}));
    EXPECT_TRUE(kxScenegraph::isUpdateEnabled());
    EXPECT_FALSE(plates.prepare({}));
}

TEST_F(kxCreateGroupedNodesTest, LeavesUpdatesOffAfterAFailureUntilItIsUndone)
{
    const osg::NodePtr a = addGroup(root(), "A");
    const osg::NodePtr b = addGroup(root(), "B");
    ASSERT_TRUE(geometry.prepare({a}));
    const osg::NodePtr made = geometry.getRoot();

    EXPECT_FALSE(geometry.prepare({b}));

    EXPECT_FALSE(kxScenegraph::isUpdateEnabled());
    EXPECT_EQ(geometry.getRoot(), made);
    EXPECT_EQ(describe(made), "(A)");
    geometry.unprepare();
    EXPECT_TRUE(kxScenegraph::isUpdateEnabled());
    EXPECT_EQ(a->getParent(), root());

    kxScenegraph::closeDocument();
    const osg::FCRef<osg::Node> alone(osg::makeNodeFor(osg::Group::create()));
    EXPECT_FALSE(geometry.prepare({alone.get()}));
    EXPECT_FALSE(kxScenegraph::isUpdateEnabled());
    EXPECT_FALSE(geometry.getRoot());
}

TEST_F(kxCreateGroupedNodesTest, PutsEverythingBackWhenItGoes)
{
    const osg::NodePtr a = addGroup(root(), "A");
    addGroup(root(), "B");
    const std::string before = describe(root());
    {
        kxCreateGroupedNodes group(Geometry);
        ASSERT_TRUE(group.prepare({a, nullptr}));
        EXPECT_NE(describe(root()), before);
    }
    EXPECT_EQ(describe(root()), before);
}

TEST_F(kxCreateGroupedNodesTest, LeavesWhatACopyHasRestored)
{
    const osg::NodePtr parent = addGroup(root(), "P");
    const osg::NodePtr a = addGroup(parent, "A");
    const osg::NodePtr b = addGroup(parent, "B");
    ASSERT_TRUE(geometry.prepare({a}));
    kxCreateGroupedNodes copy = geometry;

    geometry.unprepare();
    {
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->addChild(a); // somebody moves it
    }
    copy.unprepare();

    EXPECT_EQ(describe(parent), "P(B A)");
    EXPECT_EQ(b->getParent(), parent);
}

TEST_F(kxCreateGroupedNodesTest, PassesOverWhatWasDestroyedMeanwhile)
{
    const osg::NodePtr parent = addGroup(root(), "P");
    const osg::NodePtr a = addGroup(parent, "A");
    const osg::NodePtr b = addGroup(parent, "B");
    const osg::NodePtr other = addGroup(root(), "Q");
    const osg::NodePtr c = addGroup(other, "C");
    ASSERT_TRUE(geometry.prepare({a, b, c}));
    {
        const osg::CPEditor edit(b->getParent(), osg::Node::ChildrenFieldMask);
        b->getParent()->subChild(b);
    }
    {
        const osg::CPEditor edit(root(), osg::Node::ChildrenFieldMask);
        root()->subChild(other);
    }

    geometry.unprepare();

    EXPECT_EQ(describe(parent), "P(A)");
}

TEST_F(kxCreateGroupedNodesTest, GathersPlatesBelowAGroupAndTellsTheHost)
{
    const osg::NodePtr plateRoot = kxSceneplateUtils::getSceneplateRoot();
    const osg::NodePtr a = addGroup(plateRoot, "A");
    const osg::NodePtr b = addGroup(plateRoot, "B");
    const osg::FCRef<osg::Node> alone(osg::makeNodeFor(osg::Group::create()));

    EXPECT_TRUE(plates.prepare({b, alone.get(), nullptr, a}));

    EXPECT_EQ(describe(plates.getRoot()), "(B A)") << "what hangs nowhere is passed over";
    EXPECT_EQ(plates.getRoot()->getParent(), plateRoot);
    EXPECT_FALSE(osg::Transform3DPtr::dcast(plates.getRoot()->getCore()));
    EXPECT_EQ(service.changes, 0);
    EXPECT_FALSE(plates.prepare({a})) << "it is prepared already";
    plates.unprepare();
    EXPECT_EQ(describe(plateRoot), "Sceneplates(A B)");
    EXPECT_EQ(service.changes, 1);
    plates.unprepare();
    EXPECT_EQ(service.changes, 2) << "told also when there was nothing to do";
}

TEST_F(kxCreateGroupedNodesTest, LeavesRandomScenesAsTheyWere)
{
    std::mt19937 random(7);
    for (int round = 0; round < 20; ++round) {
        std::vector<osg::NodePtr> nodes{addGroup(root(), "R")};
        std::uniform_real_distribution<double> number(-2.0, 2.0);
        for (int i = 0; i < 30; ++i) {
            const osg::NodePtr parent = nodes[random() % nodes.size()];
            osg::Matrix matrix;
            for (double &value : matrix.values)
                value += number(random);
            if (random() % 3 == 0)
                nodes.push_back(addGroup(parent, std::to_string(i)));
            else if (random() % 2 == 0)
                nodes.push_back(addPlaced(parent, std::to_string(i), {number(random), 0.0, 1.0}));
            else
                nodes.push_back(addMatrix(parent, std::to_string(i), matrix));
        }
        std::vector<kxNodePtr> chosen;
        for (const osg::NodePtr &node : nodes)
            if (random() % 4 == 0 && node != nodes[0])
                chosen.push_back(node);
        // No node below another chosen one: such a selection names the lower one twice.
        std::erase_if(chosen, [&chosen](const osg::NodePtr &node) {
            for (osg::NodePtr parent = node->getParent(); parent; parent = parent->getParent())
                if (std::find(chosen.begin(), chosen.end(), parent) != chosen.end())
                    return true;
            return false;
        });
        const osg::FCRef<osg::FieldContainer> before(osg::deepClone(osg::FieldContainerPtr(root()), {}));
        std::vector<std::int32_t> counts;
        for (const osg::NodePtr &node : nodes)
            counts.push_back(node->getRefCount());
        const std::size_t living = osg::FieldContainerFactory::the().livingContainerCount();

        kxCreateGroupedNodes group(Geometry);
        EXPECT_EQ(group.prepare(chosen), !chosen.empty());
        group.unprepare();

        EXPECT_EQ(osg::findDifference(before.get(), root()), std::nullopt);
        for (std::size_t i = 0; i < nodes.size(); ++i)
            EXPECT_EQ(nodes[i]->getRefCount(), counts[i]);
        EXPECT_EQ(osg::FieldContainerFactory::the().livingContainerCount(), living);
    }
}
