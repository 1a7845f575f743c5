// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxSaveEnvironment.h"

#include "EditWatch.h"
#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeKeys.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "NodeFixture.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/Light.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/OverrideMaterialAttachment.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "SceneGraph/UberMaterial.h"
#include "Support/CapturedOutput.h"

#include <QCoreApplication>
#include <QSignalSpy>

#include <gmock/gmock.h>

namespace {

constexpr const char *Key = "EnvironmentAssetMaterial";
constexpr const char *Value = "IsDefaultEnvironmentSwitchChild";

class kxSaveEnvironmentTest : public NodeFixture
{
protected:
    static osg::UEnvironmentSwitchMaterialPtr defaultSwitch() { return kxDefaultEnvironment::getSwitch(); }
    /// An environment node whose core has this material.
    static osg::NodePtr makeEnvironment(const std::string &name, const osg::MaterialPtr &material)
    {
        const auto core = osg::Environment::create();
        {
            const osg::CPEditor edit(core, osg::Environment::MaterialFieldMask);
            core->setMaterial(material);
        }
        return addNode(nullptr, core, name);
    }
    /// Choices 1 and 2 of the default switch, with their nodes.
    void addChoices()
    {
        dawnNode = makeEnvironment("Dawn", defaultSwitch());
        duskNode = makeEnvironment("Dusk", defaultSwitch());
        ASSERT_TRUE(kxController::addToDefaultEnvironment(dawn.get(), dawnNode, false));
        ASSERT_TRUE(kxController::addToDefaultEnvironment(dusk.get(), duskNode, false));
    }
    static osg::MaterialPtr materialOf(const osg::NodePtr &node)
    {
        return osg::EnvironmentPtr::dcast(node->getCore())->getMaterial();
    }
    static osg::MaterialPtr paintOf(const osg::NodePtr &square)
    {
        return osg::GeometryPtr::dcast(square->getCore())->getMaterial();
    }
    static Owned makeChooser(const std::string &name, const std::vector<Owned> &choices, int current = 0)
    {
        const auto chooser = osg::UEnvironmentSwitchMaterial::create();
        {
            const osg::CPEditor edit(chooser, osg::AllFieldMask);
            for (const Owned &choice : choices)
                chooser->addMaterial(choice.get());
            chooser->setChoice(current);
        }
        return named(chooser, name);
    }
    /// Before the default switch, which goes by the order of creation.
    static Owned makeEarlierChooser(const std::string &name, const Owned &choice)
    {
        Owned chooser = makeChooser(name, {choice});
        kxScenegraph::newDocument();
        return chooser;
    }
    /// A light that a light-link set of the scene names.
    static void addLinkedLight(const osg::NodePtr &node)
    {
        const osg::NodePtr light = addNode(node, osg::Light::create(), "Light");
        const auto set = osg::LightLinkSet::create();
        {
            const osg::CPEditor edit(set, osg::LightLinkSet::LightsFieldMask);
            set->editLights() = std::vector{kxNodeKeys::make(light)};
        }
        const osg::MaterialPoolPtr pool = kxScenegraph::getMaterialPool();
        const osg::CPEditor edit(pool, osg::MaterialPool::LightLinkSetsFieldMask);
        pool->editLightLinkSets().push_back(set);
    }
    static void setEnvironment(const osg::UBRDFMaterialPtr &surface, const osg::MaterialPtr &environment)
    {
        const osg::CPEditor edit(surface, osg::UBRDFMaterial::EnvironmentFieldMask);
        surface->setEnvironment(environment);
    }

    Owned dawn = makeSky("dawn");
    Owned dusk = makeSky("dusk");
    osg::NodePtr dawnNode;
    osg::NodePtr duskNode;
    kxSaveEnvironment preparation;
};

} // namespace

