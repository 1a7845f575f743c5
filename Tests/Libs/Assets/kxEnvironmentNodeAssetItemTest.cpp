// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxEnvironmentNodeAssetItem.h"

#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMultipleEnvironmentsDialog.h"
#include "Assets/kxUrlManager.h"
#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraph.h"
#include "NodeFixture.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "Support/CapturedOutput.h"

#include <QApplication>
#include <QListWidget>
#include <QPixmap>
#include <QTimer>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class kxEnvironmentNodeAssetItemTest : public NodeFixture
{
protected:
    static osg::NodePtr makeEnvironment(const std::string &name, const osg::MaterialPtr &material)
    {
        const auto core = osg::Environment::create();
        {
            const osg::CPEditor edit(core, osg::Environment::MaterialFieldMask);
            core->setMaterial(material);
        }
        return addNode(kxScenegraph::getRoot(), core, name);
    }
    std::string save(const osg::NodePtr &node)
    {
        kxEnvironmentNodeAssetItem item;
        item.initFrom(node, {}, true);
        EXPECT_TRUE(item.save(url()));
        return item.uuid();
    }
    static kxEnvironmentNodeAssetItem *registered(const std::string &uuid)
    {
        return dynamic_cast<kxEnvironmentNodeAssetItem *>(kxAssetItemFactory::the().findItem(uuid));
    }
    static osg::MaterialPtr materialOf(const osg::NodePtr &node)
    {
        return osg::EnvironmentPtr::dcast(node->getCore())->getMaterial();
    }
    static osg::UEnvironmentSwitchMaterialPtr choices() { return kxDefaultEnvironment::getSwitch(); }
    static osg::NodePtr places() { return kxScenegraph::environmentGeometrySwitch(); }
    /// Answers the question for the material as soon as it is asked.
    void answer(bool accepts)
    {
        QTimer::singleShot(0, qApp, [this, accepts] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            ASSERT_TRUE(dialog);
            ++asked;
            if (whileAsked)
                whileAsked(*dialog);
            accepts ? dialog->accept() : dialog->reject();
        });
    }

    Owned dawn = makeSky("dawn");
    Owned dusk = makeSky("dusk");
    int asked = 0;
    std::function<void(QDialog &dialog)> whileAsked;
};

} // namespace

TEST_F(kxEnvironmentNodeAssetItemTest, IsAnEnvironment)
{
    kxEnvironmentNodeAssetItem item;
    const osg::NodePtr node = makeEnvironment("Hills", dawn.get());

    EXPECT_EQ(item.category(), Environment);
    EXPECT_EQ(item.mimeType(), "application/sarn-environment-asset");
    EXPECT_EQ(item.data(kxAssetCategory::getTypeColumn(), Qt::DisplayRole), "Environment Node");
    EXPECT_EQ(item.data(kxAssetCategory::getTypeColumn(), Qt::ToolTipRole), "Environment Node");
    item.initFrom(node, {}, true);
    EXPECT_EQ(item.getEnvironmentNode(), node);
    EXPECT_EQ(item.name(), "Hills");
    EXPECT_EQ(item.uuid().size(), 36U);
    item.initFrom(kxScenegraph::getRoot(), {}, true);
    EXPECT_FALSE(item.getEnvironmentNode()) << "a group is no environment";
    EXPECT_EQ(item.uuid(), "");
    EXPECT_EQ(item.category(), Environment);
}

TEST_F(kxEnvironmentNodeAssetItemTest, SavesTheNodeAndAsksForAPreview)
{
    const osg::NodePtr node = makeEnvironment("Hills", dawn.get());
    kxtest::CapturedOutput output;

    const std::string uuid = save(node);

    EXPECT_EQ(output.text(),
              "--------------\nkxLocalUrlManager::saveEnvironmentNodeAsset Hills\n   save environment to path: " +
                  _folder.file("ENV_Hills/") +
                  "\n[prepareEnvironmentSwitches] # replacements (switch by choice) = 0\n--------------\n");
    ASSERT_EQ(_host.previewRequests.size(), 1U);
    EXPECT_THAT(_host.previewRequests[0], ElementsAre(dawn.get()));
    EXPECT_EQ(_host.progressRequests, std::vector<bool>{false});
    ASSERT_TRUE(registered(uuid));
    EXPECT_EQ(uuidOfNode(node), uuid);
    EXPECT_TRUE(registered(uuid)->hasSameChecksum(node));
}

