// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetManagerModule.h"

#include "AssetSession/kxAssetSession.h"
#include "AssetSession/kxNodeSaving.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Kernel/NodeUtils.h"
#include "Kernel/kxAssetsService.h"
#include "Kernel/kxController.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "Kernel/kxSceneplateUtils.h"
#include "Kernel/kxTypeConverter.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/Transform3D.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "Support/TemporaryFolder.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class kxAssetManagerModuleTest : public testing::Test
{
protected:
    kxAssetManagerModuleTest()
    {
        kxModalQuestion::setAnswerer([this](const kxModalQuestion::Question &question) {
            shown.push_back(question.text.toStdString());
            return QMessageBox::Ok;
        });
    }
    ~kxAssetManagerModuleTest() override { kxModalQuestion::setAnswerer({}); }

    static osg::NodePtr addChair()
    {
        const osg::NodePtr chair =
            NodeUtils::createNodeWithCore(osg::Transform3D::create(), kxScenegraph::getRoot(), "Chair");
        NodeUtils::createNodeWithCore(osg::Group::create(), chair, "Seat");
        return chair;
    }
    std::string save(const osg::NodePtr &node) const
    {
        const auto saved = kxNodeSaving({}).save(node, "", library());
        EXPECT_TRUE(saved);
        return saved ? saved.value().uuid : std::string();
    }
    static kxdNodePtr script(const osg::NodePtr &node) { return kxTypeConverter::convertNode(node); }
    static osg::AssetAttachmentPtr assetOf(const osg::NodePtr &node)
    {
        return osg::AssetAttachment::getAssetAttachment(node);
    }
    QUrl library() const { return QUrl::fromLocalFile(QString::fromStdString(_folder.file("lib"))); }

    kxtest::TemporaryFolder _folder;
    kxAssetSession session;
    kxAssetsService *service = kxKernelServiceFactory::the().getService<kxAssetsService>();
    std::vector<std::string> shown;
};

TEST_F(kxAssetManagerModuleTest, SelectsWhatScriptsAskFor)
{
    const osg::NodePtr a = addChair();
    const osg::NodePtr b = addChair();
    const std::string first = save(a);
    const std::string second = save(b);
    int changes = 0;
    QObject::connect(&session.manager(), &kxAssetManagerModule::selectionChanged, [&changes] { ++changes; });

    EXPECT_THAT(service->selectAssets({script(b)}), IsEmpty());
    EXPECT_THAT(session.manager().selection(), ElementsAre(second));
    EXPECT_THAT(service->selectAssets({script(a), script(b), script(a)}), IsEmpty());
    EXPECT_THAT(session.manager().selection(), ElementsAre(first, second)) << "in place of the earlier ones, each once";
    kxAssetItemFactory::the().deleteAllItems();
    EXPECT_EQ(service->selectAssets({script(a)}).size(), 1);
    EXPECT_THAT(session.manager().selection(), ElementsAre(first, second)) << "what is not found changes nothing";
    EXPECT_EQ(changes, 3);
}

TEST_F(kxAssetManagerModuleTest, OverwritesAssetsWhereTheyAre)
{
    const osg::NodePtr chair = addChair();
    const std::string uuid = save(chair);
    NodeUtils::createNodeWithCore(osg::Group::create(), chair, "Arm");
    int saved = 0;
    QObject::connect(&session.manager(), &kxAssetManagerModule::assetsSaved, [&saved] { ++saved; });

    service->overwriteAssets({script(chair)});

    EXPECT_EQ(saved, 1);
    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 1);
    const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(uuid));
    EXPECT_EQ(loaded->getNChildren(), 2U);
}

TEST_F(kxAssetManagerModuleTest, OverwritesMaterialsToo)
{
    const osg::FCRef<osg::UBRDFMaterial> paint(osg::UBRDFMaterial::create());
    osg::setName(paint.get(), "Paint");
    kxMaterialAssetItem item;
    item.initFrom(paint.get(), {}, false);
    const std::string uuid = item.uuid();
    ASSERT_TRUE(item.save(library()));
    const std::uint32_t before = kxAssetItemFactory::the().findItem(uuid)->checksum();
    {
        const osg::CPEditor edit(paint.get(), osg::UBRDFMaterial::RoughnessFieldMask);
        paint->setRoughness(0.123F);
    }
    kxMessage message;
    message.set("containerIds", std::vector<std::uint32_t>{paint.get().getFieldContainerId()});

    ASSERT_TRUE(kxController::call("overwriteAssets", message));

    EXPECT_THAT(message.get<QStringList>("failures").value(), IsEmpty());
    EXPECT_NE(kxAssetItemFactory::the().findItem(uuid)->checksum(), before);
}