TEST_F(kxSaveEnvironmentTest, PutsTheChoiceOfItsPlaceForTheDefaultSwitch)
{
    addChoices();
    kxtest::CapturedOutput output;

    EXPECT_TRUE(preparation.prepare(duskNode));

    EXPECT_EQ(materialOf(duskNode), dusk.get()) << "the third choice, though the first is current";
    EXPECT_EQ(preparation.getAssignedEnvironmentMaterial(), dusk.get());
    EXPECT_TRUE(kxMaterials::hasValuePair(dusk.get(), Key, Value));
    EXPECT_EQ(materialOf(dawnNode), defaultSwitch());
    preparation.unprepare();
    EXPECT_EQ(materialOf(duskNode), defaultSwitch());
    EXPECT_FALSE(preparation.getAssignedEnvironmentMaterial());
    EXPECT_TRUE(kxMaterials::hasValuePair(dusk.get(), Key, Value)) << "the mark stays";
    preparation.unprepare();
    EXPECT_EQ(output.text(), "[prepareEnvironmentSwitches] # replacements (switch by choice) = 1\n"
                             "[prepareEnvironmentSwitches] replace mat on Dusk by dusk\n"
                             "restore assignment on Dusk ---> Default Environment\n");
}

TEST_F(kxSaveEnvironmentTest, KnowsACloneOfAPlace)
{
    addChoices();
    const osg::NodePtr clone = addNode(kxScenegraph::getRoot(), duskNode->getCore(), "Clone");

    EXPECT_TRUE(preparation.prepare(clone));

    EXPECT_EQ(preparation.getAssignedEnvironmentMaterial(), dusk.get());
}

TEST_F(kxSaveEnvironmentTest, PutsTheCurrentChoiceForAnotherSwitch)
{
    const osg::FCRef<osg::UEnvironmentSwitchMaterial> other(osg::UEnvironmentSwitchMaterial::create());
    {
        const osg::CPEditor edit(other.get(), osg::AllFieldMask);
        other->addMaterial(dawn.get());
        other->addMaterial(dusk.get());
        other->setChoice(1);
    }
    const osg::FCRef<osg::Node> node(makeEnvironment("Studio", other.get()));

    EXPECT_TRUE(preparation.prepare(node));

    EXPECT_EQ(materialOf(node), dusk.get());
    EXPECT_FALSE(kxMaterials::hasValuePair(dusk.get(), Key, Value)) << "it is no choice of the default switch";
}

TEST_F(kxSaveEnvironmentTest, PutsTheCurrentChoiceForAnotherSwitchAlsoAtAPlace)
{
    const Owned other = makeChooser("Other", {dawn, dusk}, 0);
    const osg::NodePtr node = makeEnvironment("Second", other.get());
    ASSERT_TRUE(kxController::addToDefaultEnvironment(dusk.get(), node, false));

    EXPECT_TRUE(preparation.prepare(node));

    EXPECT_EQ(materialOf(node), dawn.get()) << "though it is the second place";
}

TEST_F(kxSaveEnvironmentTest, UsesTheCurrentChoiceOutsideTheSwitchableOnes)
{
    const osg::FCRef<osg::Node> node(makeEnvironment("Elsewhere", defaultSwitch()));

    EXPECT_TRUE(preparation.prepare(node));

    EXPECT_EQ(preparation.getAssignedEnvironmentMaterial(), defaultSwitch()->getCurrentMaterial());
    EXPECT_EQ(osg::getName(preparation.getAssignedEnvironmentMaterial()), "Sky");
    EXPECT_TRUE(kxMaterials::hasValuePair(preparation.getAssignedEnvironmentMaterial(), Key, Value));
}