TEST_F(kxEnvironmentNodeAssetItemTest, SaysWhenItCannotBePrepared)
{
    const osg::NodePtr node = makeEnvironment("Empty", nullptr);
    kxEnvironmentNodeAssetItem item;
    item.initFrom(node, {}, true);
    const kxLogRecorder log;

    EXPECT_FALSE(item.save(url()));

    EXPECT_EQ(log.lines(kxLogLevel::Error), std::vector<std::string>{"Failed to prepare environment node for saving."});
    EXPECT_FALSE(item.save(QUrl("unknown:/place")));
    EXPECT_FALSE(kxEnvironmentNodeAssetItem().save(url())) << "without a node";
}

TEST_F(kxEnvironmentNodeAssetItemTest, ComesBackIntoTheSwitchWithoutAQuestion)
{
    const osg::NodePtr node = makeEnvironment("Hills", choices());
    ASSERT_TRUE(kxController::addToDefaultEnvironment(dawn.get(), node, false));
    const std::string uuid = save(node);
    EXPECT_EQ(materialOf(node), choices()) << "as it was";
    kxScenegraph::newDocument();
    kxtest::CapturedOutput output;

    const osg::NodePtr loaded = kxEnvironmentNodeAssetItem::loadEnvironmentNodeFromUUID(uuid);

    ASSERT_TRUE(loaded);
    EXPECT_EQ(output.text(),
              "[loadEnvironmentNode] loaded mat: dawn\n[loadEnvironmentNode] #loaded env mats 1\n"
              "[loadEnvironmentNode] pre update scenegraph\n"
              "[loadEnvironmentNode] post update scenegraph\n[loadEnvironmentNode] updated attachment\n");
    ASSERT_EQ(choices()->getMaterials().size(), 2U);
    const osg::MaterialPtr choice = choices()->getMaterial(1);
    EXPECT_EQ(osg::getName(choice), "dawn");
    EXPECT_TRUE(choice->getValuePairs().empty()) << "the mark is gone";
    EXPECT_THAT(tagsOf(choice), ElementsAre(kxAssetCategory::getTagPrefix(Environment) + "Hills"));
    EXPECT_EQ(places()->getChild(1), loaded);
    EXPECT_EQ(choices()->getChoice(), 1) << "made current";
    EXPECT_EQ(materialOf(loaded), choices()) << "the node follows the switch";
    EXPECT_EQ(uuidOfNode(loaded), uuid);
    EXPECT_FALSE(osg::AssetAttachment::getAssetAttachment(loaded)->getUserEdited());
    EXPECT_TRUE(kxController::isModified());
}

TEST_F(kxEnvironmentNodeAssetItemTest, TakesASingleMaterialWithoutAQuestion)
{
    const std::string uuid = save(makeEnvironment("Hills", dawn.get()));

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(false));

    EXPECT_EQ(choices()->getMaterials().size(), 2U);
    EXPECT_EQ(choices()->getChoice(), 0) << "not made current";
    EXPECT_FALSE(osg::AssetAttachment::getAssetAttachment(registered(uuid)->getEnvironmentNode())->getUserEdited());
}

TEST_F(kxEnvironmentNodeAssetItemTest, AsksWhichOfSeveralMaterials)
{
    const osg::NodePtr node = makeEnvironment("Hills", dusk.get());
    addSquare(node, "Ground", dawn.get());
    const std::string uuid = save(node);
    answer(true);

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    EXPECT_EQ(asked, 1);
    EXPECT_EQ(osg::getName(choices()->getMaterial(1)), "dawn") << "the first by name";
    EXPECT_TRUE(osg::AssetAttachment::getAssetAttachment(registered(uuid)->getEnvironmentNode())->getUserEdited());
}

TEST_F(kxEnvironmentNodeAssetItemTest, GivesUpWhenTheQuestionIsCancelled)
{
    const osg::NodePtr node = makeEnvironment("Hills", dusk.get());
    addSquare(node, "Ground", dawn.get());
    const std::string uuid = save(node);
    answer(false);

    EXPECT_FALSE(registered(uuid)->loadEnvironmentNode(true));

    EXPECT_EQ(asked, 1);
    EXPECT_FALSE(registered(uuid)->getEnvironmentNode());
    EXPECT_EQ(choices()->getMaterials().size(), 1U);
}

