// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxScenegraph.h"

#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/CameraCore.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Switch.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/Transform3D.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"
#include "SceneGraph/UberMaterial.h"
#include "Support/SceneTest.h"

#include <QCoreApplication>
#include <QSignalSpy>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class kxScenegraphTest : public kxtest::SceneTest
{
protected:
    ~kxScenegraphTest() override
    {
        kxScenegraph::enableUpdate(true);
        QCoreApplication::processEvents();
    }
};

TEST_F(kxScenegraphTest, MakesAValidFreshDocument)
{
    const osg::NodePtr root = kxScenegraph::getRoot();

    ASSERT_TRUE(root);
    EXPECT_FALSE(root->getParent());
    EXPECT_EQ(root->getNChildren(), 3U);
    EXPECT_EQ(kxScenegraph::getMaterialPoolNode()->getParent(), root);
    EXPECT_TRUE(kxScenegraph::getMaterialPool());
    EXPECT_EQ(kxScenegraph::getCameraNode()->getParent(), root);
    EXPECT_TRUE(osg::CameraCorePtr::dcast(kxScenegraph::getCameraNode()->getCore())->getCamera());
    const osg::NodePtr environments = kxScenegraph::environmentGeometrySwitch();
    ASSERT_TRUE(environments);
    EXPECT_EQ(environments->getParent(), root);
    EXPECT_TRUE(osg::SwitchPtr::dcast(environments->getCore()));
    EXPECT_EQ(environments->getChild(0), kxScenegraph::getDefaultEnvironmentNode());
    EXPECT_FALSE(kxController::isModified());
}

TEST_F(kxScenegraphTest, HasADefaultEnvironmentFromTheStart)
{
    const osg::UEnvironmentSwitchMaterialPtr choices = kxDefaultEnvironment::getSwitch();

    ASSERT_TRUE(choices);
    EXPECT_EQ(kxDefaultEnvironment::getDefault(), choices);
    EXPECT_TRUE(osg::USkyEnvironmentMaterialPtr::dcast(choices->getCurrentMaterial()));
    EXPECT_THAT(kxMaterials::getMaterialPoolMaterialIds(),
                ElementsAre(choices.getFieldContainerId(), choices->getCurrentMaterial().getFieldContainerId()));
}