TEST_F(kxSaveEnvironmentTest, UsesTheCurrentChoiceWithoutPlaces)
{
    addChoices();
    const osg::FCRef<osg::Node> node(duskNode);
    const osg::NodePtr root = kxScenegraph::getRoot();
    {
        const osg::CPEditor edit(root, osg::Node::ChildrenFieldMask);
        root->addChild(kxScenegraph::getDefaultEnvironmentNode());
        root->subChild(kxScenegraph::environmentGeometrySwitch());
    }
    ASSERT_TRUE(defaultSwitch());
    {
        const osg::CPEditor edit(defaultSwitch(), osg::SwitchMaterial::ChoiceFieldMask);
        defaultSwitch()->setChoice(1);
    }

    EXPECT_TRUE(preparation.prepare(node));

    EXPECT_EQ(materialOf(node), dawn.get());
}

TEST_F(kxSaveEnvironmentTest, TakesTheFirstOfSeveralPlaces)
{
    addChoices();
    const Owned noon = makeSky("noon");
    const osg::NodePtr clone = addNode(nullptr, dawnNode->getCore(), "Clone");
    ASSERT_TRUE(kxController::addToDefaultEnvironment(noon.get(), clone, false));

    EXPECT_TRUE(preparation.prepare(clone));

    EXPECT_EQ(preparation.getAssignedEnvironmentMaterial(), dawn.get());
}

TEST_F(kxSaveEnvironmentTest, PrefersTheChoiceOfItsPlaceToWhatItFoundBefore)
{
    const Owned earlier = makeEarlierChooser("Earlier", dawn);
    const osg::NodePtr node = makeEnvironment("Dusk", defaultSwitch());
    ASSERT_TRUE(kxController::addToDefaultEnvironment(dusk.get(), node, false));
    const osg::NodePtr lamp = addSquare(node, "Lamp", earlier.get());

    EXPECT_TRUE(preparation.prepare(node));

    EXPECT_EQ(preparation.getAssignedEnvironmentMaterial(), dusk.get());
    EXPECT_EQ(paintOf(lamp), dawn.get());
}

TEST_F(kxSaveEnvironmentTest, ForgetsWhatItFoundBeforeWhereTheChoiceOfItsPlaceIsNoEnvironment)
{
    const Owned earlier = makeEarlierChooser("Earlier", dawn);
    const Owned chalk = makeSurface("Chalk");
    const osg::NodePtr node = makeEnvironment("Odd", defaultSwitch());
    ASSERT_TRUE(kxController::addToDefaultEnvironment(chalk.get(), node, false));
    const osg::NodePtr lamp = addSquare(node, "Lamp", earlier.get());
    addSquare(node, "Dome", dusk.get());
    kxtest::CapturedOutput output;

    EXPECT_TRUE(preparation.prepare(node));

    EXPECT_EQ(preparation.getAssignedEnvironmentMaterial(), dusk.get()) << "the plain one";
    EXPECT_FALSE(materialOf(node)) << "replaced by nothing";
    EXPECT_EQ(paintOf(lamp), dawn.get());
    preparation.unprepare();
    EXPECT_EQ(materialOf(node), defaultSwitch());
    EXPECT_EQ(paintOf(lamp), earlier.get());
    EXPECT_EQ(output.text(), "[prepareEnvironmentSwitches] # replacements (switch by choice) = 2\n"
                             "[prepareEnvironmentSwitches] replace mat on Lamp by dawn\n"
                             "[prepareEnvironmentSwitches] replace mat on Odd by \n"
                             "restore assignment on Odd ---> Default Environment\n"
                             "restore assignment on Lamp ---> Earlier\n");
}

TEST_F(kxSaveEnvironmentTest, TakesTheFirstOfSeveralSwitches)
{
    const Owned first = makeChooser("First", {dusk});
    const Owned second = makeChooser("Second", {dawn});
    const osg::FCRef<osg::Node> node(makeEnvironment("Studio", second.get()));
    const osg::NodePtr lamp = addSquare(node, "Lamp", first.get());

    EXPECT_TRUE(preparation.prepare(node));

    EXPECT_EQ(preparation.getAssignedEnvironmentMaterial(), dusk.get());
    EXPECT_EQ(materialOf(node), dawn.get());
    EXPECT_EQ(paintOf(lamp), dusk.get());
}

