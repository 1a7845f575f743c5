// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SceneStore.h"

#include "AssetSession/kxSceneOpener.h"
#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeKeys.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "SceneFixture.h"
#include "SceneGraph/CameraCore.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "SceneGraph/UEnvironmentMaterial.h"

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;

class SceneStoreTest : public SceneFixture
{
protected:
    static std::vector<std::string> environments()
    {
        std::vector<std::string> names;
        for (const osg::MaterialPtr &material : kxDefaultEnvironment::getSwitch()->getMaterials())
            names.push_back(kxMaterials::getName(material));
        return names;
    }
    static std::vector<std::string> pool()
    {
        std::vector<std::string> names;
        for (const osg::MaterialPtr &material : kxScenegraph::getMaterialPool()->getMaterials())
            names.push_back(kxMaterials::getName(material));
        return names;
    }
    static int choice() { return kxDefaultEnvironment::getSwitch()->getChoice(); }
    static osg::UberCameraPtr camera()
    {
        return osg::CameraCorePtr::dcast(kxScenegraph::getCameraNode()->getCore())->getCamera();
    }

    QString file = QString::fromStdString(folder.file("scene ä #1.osb"));
};

TEST_F(SceneStoreTest, BringsEverythingBack)
{
    const osg::NodePtr chair = addChair("Chair");
    actions.assignMaterial(storeMaterial("Red"), {chair});
    actions.loadMaterials({storeMaterial("Blue")});
    actions.loadEnvironment({storeEnvironment("Dawn")});
    addPlate("Logo");
    {
        const osg::CPEditor edit(camera(), osg::UberCamera::FromFieldMask);
        camera()->setFrom({{1, 2, 3}});
    }

    ASSERT_TRUE(actions.saveScene(file));
    EXPECT_FALSE(kxController::isModified());
    actions.newScene();
    ASSERT_TRUE(actions.openScene(file));

    EXPECT_EQ(failures, QStringList());
    EXPECT_THAT(childNames(root()), ElementsAre("Material Pool", "Environments", "Camera", "Chair"));
    EXPECT_EQ(materialNameOf(root()->getChild(3)->getChild(0)), "Red");
    EXPECT_THAT(environments(), ElementsAre("Sky", "Dawn"));
    EXPECT_EQ(choice(), 1);
    EXPECT_THAT(pool(), ElementsAre("Default Environment", "Sky", "Blue"));
    EXPECT_THAT(childNames(kxSceneplateUtils::getSceneplateRoot()), ElementsAre("Logo"));
    EXPECT_EQ(camera()->getFrom(), (osg::Vec3d{{1, 2, 3}}));
    EXPECT_FALSE(kxController::isModified());
    EXPECT_EQ(stack.count(), 0);
}

TEST_F(SceneStoreTest, LoadsWithTheOpenerOfOtherPrograms)
{
    addChair("Chair");
    actions.loadEnvironment({storeEnvironment("Dawn")});
    addPlate("Logo");
    ASSERT_TRUE(actions.saveScene(file));
    kxScenegraph::newDocument();

    const auto contents = kxSceneOpener::open(file);

    ASSERT_TRUE(contents);
    EXPECT_THAT(childNames(root()), Contains("Chair"));
    EXPECT_EQ(contents.value().plates.size(), 1U);
    EXPECT_EQ(kxMaterials::getName(kxDefaultEnvironment::getSwitch()->getCurrentMaterial()), "Dawn");
}

TEST_F(SceneStoreTest, KeepsAChangedDefaultEnvironmentAndDoesNotGrow)
{
    actions.loadEnvironment({storeEnvironment("Dawn")});
    actions.switchEnvironment(0);
    const osg::MaterialPtr sky = kxDefaultEnvironment::getSwitch()->getMaterial(0);
    actions.setField({sky.getFieldContainerId()}, "Intensity", 0.25F, "Intensity");

    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(actions.saveScene(file));
        ASSERT_TRUE(actions.openScene(file));
    }

    EXPECT_THAT(environments(), ElementsAre("Sky", "Dawn"));
    EXPECT_EQ(choice(), 0);
    const auto reloaded = osg::UEnvironmentMaterialPtr::dcast(kxDefaultEnvironment::getSwitch()->getMaterial(0));
    EXPECT_EQ(reloaded->getIntensity(), 0.25F);
    EXPECT_THAT(pool(), ElementsAre("Default Environment", "Sky"));
    EXPECT_TRUE(reloaded->getValuePairs().empty());
}

TEST_F(SceneStoreTest, LeavesTheSceneAsItWas)
{
    addChair("Chair");
    actions.loadEnvironment({storeEnvironment("Dawn")});
    actions.switchEnvironment(0);
    const osg::FCRef<osg::Node> before(osg::deepClone(root(), {}));

    ASSERT_TRUE(actions.saveScene(file));

    EXPECT_EQ(osg::findDifference(before.get(), root()), std::nullopt);
}

TEST_F(SceneStoreTest, KeepsWhatThePoolSaysOfNodesOfOtherParts)
{
    const osg::NodePtr chair = addChair("Chair");
    const auto constraint = osg::Constraint::create();
    {
        const osg::CPEditor edit(constraint, osg::AllFieldMask);
        constraint->editEnds().push_back(kxNodeKeys::make(chair));
    }
    {
        const auto holder = kxScenegraph::getMaterialPool();
        const osg::CPEditor edit(holder, osg::MaterialPool::ConstraintsFieldMask);
        holder->editConstraints().push_back(constraint);
    }

    ASSERT_TRUE(actions.saveScene(file));
    ASSERT_TRUE(actions.openScene(file));

    const auto &constraints = kxScenegraph::getMaterialPool()->getConstraints();
    ASSERT_EQ(constraints.size(), 1U);
    EXPECT_TRUE(kxNodeKeys::find(root(), constraints[0]->getEnds()[0]));
}

TEST_F(SceneStoreTest, KeepsTheSceneWhenTheFileCannotBeOpenedOrWritten)
{
    addChair("Chair");
    folder.write("bad.osb", "no scene");

    EXPECT_FALSE(actions.openScene(QString::fromStdString(folder.file("bad.osb"))));
    EXPECT_FALSE(actions.saveScene(QString::fromStdString(folder.file("missing/scene.osb"))));

    ASSERT_EQ(failures.size(), 2);
    EXPECT_TRUE(failures[0].startsWith("\"bad.osb\" could not be opened: ")) << failures[0].toStdString();
    EXPECT_EQ(failures[1], "The scene could not be saved as \"scene.osb\". Its folder is not there any more.");
    EXPECT_THAT(childNames(root()), Contains("Chair"));
}

} // namespace