TEST_F(kxScenegraphTest, LeavesNothingOfADocumentThatIsReplaced)
{
    const std::uint32_t oldRoot = kxScenegraph::getRoot().getFieldContainerId();
    const std::uint32_t oldSwitch = kxDefaultEnvironment::getSwitch().getFieldContainerId();
    kxController::setModified(true);
    kxSelectionManager::selectNodes({kxScenegraph::getCameraNode()});
    QSignalSpy changes(&kxScenegraph::notifier(), &kxScenegraphNotifier::documentChanged);

    kxScenegraph::newDocument();

    EXPECT_FALSE(osg::FieldContainerFactory::the().isAlive(oldRoot));
    EXPECT_FALSE(osg::FieldContainerFactory::the().isAlive(oldSwitch));
    EXPECT_NE(kxScenegraph::getRoot().getFieldContainerId(), oldRoot);
    EXPECT_FALSE(kxController::isModified());
    EXPECT_THAT(kxSelectionManager::getSelectedNodes(), IsEmpty());
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(kxScenegraphTest, IsNullThroughoutWithoutADocument)
{
    kxScenegraph::closeDocument();
    kxScenegraph::closeDocument();
    const auto material = newMaterial();

    EXPECT_FALSE(kxScenegraph::getRoot());
    EXPECT_FALSE(kxScenegraph::getMaterialPoolNode());
    EXPECT_FALSE(kxScenegraph::getMaterialPool());
    EXPECT_FALSE(kxScenegraph::getDefaultEnvironmentNode());
    EXPECT_FALSE(kxScenegraph::getCameraNode());
    EXPECT_FALSE(kxScenegraph::environmentGeometrySwitch());
    EXPECT_FALSE(kxDefaultEnvironment::getDefault());
    EXPECT_FALSE(kxDefaultEnvironment::getSwitch());
    EXPECT_FALSE(kxScenegraph::addToMaterialPool(material));
    EXPECT_THAT(kxMaterials::getMaterialPoolMaterialIds(), IsEmpty());
    EXPECT_THAT(kxMaterials::getAllAssetMaterials(), IsEmpty());
}

TEST_F(kxScenegraphTest, FindsAssetNodesDepthFirst)
{
    const osg::NodePtr a = addNode(osg::Group::create());
    const osg::NodePtr inA = addNodeBelow(a, osg::Group::create());
    const osg::NodePtr deep = addNodeBelow(inA, osg::Group::create());
    const osg::NodePtr b = addNode(osg::Group::create());
    for (const osg::NodePtr &node : {b, deep, a})
        setUuid(node, node == deep ? "one" : "other");

    EXPECT_THAT(kxScenegraph::getAssetNodes(kxScenegraph::getRoot()), ElementsAre(a, deep, b));
    EXPECT_THAT(kxScenegraph::getAssetNodes(a), ElementsAre(a, deep)) << "the root itself counts";
    EXPECT_THAT(kxScenegraph::getAssetNodes(a, "one", -1), ElementsAre(deep));
    EXPECT_THAT(kxScenegraph::getAssetNodes(a, "one", 1), IsEmpty()) << "two levels down";
    EXPECT_THAT(kxScenegraph::getAssetNodes(a, "one", 2), ElementsAre(deep));
    EXPECT_THAT(kxScenegraph::getAssetNodes(nullptr), IsEmpty());
}

TEST_F(kxScenegraphTest, TakesAssetAttachmentsOfOneUuidOrAll)
{
    const osg::NodePtr a = addNode(osg::Group::create());
    const osg::NodePtr inA = addNodeBelow(a, osg::Group::create());
    setUuid(a, "one");
    setUuid(inA, "other");

    kxScenegraph::removeAssetAttachments({a, nullptr}, "one", false);
    EXPECT_THAT(kxScenegraph::getAssetNodes(a), ElementsAre(inA));
    kxScenegraph::removeAssetAttachments({a}, "", false);
    EXPECT_THAT(kxScenegraph::getAssetNodes(a), IsEmpty());

    setUuid(a, "one");
    setUuid(inA, "other");
    kxScenegraph::removeAssetReference({a, nullptr});
    EXPECT_THAT(kxScenegraph::getAssetNodes(a), ElementsAre(inA)) << "not what lies below";
}

TEST_F(kxScenegraphTest, FindsTheDeepestProperAncestorOfAll)
{
    const osg::NodePtr a = addNode(osg::Group::create());
    const osg::NodePtr b = addNodeBelow(a, osg::Group::create());
    const osg::NodePtr c = addNodeBelow(b, osg::Group::create());
    const osg::NodePtr d = addNodeBelow(a, osg::Group::create());

    EXPECT_EQ(kxScenegraph::findFirstEqualParent({c, d}), a);
    EXPECT_EQ(kxScenegraph::findFirstEqualParent({c, b}), a) << "b is not its own ancestor";
    EXPECT_EQ(kxScenegraph::findFirstEqualParent({c, nullptr}), b);
    EXPECT_EQ(kxScenegraph::findFirstEqualParent({c, c}), b);
    EXPECT_FALSE(kxScenegraph::findFirstEqualParent({c, kxScenegraph::getRoot()}));
    EXPECT_FALSE(kxScenegraph::findFirstEqualParent({}));
}

TEST_F(kxScenegraphTest, MultipliesPlacementsDownToTheNode)
{
    const auto core = osg::Transform3D::create();
    const osg::NodePtr placed = addNode(core);
    {
        const osg::CPEditor edit(core, osg::Transform3D::TranslationFieldMask);
        core->setTranslation({1.0, 2.0, 3.0});
    }
    const osg::NodePtr below = addNodeBelow(placed, osg::Group::create());

    EXPECT_EQ(kxScenegraph::getToWorld(below), core->getMatrix());
    EXPECT_EQ(kxScenegraph::getToWorld(placed), core->getMatrix());
    EXPECT_EQ(kxScenegraph::getToWorld(nullptr), osg::Matrix());
}

TEST_F(kxScenegraphTest, ReadsARemovedPartAsNull)
{
    remove(kxScenegraph::getCameraNode());
    remove(kxScenegraph::getDefaultEnvironmentNode());

    EXPECT_FALSE(kxScenegraph::getCameraNode());
    EXPECT_FALSE(kxDefaultEnvironment::getDefault());
}

TEST_F(kxScenegraphTest, HoldsTheMaterialsOfItsPool)
{
    auto material = newMaterial("Oak");
    const std::uint32_t id = material->getFieldContainerId();

    EXPECT_TRUE(kxScenegraph::addToMaterialPool(material));
    EXPECT_FALSE(kxScenegraph::addToMaterialPool(material));
    EXPECT_FALSE(kxScenegraph::addToMaterialPool(nullptr));
    material.reset();

    EXPECT_TRUE(osg::FieldContainerFactory::the().isAlive(id));
    EXPECT_EQ(kxMaterials::getMaterialPoolMaterialIds().count(id), 1U);
}

TEST_F(kxScenegraphTest, ReleasesAMaterialThatLeavesThePool)
{
    auto material = newMaterial();
    const std::uint32_t id = material->getFieldContainerId();
    kxScenegraph::addToMaterialPool(material);

    EXPECT_TRUE(kxScenegraph::removeFromMaterialPool(material));
    EXPECT_FALSE(kxScenegraph::removeFromMaterialPool(material));
    EXPECT_FALSE(kxScenegraph::removeFromMaterialPool(nullptr));
    material.reset();

    EXPECT_FALSE(osg::FieldContainerFactory::the().isAlive(id));
    EXPECT_EQ(kxMaterials::getMaterialPoolMaterialIds().count(id), 0U);
}

TEST_F(kxScenegraphTest, KnowsWhatItsPoolHoldsAfterRemovalsInTheMiddle)
{
    const auto a = newMaterial();
    const auto b = newMaterial();
    const auto c = newMaterial();
    for (const auto &material : {a, b, c})
        kxScenegraph::addToMaterialPool(material);

    EXPECT_TRUE(kxScenegraph::removeFromMaterialPool(b));

    EXPECT_FALSE(kxScenegraph::addToMaterialPool(a));
    EXPECT_FALSE(kxScenegraph::addToMaterialPool(c));
    EXPECT_TRUE(kxScenegraph::addToMaterialPool(b));
    EXPECT_TRUE(kxScenegraph::removeFromMaterialPool(a));
    EXPECT_TRUE(kxScenegraph::removeFromMaterialPool(c));
}

TEST_F(kxScenegraphTest, UpdatesItsViewsAtOnceOrLater)
{
    QSignalSpy updates(&kxScenegraph::notifier(), &kxScenegraphNotifier::updateRequested);

    kxScenegraph::update(true);
    EXPECT_EQ(updates.count(), 1);
    kxScenegraph::update(false);
    kxScenegraph::update(false);
    EXPECT_EQ(updates.count(), 1);
    QCoreApplication::processEvents();

    EXPECT_EQ(updates.count(), 2);
}

TEST_F(kxScenegraphTest, HoldsUpdatesBackWhileTheyAreOff)
{
    QSignalSpy updates(&kxScenegraph::notifier(), &kxScenegraphNotifier::updateRequested);
    kxScenegraph::enableUpdate(false);
    kxScenegraph::enableUpdate(false);
    EXPECT_FALSE(kxScenegraph::isUpdateEnabled());

    kxScenegraph::update(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(updates.count(), 0);
    kxScenegraph::enableUpdate(true);
    QCoreApplication::processEvents();

    EXPECT_TRUE(kxScenegraph::isUpdateEnabled());
    EXPECT_EQ(updates.count(), 1);
}

TEST_F(kxScenegraphTest, HasAnIconForEachKindOfMaterial)
{
    for (const osg::FieldContainerType *type : osg::FieldContainerFactory::the().types()) {
        const bool isConcreteMaterial = !type->isAbstract() && type->isDerivedFrom(osg::Material::getClassType());
        EXPECT_EQ(kxScenegraph::getMaterialTypeIcon(type, 0).isNull(), !isConcreteMaterial) << type->getCName();
    }
    EXPECT_TRUE(kxScenegraph::getMaterialTypeIcon(nullptr, 0).isNull());
}

TEST_F(kxScenegraphTest, TellsTheKindsOfMaterialsApartByTheirIcons)
{
    const QPixmap switchIcon = kxScenegraph::getMaterialTypeIcon(&osg::SwitchMaterial::getClassType(), 0);
    const QPixmap multiIcon = kxScenegraph::getMaterialTypeIcon(&osg::MultiMaterial::getClassType(), 0);

    EXPECT_EQ(switchIcon.size(), QSize(32, 32));
    EXPECT_NE(switchIcon.toImage(), multiIcon.toImage());
    EXPECT_EQ(kxScenegraph::getMaterialTypeIcon(&osg::SwitchMaterial::getClassType(), 64).size(), QSize(64, 64));
}

using kxSelectionManagerTest = kxtest::SceneTest;

TEST_F(kxSelectionManagerTest, KeepsTheOrderOfSelection)
{
    const osg::NodePtr a = addNode(osg::Group::create(), "a");
    const osg::NodePtr b = addNode(osg::Group::create(), "b");
    const osg::NodePtr c = addNode(osg::Group::create(), "c");

    kxSelectionManager::selectNodes({c, a, nullptr});
    kxSelectionManager::selectNodes({a, b}, true);

    EXPECT_THAT(kxSelectionManager::getSelectedNodes(), ElementsAre(c, a, b));
    EXPECT_TRUE(kxSelectionManager::isSelected(a));
    EXPECT_FALSE(kxSelectionManager::isSelected(nullptr));
}

TEST_F(kxSelectionManagerTest, TakesNodesOut)
{
    const osg::NodePtr a = addNode(osg::Group::create());
    const osg::NodePtr b = addNode(osg::Group::create());
    kxSelectionManager::selectNodes({a, b});

    kxSelectionManager::selectNodes({a}, false);

    EXPECT_THAT(kxSelectionManager::getSelectedNodes(), ElementsAre(b));
    EXPECT_FALSE(kxSelectionManager::isSelected(a));
}

TEST_F(kxSelectionManagerTest, ForgetsDestroyedNodes)
{
    const osg::NodePtr a = addNode(osg::Group::create());
    const osg::NodePtr b = addNode(osg::Group::create());
    kxSelectionManager::selectNodes({a, b});

    remove(a);

    EXPECT_THAT(kxSelectionManager::getSelectedNodes(), ElementsAre(b));
}

TEST_F(kxSelectionManagerTest, TellsOfRealChangesOnly)
{
    const osg::NodePtr a = addNode(osg::Group::create());
    QSignalSpy changes(&kxScenegraph::notifier(), &kxScenegraphNotifier::selectionChanged);

    kxSelectionManager::selectNodes({a});
    kxSelectionManager::selectNodes({a});
    kxSelectionManager::clear();
    kxSelectionManager::clear();

    EXPECT_EQ(changes.count(), 2);
}

using kxDefaultEnvironmentTest = kxtest::SceneTest;

osg::EnvironmentPtr defaultEnvironmentCore()
{
    return osg::EnvironmentPtr::dcast(kxScenegraph::getDefaultEnvironmentNode()->getCore());
}

void setDefaultEnvironment(const osg::MaterialPtr &material)
{
    const osg::CPEditor edit(defaultEnvironmentCore(), osg::Environment::MaterialFieldMask);
    defaultEnvironmentCore()->setMaterial(material);
}

TEST_F(kxDefaultEnvironmentTest, IsTheSingleEnvironmentWhereThereIsNoSwitch)
{
    const osg::USkyEnvironmentMaterialPtr sky = osg::USkyEnvironmentMaterial::create();

    setDefaultEnvironment(sky);

    EXPECT_EQ(kxDefaultEnvironment::getDefault(), sky);
    EXPECT_FALSE(kxDefaultEnvironment::getSwitch());
}

TEST_F(kxDefaultEnvironmentTest, IsNullWhereTheSceneHasNone)
{
    setDefaultEnvironment(nullptr);
    EXPECT_FALSE(kxDefaultEnvironment::getDefault());

    setDefaultEnvironment(newMaterial()); // no environment material
    EXPECT_FALSE(kxDefaultEnvironment::getDefault());
}

TEST_F(kxDefaultEnvironmentTest, IsAdoptedByABRDFMaterialThatIsGivenNone)
{
    const osg::FCRef<osg::UBRDFMaterial> material(osg::UBRDFMaterial::create());
    {
        const osg::CPEditor edit(material.get(), osg::UBRDFMaterial::EnvironmentFieldMask);
        material->setEnvironment(nullptr);
    }
    EXPECT_EQ(material->getEnvironment(), kxDefaultEnvironment::getSwitch());

    kxScenegraph::closeDocument();
    const osg::CPEditor edit(material.get(), osg::UBRDFMaterial::EnvironmentFieldMask);
    material->setEnvironment(nullptr);
    EXPECT_FALSE(material->getEnvironment());
}

} // namespace