TEST_F(kxSaveEnvironmentTest, KnowsASwitchThatIsOnlyInAnOverrideMaterial)
{
    const osg::FCRef<osg::Node> node(makeEnvironment("Studio", nullptr));
    const osg::NodePtr lamp = addSquare(node, "Lamp");
    kxMaterials::setOverrideMaterial(lamp, defaultSwitch());
    kxtest::CapturedOutput output;

    EXPECT_TRUE(preparation.prepare(node));

    EXPECT_EQ(preparation.getAssignedEnvironmentMaterial(), defaultSwitch()->getCurrentMaterial());
    EXPECT_TRUE(kxMaterials::hasValuePair(defaultSwitch()->getCurrentMaterial(), Key, Value));
    EXPECT_EQ(osg::findAttachment<osg::OverrideMaterialAttachment>(lamp)->getMaterial(), defaultSwitch())
        << "only what is assigned is replaced";
    preparation.unprepare();
    EXPECT_EQ(output.text(), "[prepareEnvironmentSwitches] # replacements (switch by choice) = 1\n");
}

TEST_F(kxSaveEnvironmentTest, KnowsASwitchWithinAComposite)
{
    const Owned chooser = makeChooser("Chooser", {dusk});
    const Owned composite = makeMultiPass("Composite", {chooser});
    const osg::FCRef<osg::Node> node(makeEnvironment("Studio", composite.get()));

    EXPECT_TRUE(preparation.prepare(node));

    EXPECT_EQ(preparation.getAssignedEnvironmentMaterial(), dusk.get());
    EXPECT_EQ(materialOf(node), composite.get());
}

TEST_F(kxSaveEnvironmentTest, LeavesASwitchAloneThatShowsNoEnvironment)
{
    const Owned chalk = makeSurface("Chalk");
    for (const int current : {0, 99}) {
        const Owned chooser = makeChooser("Chooser", {chalk}, current);
        const osg::FCRef<osg::Node> node(makeEnvironment("Studio", chooser.get()));
        addSquare(node, "Dome", dusk.get());
        kxtest::CapturedOutput output;

        EXPECT_TRUE(preparation.prepare(node));

        EXPECT_EQ(preparation.getAssignedEnvironmentMaterial(), dusk.get());
        EXPECT_EQ(materialOf(node), chooser.get());
        EXPECT_EQ(output.text(), "[prepareEnvironmentSwitches] # replacements (switch by choice) = 0\n");
        preparation.unprepare();
    }
}

TEST_F(kxSaveEnvironmentTest, TakesTheFirstOfSeveralPlainMaterials)
{
    const osg::FCRef<osg::Node> node(makeEnvironment("Studio", nullptr));
    addSquare(node, "Late", dusk.get());
    addSquare(node, "Early", dawn.get());

    EXPECT_TRUE(preparation.prepare(node));

    EXPECT_EQ(preparation.getAssignedEnvironmentMaterial(), dawn.get());
}

TEST_F(kxSaveEnvironmentTest, TakesNoPlainMaterialFromAnOverride)
{
    const osg::FCRef<osg::Node> node(makeEnvironment("Studio", nullptr));
    kxMaterials::setOverrideMaterial(node, dawn.get());
    const kxtest::CapturedOutput output;

    EXPECT_FALSE(preparation.prepare(node));

    EXPECT_FALSE(preparation.getAssignedEnvironmentMaterial());
}