TEST_F(kxEnvironmentNodeAssetItemTest, GoesOnWithoutAChoiceWhenNothingIsSelected)
{
    const osg::NodePtr node = makeEnvironment("Hills", dusk.get());
    addSquare(node, "Ground", dawn.get());
    const std::string uuid = save(node);
    whileAsked = [](QDialog &dialog) { dialog.findChild<QListWidget *>("_envList")->clearSelection(); };
    answer(true);

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    const osg::NodePtr loaded = registered(uuid)->getEnvironmentNode();
    ASSERT_TRUE(loaded);
    EXPECT_EQ(choices()->getMaterials().size(), 1U);
    EXPECT_EQ(loaded->getParent(), kxScenegraph::getRoot());
    EXPECT_TRUE(osg::AssetAttachment::getAssetAttachment(loaded)->getUserEdited()) << "a person decided";
}

TEST_F(kxEnvironmentNodeAssetItemTest, GivesUpWhenItIsDeletedWhileItAsks)
{
    const osg::NodePtr node = makeEnvironment("Hills", dusk.get());
    addSquare(node, "Ground", dawn.get());
    const std::string uuid = save(node);
    whileAsked = [](QDialog &) { kxAssetItemFactory::the().deleteAllItems(); };
    for (const bool accepts : {true, false}) {
        kxUrlManager::getUrlManager(url())->collectItems(url(), Undefined, nullptr);
        ASSERT_TRUE(registered(uuid));
        answer(accepts);

        EXPECT_FALSE(kxEnvironmentNodeAssetItem::loadEnvironmentNodeFromUUID(uuid));
    }
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(choices()->getMaterials().size(), 1U);
}

TEST_F(kxEnvironmentNodeAssetItemTest, HangsBelowTheRootWhenTheSwitchRefuses)
{
    const std::string uuid = save(makeEnvironment("Hills", dawn.get()));
    {
        const osg::CPEditor edit(places(), osg::Node::CoreFieldMask);
        places()->setCore(osg::Group::create());
    }

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    const osg::NodePtr loaded = registered(uuid)->getEnvironmentNode();
    EXPECT_EQ(loaded->getParent(), kxScenegraph::getRoot());
    EXPECT_EQ(osg::getName(materialOf(loaded)), "dawn") << "it does not follow a switch that it is not in";
    EXPECT_EQ(choices()->getMaterials().size(), 1U);
}

TEST_F(kxEnvironmentNodeAssetItemTest, TagsAllItsMaterialsAndHangsThoseOfTheChoiceOnTheSwitch)
{
    const osg::NodePtr node = makeEnvironment("Hills", dawn.get());
    addSquare(node, "Dome", dawn.get());
    const Owned paint = makeSurface("Paint");
    addSquare(node, "Floor", paint.get());
    const std::string uuid = save(node);
    kxtest::CapturedOutput output;

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    EXPECT_THAT(output.text(), HasSubstr("[loadEnvironmentNode] loaded mat: Paint\n"));
    EXPECT_THAT(output.text(), HasSubstr("[loadEnvironmentNode] #loaded env mats 1\n"));
    const osg::NodePtr loaded = registered(uuid)->getEnvironmentNode();
    EXPECT_EQ(osg::GeometryPtr::dcast(loaded->getChild(0)->getCore())->getMaterial(), choices());
    const osg::MaterialPtr floor = osg::GeometryPtr::dcast(loaded->getChild(1)->getCore())->getMaterial();
    EXPECT_EQ(osg::getName(floor), "Paint");
    EXPECT_THAT(tagsOf(floor), ElementsAre(kxAssetCategory::getTagPrefix(Environment) + "Hills"));
}

