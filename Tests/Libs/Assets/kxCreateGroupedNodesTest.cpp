// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxCreateGroupedNodes.h"

#include "EditWatch.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "Kernel/kxSceneplateService.h"
#include "Kernel/kxSceneplateUtils.h"
#include "NodeFixture.h"
#include "SceneChangeListener.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/SceneListener.h"
#include "SceneGraph/Transform.h"
#include "Support/CapturedOutput.h"

#include <QCoreApplication>
#include <QSignalSpy>

#include <gmock/gmock.h>

#include <memory>
#include <random>
#include <set>
#include <utility>

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

class PlateService final : public kxSceneplateService
{
public:
    void nodesChanged() override
    {
        ++changes;
        const osg::NodePtr root = kxSceneplateUtils::getSceneplateRoot();
        platesWhenTold = root ? root->getNChildren() : 0;
    }
    QImage previewImage(const kxdNodePtr &) override { return {}; }

    int changes = 0;
    std::size_t platesWhenTold = 0;
};

/// Notes for each change of a node whether the scene was being updated.
class UpdateWatch final : public osg::SceneListener
{
public:
    UpdateWatch() { osg::FieldContainerFactory::the().addListener(*this); }
    ~UpdateWatch() override { osg::FieldContainerFactory::the().removeListener(*this); }
    UpdateWatch(const UpdateWatch &) = delete;
    UpdateWatch &operator=(const UpdateWatch &) = delete;

    void containerChanged(osg::FieldContainer &container, osg::FieldMask) override
    {
        if (container.getType().isDerivedFrom(osg::Node::getClassType()))
            wereUpdatesOn.push_back(kxScenegraph::isUpdateEnabled());
    }

    std::vector<bool> wereUpdatesOn;
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