TEST_F(kxSaveEnvironmentTest, RestoresInTheOrderOfTheNodes)
{
    const osg::FCRef<osg::Node> node(makeEnvironment("Studio", nullptr));
    const osg::NodePtr early = addSquare(node, "Early", makeChooser("Second", {dawn}).get());
    const osg::NodePtr late = addSquare(nullptr, "Late", paintOf(early));
    {
        const osg::CPEditor edit(node.get(), osg::Node::ChildrenFieldMask);
        node->insertChild(0, late);
    }
    kxtest::CapturedOutput output;

    EXPECT_TRUE(preparation.prepare(node));
    preparation.unprepare();

    EXPECT_EQ(output.text(), "[prepareEnvironmentSwitches] # replacements (switch by choice) = 1\n"
                             "[prepareEnvironmentSwitches] replace mat on Late by dawn\n"
                             "[prepareEnvironmentSwitches] replace mat on Early by dawn\n"
                             "restore assignment on Early ---> Second\n"
                             "restore assignment on Late ---> Second\n");
}

TEST_F(kxSaveEnvironmentTest, RefreshesNoViewForWhatItPutsBack)
{
    addChoices();
    QCoreApplication::processEvents();
    QSignalSpy updates(&kxScenegraph::notifier(), &kxScenegraphNotifier::updateRequested);

    ASSERT_TRUE(preparation.prepare(duskNode));
    QCoreApplication::processEvents();
    preparation.unprepare();
    QCoreApplication::processEvents();

    EXPECT_EQ(updates.count(), 0);
}

TEST_F(kxSaveEnvironmentTest, IsHarmlessWhenIdle)
{
    kxtest::CapturedOutput output;

    preparation.unprepare();

    EXPECT_FALSE(preparation.getAssignedEnvironmentMaterial());
    EXPECT_EQ(output.text(), "");
}

TEST_F(kxSaveEnvironmentTest, ReplacesByNothingWhereTheChoiceIsNoEnvironment)
{
    addChoices();
    const Owned chalk = makeSurface("Chalk");
    const osg::NodePtr node = makeEnvironment("Odd", defaultSwitch());
    ASSERT_TRUE(kxController::addToDefaultEnvironment(chalk.get(), node, false));

    EXPECT_FALSE(preparation.prepare(node)) << "and no other material is there";
    EXPECT_EQ(materialOf(node), defaultSwitch());
}

TEST_F(kxSaveEnvironmentTest, TakesAPlainEnvironmentMaterialAsItIs)
{
    const osg::FCRef<osg::Node> node(makeEnvironment("Plain", dawn.get()));
    kxtest::CapturedOutput output;

    EXPECT_TRUE(preparation.prepare(node));

    EXPECT_EQ(preparation.getAssignedEnvironmentMaterial(), dawn.get());
    EXPECT_EQ(output.text(), "[prepareEnvironmentSwitches] # replacements (switch by choice) = 0\n");
    EXPECT_EQ(describe(node), "Plain") << "no pool where there are no light links";
}

TEST_F(kxSaveEnvironmentTest, RefusesWhatIsNoEnvironment)
{
    const osg::FCRef<osg::Node> empty(makeEnvironment("Empty", nullptr));
    const osg::FCRef<osg::Node> coreless(osg::Node::create());
    kxtest::CapturedOutput output;

    EXPECT_FALSE(preparation.prepare(nullptr));
    EXPECT_FALSE(preparation.prepare(kxScenegraph::getRoot()));
    EXPECT_FALSE(preparation.prepare(coreless));
    EXPECT_FALSE(preparation.prepare(empty));

    EXPECT_EQ(output.text(), "[prepareEnvironmentSwitches] no env material under envNode found\n");
}

TEST_F(kxSaveEnvironmentTest, LightsSurfacesBelowByTheChoiceToo)
{
    addChoices();
    const osg::FCRef<osg::UBRDFMaterial> surface(osg::UBRDFMaterial::create());
    {
        const osg::CPEditor edit(surface.get(), osg::UBRDFMaterial::EnvironmentFieldMask);
        surface->setEnvironment(defaultSwitch());
    }
    addSquare(dawnNode, "Lamp", surface.get());

    EXPECT_TRUE(preparation.prepare(dawnNode));
    EXPECT_EQ(surface->getEnvironment(), dawn.get());
    preparation.unprepare();

    EXPECT_EQ(surface->getEnvironment(), defaultSwitch());
}