TEST_F(kxAssetManagerModuleTest, GoesOnWhereOneCannotBeOverwrittenAndReportsEach)
{
    const osg::NodePtr chair = addChair();
    const osg::NodePtr stranger = addChair();
    const std::string uuid = save(chair);
    save(stranger);
    kxAssetItemFactory::the().deleteItem(assetOf(stranger)->getUuid());
    NodeUtils::createNodeWithCore(osg::Group::create(), chair, "Arm");
    const kxLogRecorder log;
    kxMessage message;
    message.set("containerIds",
                std::vector<std::uint32_t>{stranger.getFieldContainerId(), 0, 4000000000U,
                                           kxScenegraph::getRoot().getFieldContainerId(), chair.getFieldContainerId()});

    ASSERT_TRUE(kxController::call("overwriteAssets", message));

    EXPECT_EQ(message.get<QStringList>("failures").value().size(), 4);
    EXPECT_EQ(message.get<QStringList>("failures").value()[0],
              "\"Chair\" was not saved: its asset is not in an open library.");
    EXPECT_THAT(log.lines(kxLogLevel::Error), testing::SizeIs(4));
    const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(uuid));
    EXPECT_EQ(loaded->getNChildren(), 2U) << "the last was saved all the same";
}

TEST_F(kxAssetManagerModuleTest, ShowsWhatDiffersFromWhatIsStored)
{
    const osg::NodePtr same = addChair();
    const osg::NodePtr edited = addChair();
    const osg::NodePtr outdated = addChair();
    const osg::NodePtr missing = addChair();
    for (const osg::NodePtr &node : {same, edited, outdated, missing})
        save(node);
    service->queryAssetChanges({script(same)});
    EXPECT_THAT(shown, ElementsAre("All assets are as they are stored."));

    service->markAssetsEdited({script(edited)});
    {
        const osg::CPEditor edit(assetOf(outdated), osg::AssetAttachment::ChecksumFieldMask);
        assetOf(outdated)->setChecksum(1);
    }
    kxAssetItemFactory::the().deleteItem(assetOf(missing)->getUuid());
    shown.clear();

    service->queryAssetChanges({script(same), script(edited), script(outdated), script(missing)});

    ASSERT_EQ(shown.size(), 1U);
    EXPECT_THAT(shown[0], HasSubstr("Chair: edited in the scene"));
    EXPECT_THAT(shown[0], HasSubstr("Chair: the stored asset was changed"));
    EXPECT_THAT(shown[0], HasSubstr(assetOf(missing)->getUuid() + ": not in an open library; last seen in " +
                                    _folder.file("lib")));
}

TEST_F(kxAssetManagerModuleTest, LoadsSceneplatesWhereTheyBelong)
{
    const osg::NodePtr top = kxSceneplateUtils::getSceneplateRoot();
    const osg::NodePtr group = NodeUtils::createNodeWithCore(osg::Group::create(), top, "Group");
    const std::string uuid = save(NodeUtils::createNodeWithCore(osg::Sceneplate::create(), top, "Logo"));
    kxController::setModified(false);
    int updates = 0;
    const auto connection =
        QObject::connect(&kxScenegraph::notifier(), &kxScenegraphNotifier::updateRequested, [&updates] { ++updates; });
    QCoreApplication::processEvents();
    updates = 0;

    const QStringList uuids{QString::fromStdString(uuid), QString::fromStdString(uuid), "nobody"};
    service->loadSceneplateAssets(uuids, script(group));
    service->loadSceneplateAssets({QString::fromStdString(uuid)}, nullptr);

    EXPECT_EQ(group->getNChildren(), 2U);
    EXPECT_EQ(top->getNChildren(), 3U);
    EXPECT_TRUE(kxController::isModified());
    QCoreApplication::processEvents();
    EXPECT_EQ(updates, 1) << "once for all";
    QObject::disconnect(connection);
}

TEST_F(kxAssetManagerModuleTest, MakesDoWithEmptyMessages)
{
    for (const char *name : {"selectAssetByUUID", "overwriteAssets", "queryAssetChanges", "loadSceneplateAsset"}) {
        kxMessage message;
        EXPECT_TRUE(kxController::call(name, message)) << name;
    }
    EXPECT_THAT(session.manager().selection(), IsEmpty());
}

} // namespace
