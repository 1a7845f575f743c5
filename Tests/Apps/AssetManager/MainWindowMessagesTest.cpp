// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetModel.h"
#include "AssetManager/AssetStates.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/SceneSide.h"
#include "AssetManager/SceneView.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Kernel/kxController.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxMessageCodes.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxModuleBase.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Group.h"
#include "WindowFixture.h"

#include <QTest>
#include <QTreeView>

#include <gmock/gmock.h>

#include <set>

namespace {

using testing::ElementsAre;

/// What scripts and other modules ask of the asset manager, as it shows in the window.
class MainWindowMessagesTest : public WindowFixture
{
protected:
    osg::NodePtr loadChair()
    {
        chairAsset = storeGeometry("Chair");
        open();
        clickAsset(chairAsset);
        press(Qt::Key_Return, Qt::ControlModifier);
        settle();
        for (const osg::NodePtr &node : root()->getChildren())
            if (const auto attachment = osg::AssetAttachment::getAssetAttachment(node); attachment)
                return node;
        return nullptr;
    }
    static void markEdited(const osg::NodePtr &node)
    {
        const osg::AssetAttachmentPtr asset = osg::AssetAttachment::getAssetAttachment(node);
        const osg::CPEditor edit(asset, osg::AssetAttachment::UserEditedFieldMask);
        asset->setUserEdited(true);
    }
    std::uint32_t stateOf(const std::string &uuid) const { return window->libraries().states().stateOf(uuid); }

    std::string chairAsset;
};

/// Any module of the host.
class Sender final : public kxModuleBase
{};

} // namespace

TEST_F(MainWindowMessagesTest, OverwritesAnAssetByTheSceneAndShowsItAsStored)
{
    const osg::NodePtr chair = loadChair();
    ASSERT_TRUE(chair);
    add(osg::Group::create(), chair, "Arm");
    markEdited(chair);
    kxMessage message;
    message.set("containerIds", std::vector<std::uint32_t>{chair.getFieldContainerId()});

    ASSERT_TRUE(kxController::call("overwriteAssets", message));
    settle();

    EXPECT_EQ(reported(), "");
    EXPECT_THAT(names(), ElementsAre("Chair"));
    const osg::FCRef<osg::Node> stored(kxGeometryAssetItem::loadNodeFromUUID(chairAsset));
    EXPECT_EQ(stored->getNChildren(), 2U);
    EXPECT_TRUE(QTest::qWaitFor([&] { return stateOf(chairAsset) == AssetStates::InScene; }, Patience));
}

TEST_F(MainWindowMessagesTest, SaysInFrontOfTheWindowWhatDiffers)
{
    const osg::NodePtr chair = loadChair();
    ASSERT_TRUE(chair);
    QStringList said;
    QWidget *above = nullptr;
    kxModalQuestion::setAnswerer([&](const kxModalQuestion::Question &question) {
        said.append(question.text);
        above = question.parent;
        return QMessageBox::Ok;
    });
    const auto ask = [&] {
        kxMessage message;
        message.set("assets", std::set<osg::AssetAttachmentPtr>{osg::AssetAttachment::getAssetAttachment(chair)});
        EXPECT_TRUE(kxController::call("queryAssetChanges", message));
    };

    ask();
    markEdited(chair);
    ask();

    EXPECT_EQ(said, QStringList({"All assets are as they are stored.", "Chair: edited in the scene"}));
    EXPECT_EQ(above, window.get());
}

TEST_F(MainWindowMessagesTest, ListsAPlateThatAScriptLoads)
{
    const std::string logo = storePlate("Logo");
    open();
    kxMessage message;
    message.set("uuid", id(logo));
    message.set("parentid", std::uint32_t{0});

    ASSERT_TRUE(kxController::call("loadSceneplateAsset", message));
    settle();

    EXPECT_THAT(shown(*widget<QTreeView>("plateTree").model()), ElementsAre("Logo"));
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_TRUE(QTest::qWaitFor([&] { return (stateOf(logo) & AssetStates::InScene) != 0; }, Patience));
}

TEST_F(MainWindowMessagesTest, DrawsTheSceneAnewForTheBroadcast)
{
    addChair("Chair");
    open();
    SceneView &view = window->scene().view();
    view.setSampleLimit(100000); // more than there is time for
    ASSERT_TRUE(QTest::qWaitFor([&] { return view.samples() >= 4; }, Patience));
    int least = view.samples();
    const auto watch =
        QObject::connect(&view, &kxViewport::pictureChanged, [&] { least = std::min(least, view.samples()); });

    Sender sender;
    sender.sendMessage(kxMessage(kxMessageCodes::SceneViews), false);

    EXPECT_TRUE(QTest::qWaitFor([&] { return least <= 1; }, Patience));
    QObject::disconnect(watch);
    view.setSampleLimit(1);
}