TEST_F(kxSaveEnvironmentTest, LightsLayersOfOverridesByTheChoiceAndLeavesOtherSurfaces)
{
    addChoices();
    const osg::FCRef<osg::UBRDFMaterial> layer(osg::UBRDFMaterial::create());
    const osg::FCRef<osg::UberMaterial> over(osg::UberMaterial::create());
    {
        const osg::CPEditor edit(over.get(), osg::UberMaterial::BRDFMaterialsFieldMask);
        over->editBRDFMaterials().push_back(layer.get());
    }
    const osg::FCRef<osg::UBRDFMaterial> other(osg::UBRDFMaterial::create());
    setEnvironment(layer.get(), defaultSwitch());
    setEnvironment(other.get(), dusk.get());
    kxMaterials::setOverrideMaterial(addSquare(dawnNode, "Lamp", other.get()), over.get());

    EXPECT_TRUE(preparation.prepare(dawnNode));

    EXPECT_EQ(layer->getEnvironment(), dawn.get());
    EXPECT_EQ(other->getEnvironment(), dusk.get());
    preparation.unprepare();
    EXPECT_EQ(layer->getEnvironment(), defaultSwitch());
}

TEST_F(kxSaveEnvironmentTest, GathersLightLinkSetsAlsoWhenTheRestFails)
{
    const osg::FCRef<osg::Node> node(makeEnvironment("Empty", nullptr));
    addLinkedLight(node);

    EXPECT_FALSE(preparation.prepare(node));
    ASSERT_EQ(node->getNChildren(), 2U);
    EXPECT_EQ(osg::MaterialPoolPtr::dcast(node->getChild(1)->getCore())->getLightLinkSets().size(), 1U);
    preparation.unprepare();

    EXPECT_EQ(describe(node), "Empty(Light)");
}

TEST_F(kxSaveEnvironmentTest, GathersLightLinkSetsFirstAndTakesThemAwayLast)
{
    addChoices();
    addLinkedLight(duskNode);
    EditWatch watch;
    const auto editsOfNodeAndMaterial = [&] {
        std::vector<std::string> edits;
        for (const std::string &edit : watch.take())
            if (edit == "Node Children" || edit == "Environment Material")
                edits.push_back(edit);
        return edits;
    };

    ASSERT_TRUE(preparation.prepare(duskNode));
    EXPECT_THAT(editsOfNodeAndMaterial(), testing::ElementsAre("Node Children", "Environment Material"));
    preparation.unprepare();

    EXPECT_THAT(editsOfNodeAndMaterial(), testing::ElementsAre("Environment Material", "Node Children"));
}

TEST_F(kxSaveEnvironmentTest, RestoresThroughACopyAndThroughWhatItIsAssignedTo)
{
    addChoices();
    addLinkedLight(duskNode);
    const osg::FCRef<osg::UBRDFMaterial> surface(osg::UBRDFMaterial::create());
    setEnvironment(surface.get(), defaultSwitch());
    addSquare(duskNode, "Lamp", surface.get());
    for (const bool isAssigned : {false, true}) {
        kxSaveEnvironment original;
        ASSERT_TRUE(original.prepare(duskNode));
        kxSaveEnvironment assigned;
        assigned = original;
        kxSaveEnvironment copy = original;
        kxSaveEnvironment &other = isAssigned ? assigned : copy;
        EXPECT_EQ(other.getAssignedEnvironmentMaterial(), dusk.get());

        other.unprepare();

        EXPECT_EQ(materialOf(duskNode), defaultSwitch());
        EXPECT_EQ(surface->getEnvironment(), defaultSwitch());
        EXPECT_EQ(describe(duskNode), "Dusk(Light Lamp)");
    }
}