TEST_F(kxEnvironmentNodeAssetItemTest, MovesToAnotherFolder)
{
    const osg::NodePtr node = makeEnvironment("Hills", dawn.get());
    const std::string uuid = save(node);
    kxEnvironmentNodeAssetItem item;
    item.initFrom(node, {}, true);

    EXPECT_TRUE(item.save(url("other")));

    EXPECT_FALSE(_folder.contains("ENV_Hills"));
    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 1);
    EXPECT_EQ(registered(uuid)->directoryUrl(), url("other/ENV_Hills"));
    EXPECT_TRUE(registered(uuid)->hasSameChecksum(node));
}

TEST_F(kxEnvironmentNodeAssetItemTest, LeavesTheSceneAsItWasWhenThePayloadCannotBeWritten)
{
    const osg::NodePtr node = makeEnvironment("Hills", choices());
    ASSERT_TRUE(kxController::addToDefaultEnvironment(dawn.get(), node, false));
    kxEnvironmentNodeAssetItem item;
    item.initFrom(node, {}, true);
    writeAsset("ENV_Hills", "<category>Environments</category><uuid>" + item.uuid() + "</uuid><name>Hills</name>");
    writeFile("ENV_Hills/Hills.osb/in the way", "x");
    const kxLogRecorder log;

    EXPECT_FALSE(item.save(url()));

    EXPECT_THAT(log.lines(kxLogLevel::Error), ElementsAre(HasSubstr("Failed to write file '")));
    EXPECT_EQ(materialOf(node), choices());
    EXPECT_TRUE(item.directoryUrl().isEmpty());
}

TEST_F(kxEnvironmentNodeAssetItemTest, HangsBelowTheRootWithoutPlacesForEnvironments)
{
    const std::string uuid = save(makeEnvironment("Hills", dawn.get()));
    {
        const osg::CPEditor edit(kxScenegraph::getRoot(), osg::Node::ChildrenFieldMask);
        kxScenegraph::getRoot()->subChild(places());
    }

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    const osg::NodePtr loaded = registered(uuid)->getEnvironmentNode();
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->getParent(), kxScenegraph::getRoot());
    EXPECT_EQ(osg::getName(materialOf(loaded)), "dawn");
}

TEST_F(kxEnvironmentNodeAssetItemTest, SaysWhatItCannotFind)
{
    const std::string material = store(makeSurface("Red"));
    kxtest::CapturedOutput output;

    EXPECT_FALSE(kxEnvironmentNodeAssetItem::loadEnvironmentNodeFromUUID("nobody"));
    EXPECT_FALSE(kxEnvironmentNodeAssetItem::loadEnvironmentNodeFromUUID(material));
    EXPECT_FALSE(kxEnvironmentNodeAssetItem().loadEnvironmentNode(true));

    EXPECT_EQ(output.text(), "[Env::loadEnvironmentNodeFromUUID] did not find item with uuid 'nobody'\n");
}

TEST_F(kxEnvironmentNodeAssetItemTest, PaintsASkyIntoTheLowerLeftCorner)
{
    QPixmap preview(128, 96);
    preview.fill(Qt::black);

    kxEnvironmentNodeAssetItem().addOverlayIcon(preview);

    const QImage image = preview.toImage();
    const auto isPainted = [&image](int x, int y) { return image.pixelColor(x, y) != QColor(Qt::black); };
    bool isAnywhere = false;
    for (int y = 0; y < 96; ++y)
        for (int x = 0; x < 128; ++x)
            if (isPainted(x, y)) {
                isAnywhere = true;
                EXPECT_LT(x, 96);
                EXPECT_GE(y, 96 - 72 - 1);
                EXPECT_LT(y, 95) << "one pixel stays free below";
            }
    EXPECT_TRUE(isAnywhere);
}

TEST_F(kxEnvironmentNodeAssetItemTest, ShrinksTheSkyThatIsTooLarge)
{
    QPixmap preview(40, 30); // three quarters are 30 by 23, rounded
    preview.fill(Qt::black);

    kxEnvironmentNodeAssetItem().addOverlayIcon(preview);

    const QImage image = preview.toImage();
    QRect painted;
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 40; ++x)
            if (image.pixelColor(x, y) != QColor(Qt::black))
                painted |= QRect(x, y, 1, 1);
    EXPECT_GT(painted.height(), 10);
    EXPECT_LT(painted.right(), 23);
    EXPECT_GE(painted.top(), 30 - 23 - 1);
    EXPECT_LT(painted.bottom(), 29);
}