    /// What the matrix of this node places, of either kind of transform.
    static osg::Matrix placementOf(const osg::NodePtr &node) { return osg::getCoreMatrix(node->getCore()); }

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

TEST_F(kxCreateGroupedNodesTest, SetsThePartsOfAPlacementInOneEdit)
{
    const osg::NodePtr world = addGroup(root(), "World");
    const osg::NodePtr direct = addGroup(world, "Direct");
    const osg::NodePtr inside = addGroup(addPlaced(world, "Placed", {1.0, 2.0, 3.0}), "Inside");
    std::vector<osg::FieldMask> changes;
    const SceneChangeListener listener([&changes](osg::FieldContainer &container, osg::FieldMask fields) {
        if (&container.getType() == &osg::Transform3D::getClassType())
            changes.push_back(fields);
    });

    EXPECT_TRUE(geometry.prepare({direct, inside}));

    EXPECT_THAT(changes,
                ElementsAre(osg::Transform3D::TranslationFieldMask | osg::Transform3D::RotationAsQuaternionFieldMask |
                            osg::Transform3D::ScaleFieldMask));
}

TEST_F(kxCreateGroupedNodesTest, NamesInEachEditWhatItMayChange)
{
    osg::Matrix shear;
    shear.at(0, 1) = 0.5;
    const osg::NodePtr world = addGroup(root(), "World");
    const osg::NodePtr direct = addGroup(world, "Direct");
    const osg::NodePtr inside = addGroup(addPlaced(world, "Placed", {1.0, 2.0, 3.0}), "Inside");
    const osg::NodePtr skewed = addGroup(addMatrix(world, "Sheared", shear), "Skewed");
    EditWatch watch;

    EXPECT_TRUE(geometry.prepare({direct, inside, skewed}));

    EXPECT_THAT(watch.take(), ElementsAreArray({
                                  "Node Core", "Node Children",                    // the root, and the scene's
                                  "Node Children", "Node Children",                // Direct: the root, and World
                                  "Transform3D all", "Node Core", "Node Children", // a node between enters the root
                                  "Node Children", "Node Children",                // Inside: that node, and Placed
                                  "Transform3D all", "Transform all", "Node Core", "Node Children", // another
                                  "Node Children", "Node Children", // Skewed: that node, and Sheared
                              }));
    geometry.unprepare();
    EXPECT_THAT(watch.take(), ElementsAreArray({
                                  "Node Children", "Node Children", // Skewed: Sheared, and the node between
                                  "Node Children", "Node Children", // Inside: Placed, and the node between
                                  "Node Children", "Node Children", // Direct: World, and the root
                                  "Node all", "Node Children",      // the root is emptied, and leaves the scene's
                              }));
}

TEST_F(kxCreateGroupedNodesTest, NamesInEachEditOfPlatesWhatItMayChange)
{
    const osg::NodePtr plate = addGroup(kxSceneplateUtils::getSceneplateRoot(), "Plate");
    EditWatch watch;

    EXPECT_TRUE(plates.prepare({plate}));

    EXPECT_THAT(watch.take(), ElementsAreArray({
                                  "Node Core", "Node Children",     // the root, and the one of all plates
                                  "Node Children", "Node Children", // Plate: the root, and the one of all plates
                              }));
    plates.unprepare();
    EXPECT_THAT(watch.take(), ElementsAreArray({
                                  "Node Children", "Node Children", // Plate
                                  "Node all", "Node Children",      // the root is emptied, and leaves
                              }));
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

TEST_F(kxCreateGroupedNodesTest, TakesAMillionthAndLessForNoneInBothDirections)
{
    std::vector<kxNodePtr> nodes{addGroup(root(), "Other")};
    for (const double offset : {1e-6, -1e-6, -1.1e-6}) {
        osg::Matrix matrix;
        matrix.at(0, 3) = offset;
        nodes.push_back(addGroup(addMatrix(root(), "", matrix), "N"));
    }

    EXPECT_TRUE(geometry.prepare(nodes));

    EXPECT_EQ(describe(geometry.getRoot()), "(Other N N (N))");
}

TEST_F(kxCreateGroupedNodesTest, ComparesAllElementsOfAPlacement)
{
    std::vector<kxNodePtr> nodes{addGroup(root(), "Other")};
    for (std::size_t i = 0; i < 16; ++i) {
        osg::Matrix matrix;
        matrix.values[i] += 2e-6;
        nodes.push_back(addGroup(addMatrix(root(), "", matrix), "N"));
    }

    EXPECT_TRUE(geometry.prepare(nodes));

    for (std::size_t i = 1; i <= 16; ++i)
        EXPECT_EQ(describe(geometry.getRoot()->getChild(i)), "(N)") << "element " << i - 1;
}

TEST_F(kxCreateGroupedNodesTest, KeepsAMatrixOnlyWhereItsPartsAreOffByMoreThanAMillionth)
{
    std::vector<kxNodePtr> nodes{addGroup(root(), "Other")};
    for (const double shear : {1e-6, 4e-6}) { // of which the parts miss a half
        osg::Matrix matrix;
        matrix.at(0, 3) = 1.0;
        matrix.at(0, 1) = shear;
        nodes.push_back(addGroup(addMatrix(root(), "", matrix), "N"));
    }

    EXPECT_TRUE(geometry.prepare(nodes));

    EXPECT_TRUE(osg::Transform3DPtr::dcast(geometry.getRoot()->getChild(1)->getCore()));
    EXPECT_FALSE(osg::Transform3DPtr::dcast(geometry.getRoot()->getChild(2)->getCore()));
    EXPECT_EQ(placementOf(geometry.getRoot()->getChild(2)).at(0, 1), 4e-6);
}

TEST_F(kxCreateGroupedNodesTest, InvertsATinyAncestorUntilItsDeterminantVanishes)
{
    for (const auto &[scale, expected] : {std::pair(1e-9, 1.0), std::pair(1e-11, 1e-11)}) {
        const osg::NodePtr tiny = addMatrix(root(), "Tiny", osg::composeMatrix({}, {}, {scale, scale, scale}));
        const osg::NodePtr other = addGroup(tiny, "Other");
        const osg::NodePtr inside = addGroup(addPlaced(tiny, "Placed", {1.0, 0.0, 0.0}), "Inside");
        kxCreateGroupedNodes group(Geometry);

        EXPECT_TRUE(group.prepare({other, inside}));

        EXPECT_NEAR(placementOf(group.getRoot()->getChild(1)).at(0, 0), expected, 1e-15);
    }
}

TEST_F(kxCreateGroupedNodesTest, TakesASingularAncestorForNone)
{
    osg::Matrix flat;
    flat.at(2, 2) = 0.0;
    const osg::NodePtr world = addMatrix(root(), "Flat", flat);
    const osg::NodePtr other = addGroup(world, "Other");
    const osg::NodePtr inside = addGroup(addPlaced(world, "Placed", {1.0, 0.0, 0.0}), "Inside");

    EXPECT_TRUE(geometry.prepare({other, inside}));

    EXPECT_EQ(geometry.getRoot()->getChild(0), other) << "its own children need no placement all the same";
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

TEST_F(kxCreateGroupedNodesTest, MovesANodeAndWhatLiesBelowItOneAfterTheOther)
{
    const osg::NodePtr parent = addGroup(root(), "P");
    const osg::NodePtr upper = addPlaced(parent, "Upper", {1.0, 2.0, 3.0});
    const osg::NodePtr lower = addGroup(upper, "Lower");
    addGroup(upper, "Last");

    for (const bool isUpperFirst : {true, false}) {
        kxCreateGroupedNodes group(Geometry);
        EXPECT_TRUE(group.prepare(isUpperFirst ? std::vector{upper, lower} : std::vector{lower, upper}));

        EXPECT_EQ(describe(group.getRoot()), isUpperFirst ? "(Upper(Last) (Lower))" : "((Lower) Upper(Last))");
        const osg::Matrix placement = placementOf(lower->getParent());
        EXPECT_EQ(placement, osg::composeMatrix({1.0, 2.0, 3.0}, {}, {1.0, 1.0, 1.0}));
        group.unprepare();
        EXPECT_EQ(describe(parent), "P(Upper(Lower Last))");
    }
}

TEST_F(kxCreateGroupedNodesTest, MovesANodeThatIsListedTwiceToItsLaterPlace)
{
    const osg::NodePtr parent = addGroup(root(), "P");
    const osg::NodePtr a = addGroup(parent, "A");
    const osg::NodePtr b = addGroup(parent, "B");

    EXPECT_TRUE(geometry.prepare({a, b, a}));

    EXPECT_EQ(describe(geometry.getRoot()), "(B A)");
    geometry.unprepare();
    EXPECT_EQ(describe(parent), "P(A B)");
}

TEST_F(kxCreateGroupedNodesTest, GathersGeometryThatHangsNowhereAndLetsItGo)
{
    const osg::NodePtr parent = addPlaced(root(), "P", {5.0, 0.0, 0.0});
    const osg::NodePtr a = addGroup(parent, "A");
    const osg::FCRef<osg::Node> alone(addGroup(nullptr, "Alone"));

    EXPECT_TRUE(geometry.prepare({alone.get(), a}));

    EXPECT_EQ(describe(geometry.getRoot()), "(Alone (A))");
    EXPECT_EQ(placementOf(a->getParent()).at(0, 3), 5.0) << "no ancestor is common, so that the world is";
    geometry.unprepare();
    EXPECT_EQ(describe(parent), "P(A)");
    EXPECT_FALSE(alone->getParent());
}

TEST_F(kxCreateGroupedNodesTest, MovesWhileUpdatesAreOffAndUpdatesOnceAtTheEnd)
{
    const osg::NodePtr a = addGroup(addPlaced(root(), "P", {1.0, 0.0, 0.0}), "A");
    const osg::NodePtr b = addGroup(root(), "B");
    QSignalSpy updates(&kxScenegraph::notifier(), &kxScenegraphNotifier::updateRequested);
    const UpdateWatch watch;

    ASSERT_TRUE(geometry.prepare({a, b}));
    EXPECT_EQ(updates.count(), 0);
    geometry.unprepare();

    EXPECT_EQ(updates.count(), 1) << "at once";
    EXPECT_TRUE(kxScenegraph::isUpdateEnabled());
    EXPECT_THAT(watch.wereUpdatesOn, testing::AllOf(testing::Not(testing::IsEmpty()), testing::Each(false)));
    geometry.unprepare();
    EXPECT_EQ(updates.count(), 1) << "there is nothing to undo";
}

TEST_F(kxCreateGroupedNodesTest, TakesEverythingOffTheRootThatSomebodyHolds)
{
    const osg::NodePtr a = addGroup(addPlaced(root(), "P", {1.0, 0.0, 0.0}), "A");
    const osg::NodePtr b = addGroup(root(), "B");
    ASSERT_TRUE(geometry.prepare({a, b}));
    const osg::FCRef<osg::Node> made(geometry.getRoot());

    geometry.unprepare();

    EXPECT_EQ(made->getNChildren(), 0U);
    EXPECT_FALSE(made->getParent());
    EXPECT_EQ(made->getRefCount(), 1);
}

TEST_F(kxCreateGroupedNodesTest, SwitchesUpdatesOnThatWereOffBefore)
{
    const osg::NodePtr a = addGroup(root(), "A");
    kxScenegraph::enableUpdate(false);

    ASSERT_TRUE(geometry.prepare({a}));

    EXPECT_TRUE(kxScenegraph::isUpdateEnabled());
}

TEST_F(kxCreateGroupedNodesTest, GathersAsGeometryForAllOtherCategories)
{
    const osg::NodePtr a = addGroup(root(), "A");
    for (const kxAssetCategoryType category : {Undefined, Material, Environment}) {
        kxCreateGroupedNodes group(category);
        EXPECT_TRUE(group.prepare({a}));
        EXPECT_EQ(group.getRoot()->getParent(), root());
        EXPECT_TRUE(osg::Transform3DPtr::dcast(group.getRoot()->getCore()));
    }
    EXPECT_EQ(a->getParent(), root());
    EXPECT_EQ(service.changes, 0);
}

TEST_F(kxCreateGroupedNodesTest, HandsItsMovesOverByAssignment)
{
    const osg::NodePtr parent = addGroup(root(), "P");
    const osg::NodePtr a = addGroup(parent, "A");
    ASSERT_TRUE(geometry.prepare({a}));
    kxCreateGroupedNodes other(Sceneplate);

    other = geometry;

    EXPECT_EQ(other.getRoot(), geometry.getRoot());
    other.unprepare();
    EXPECT_EQ(describe(parent), "P(A)");
    EXPECT_EQ(service.changes, 0) << "it is of geometry now";
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

TEST_F(kxCreateGroupedNodesTest, MakesTheRootOfPlatesTheLastOneAndPutsThemBackWhenItGoes)
{
    const osg::NodePtr plateRoot = kxSceneplateUtils::getSceneplateRoot();
    const osg::NodePtr a = addGroup(plateRoot, "A");
    addGroup(plateRoot, "B");
    const osg::NodePtr c = addGroup(plateRoot, "C");
    {
        kxCreateGroupedNodes group(Sceneplate);
        ASSERT_TRUE(group.prepare({a, c}));
        EXPECT_EQ(describe(plateRoot), "Sceneplates(B (A C))");
    }
    EXPECT_EQ(describe(plateRoot), "Sceneplates(A B C)");
    EXPECT_EQ(service.changes, 1);
    EXPECT_EQ(service.platesWhenTold, 3U) << "told when all is back and the root is gone";
}

TEST_F(kxCreateGroupedNodesTest, TellsTheHostAlsoWhenItGoesWithoutHavingDoneAnything)
{
    {
        const kxCreateGroupedNodes group(Sceneplate);
    }
    EXPECT_EQ(service.changes, 1);
}

TEST_F(kxCreateGroupedNodesTest, PutsPlatesBackWithoutAServiceToTell)
{
    const osg::NodePtr plateRoot = kxSceneplateUtils::getSceneplateRoot();
    const osg::NodePtr a = addGroup(plateRoot, "A");
    kxKernelServiceFactory::the().setService<kxSceneplateService>(nullptr);
    ASSERT_TRUE(plates.prepare({a}));
    kxtest::CapturedOutput complaint(kxtest::CapturedOutput::StandardError);

    plates.unprepare();

    EXPECT_EQ(complaint.text(), "kxKernelServiceFactory: service 'kxSceneplateService' is NULL!\n");
    EXPECT_EQ(describe(plateRoot), "Sceneplates(A)");
}

TEST_F(kxCreateGroupedNodesTest, RefusesPlatesWithoutAScene)
{
    const osg::FCRef<osg::Node> parent(addGroup(nullptr, "P"));
    const osg::NodePtr a = addGroup(parent.get(), "A");
    kxScenegraph::closeDocument();

    EXPECT_FALSE(plates.prepare({a}));

    EXPECT_FALSE(plates.getRoot());
    EXPECT_EQ(describe(parent.get()), "P(A)");
    EXPECT_TRUE(kxScenegraph::isUpdateEnabled()) << "that is of geometry only";
}

TEST_F(kxCreateGroupedNodesTest, LeavesUpdatesToTheServiceOfPlates)
{
    const osg::NodePtr plate = addGroup(kxSceneplateUtils::getSceneplateRoot(), "Plate");
    kxScenegraph::enableUpdate(false);
    QCoreApplication::processEvents();
    QSignalSpy updates(&kxScenegraph::notifier(), &kxScenegraphNotifier::updateRequested);

    EXPECT_TRUE(plates.prepare({plate}));
    plates.unprepare();

    EXPECT_FALSE(kxScenegraph::isUpdateEnabled()) << "as it was";
    kxScenegraph::enableUpdate(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(updates.count(), 0);
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
        counts.reserve(nodes.size());
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