TEST_F(kxSaveEnvironmentTest, RestoresOnDestructionAndOnlyOnceAmongCopies)
{
    addChoices();
    const osg::FCRef<osg::FieldContainer> before(osg::deepClone(osg::FieldContainerPtr(kxScenegraph::getRoot()), {}));
    {
        kxSaveEnvironment first;
        ASSERT_TRUE(first.prepare(dawnNode));
        kxSaveEnvironment second = first;
        first.unprepare();
        kxNodeUtils::setMaterial(dawnNode, dusk.get(), false, true);
        second.unprepare();
        EXPECT_EQ(materialOf(dawnNode), dusk.get()) << "the second one finds nothing to do";
        kxNodeUtils::setMaterial(dawnNode, defaultSwitch(), false, true);
        ASSERT_TRUE(first.prepare(dawnNode));
        EXPECT_EQ(materialOf(dawnNode), dawn.get());
    }
    EXPECT_EQ(materialOf(dawnNode), defaultSwitch());
    kxMaterials::removeKey(dawn.get(), Key, false);
    EXPECT_EQ(osg::findDifference(before.get(), kxScenegraph::getRoot()), std::nullopt);
}

TEST_F(kxSaveEnvironmentTest, HasNothingInCommonWithCopiesFromBefore)
{
    addChoices();
    kxSaveEnvironment other = preparation;
    ASSERT_TRUE(preparation.prepare(duskNode));
    ASSERT_TRUE(other.prepare(dawnNode));

    preparation.unprepare();

    EXPECT_EQ(materialOf(duskNode), defaultSwitch());
    EXPECT_EQ(materialOf(dawnNode), dawn.get()) << "the other's to restore";
    other.unprepare();
    EXPECT_EQ(materialOf(dawnNode), defaultSwitch());
}

TEST_F(kxSaveEnvironmentTest, IsNotUndoneByAnIdleCopy)
{
    addChoices();
    {
        kxSaveEnvironment idle = preparation;
        ASSERT_TRUE(preparation.prepare(duskNode));
        idle.unprepare();
    }

    EXPECT_EQ(materialOf(duskNode), dusk.get());
}

TEST_F(kxSaveEnvironmentTest, ReplacesByTheCurrentChoiceWhereItsPlaceHasNone)
{
    addChoices();
    const osg::NodePtr third = makeEnvironment("Third", defaultSwitch());
    {
        const osg::CPEditor edit(kxScenegraph::environmentGeometrySwitch(), osg::Node::ChildrenFieldMask);
        kxScenegraph::environmentGeometrySwitch()->addChild(third);
    }
    {
        const osg::CPEditor edit(defaultSwitch(), osg::SwitchMaterial::ChoiceFieldMask);
        defaultSwitch()->setChoice(1);
    }

    EXPECT_TRUE(preparation.prepare(third));
    EXPECT_EQ(materialOf(third), dawn.get());
    preparation.unprepare();

    {
        const osg::CPEditor edit(defaultSwitch(), osg::SwitchMaterial::ChoiceFieldMask);
        defaultSwitch()->setChoice(99);
    }
    EXPECT_FALSE(preparation.prepare(third)) << "the only switch has no choice";
    EXPECT_EQ(materialOf(third), defaultSwitch());
}

TEST_F(kxSaveEnvironmentTest, RestoresTheCoreOfANodeThatWentForItsClones)
{
    addChoices();
    const osg::NodePtr clone = addNode(kxScenegraph::getRoot(), dawnNode->getCore(), "Clone");
    ASSERT_TRUE(preparation.prepare(dawnNode));
    EXPECT_EQ(materialOf(clone), dawn.get());
    {
        const osg::NodePtr places = kxScenegraph::environmentGeometrySwitch();
        const osg::CPEditor edit(places, osg::Node::ChildrenFieldMask);
        places->subChild(dawnNode);
    }

    preparation.unprepare();

    EXPECT_EQ(materialOf(clone), defaultSwitch()) << "it once kept the choice";
}
