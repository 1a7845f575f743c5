// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxNodeSaving.h"

#include "AssetSession/kxAssetSession.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxLocalUrlManager.h"
#include "Assets/kxSceneplateAssetItem.h"
#include "Kernel/NodeUtils.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "Rendering/QImageConverter.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/ReferenceAttachment.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/Transform3D.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"
#include "Support/TemporaryFolder.h"

#include <QImage>

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class kxNodeSavingTest : public testing::Test
{
protected:
    static osg::NodePtr root() { return kxScenegraph::getRoot(); }
    static osg::NodePtr add(const osg::NodeCorePtr &core, const osg::NodePtr &parent, const std::string &name)
    {
        return NodeUtils::createNodeWithCore(core, parent, name);
    }
    static osg::NodePtr addChair(const std::string &name)
    {
        const osg::NodePtr chair = add(osg::Transform3D::create(), root(), name);
        add(osg::Group::create(), chair, "Seat");
        return chair;
    }
    static osg::NodePtr addPlate(const std::string &name)
    {
        return add(osg::Sceneplate::create(), kxSceneplateUtils::getSceneplateRoot(), name);
    }
    static osg::NodePtr addSky(const std::string &name)
    {
        const auto core = osg::Environment::create();
        {
            const osg::CPEditor edit(core, osg::Environment::MaterialFieldMask);
            core->setMaterial(osg::USkyEnvironmentMaterial::create());
        }
        return add(core, root(), name);
    }
    static std::string uuidOf(const osg::NodePtr &node)
    {
        const auto attachment = osg::AssetAttachment::getAssetAttachment(node);
        return attachment ? attachment->getUuid() : "none";
    }
    static kxAssetItem *item(const std::string &uuid) { return kxAssetItemFactory::the().findItem(uuid); }
    QUrl library() const { return QUrl::fromLocalFile(QString::fromStdString(_folder.file("lib"))); }

    kxtest::TemporaryFolder _folder;
    kxAssetSession session;
    kxNodeSaving saving{{}};
};

TEST_F(kxNodeSavingTest, MakesEachKindOfNodeItsKindOfAsset)
{
    const osg::NodePtr chair = addChair("Chair");
    const auto geometry = saving.save(chair, "", library());
    const auto plate = saving.save(addPlate("Logo"), "", library());
    const auto sky = saving.save(addSky("Dawn"), "", library());

    ASSERT_TRUE(geometry && plate && sky);
    EXPECT_TRUE(dynamic_cast<kxGeometryAssetItem *>(item(geometry.value().uuid)));
    EXPECT_TRUE(dynamic_cast<kxSceneplateAssetItem *>(item(plate.value().uuid)));
    EXPECT_TRUE(dynamic_cast<kxEnvironmentNodeAssetItem *>(item(sky.value().uuid)));
    EXPECT_EQ(geometry.value().name, "Chair");
    EXPECT_THAT(geometry.value().remarks, IsEmpty());
    EXPECT_EQ(uuidOf(chair), geometry.value().uuid);
}

TEST_F(kxNodeSavingTest, MakesANewAssetUnderAnotherName)
{
    const osg::NodePtr chair = addChair("Chair");
    const std::string first = saving.save(chair, "", library()).value().uuid;

    const auto second = saving.save(chair, "Stool", library());

    ASSERT_TRUE(second);
    EXPECT_NE(second.value().uuid, first);
    EXPECT_EQ(item(second.value().uuid)->name(), "Stool");
    EXPECT_EQ(item(first)->name(), "Chair") << "it stays";
    EXPECT_EQ(kxNodeUtils::getName(chair), "Chair");
    EXPECT_TRUE(_folder.contains("lib/GEO_Stool/Stool.osb"));
}

TEST_F(kxNodeSavingTest, UpdatesTheAssetThatANodeCameFrom)
{
    const osg::NodePtr chair = addChair("Chair");
    const QUrl folder = QUrl::fromLocalFile(library().toLocalFile() + "/Seats");
    const std::string uuid = saving.save(chair, "", folder).value().uuid;
    ASSERT_TRUE(item(uuid)->changeName("Armchair"));
    add(osg::Group::create(), chair, "Arm");

    const auto updated = saving.update(chair);

    ASSERT_TRUE(updated) << updated.reason();
    EXPECT_EQ(updated.value().uuid, uuid);
    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 1);
    EXPECT_EQ(item(uuid)->name(), "Armchair") << "as people called it";
    EXPECT_EQ(item(uuid)->parentDirectoryUrl().toLocalFile(), folder.toLocalFile());
    const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(uuid));
    EXPECT_EQ(loaded->getNChildren(), 2U);

    EXPECT_EQ(saving.update(addChair("Other")).reason(), "'Other' came from no asset");
    kxAssetItemFactory::the().deleteAllItems();
    EXPECT_EQ(saving.update(chair).reason(), "'Chair' came from an asset that is not in the library");
    EXPECT_FALSE(saving.update(nullptr));
}

TEST_F(kxNodeSavingTest, SaysWhatItDidToSaveANode)
{
    const osg::NodePtr group = add(osg::Group::create(), root(), "Group");
    add(osg::Group::create(), group, "Part");

    const auto saved = saving.save(group, "", library());

    ASSERT_TRUE(saved);
    EXPECT_THAT(saved.value().remarks, testing::ElementsAre("put below a new node by which it can be placed"));
    EXPECT_EQ(uuidOf(group->getParent()), saved.value().uuid);
}

TEST_F(kxNodeSavingTest, LeavesAloneWhatItIsNotToChange)
{
    const osg::NodePtr group = add(osg::Group::create(), root(), "Group");
    const osg::NodePtr chair = addChair("Chair");
    {
        const osg::CPEditor edit(chair, osg::AttachmentContainer::AttachmentsFieldMask);
        chair->addAttachment(osg::ReferenceAttachment::create());
    }
    const osg::FCRef<osg::FieldContainer> before(osg::deepClone(osg::FieldContainerPtr(root()), {}));

    const auto refused = kxNodeSaving({false, false}).save(group, "X", library());
    const auto referring = saving.save(chair, "", library());

    EXPECT_EQ(refused.reason(), "'X' was not saved: it is no node that can be placed and has children");
    EXPECT_EQ(referring.reason(),
              "'Chair' was not saved: it holds references to other files, which assets cannot hold");
    EXPECT_EQ(osg::findDifference(before.get(), root()), std::nullopt);
    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 0);

    const auto ordinary = kxNodeSaving({true, true}).save(chair, "", library());
    ASSERT_TRUE(ordinary);
    EXPECT_THAT(ordinary.value().remarks, testing::ElementsAre("references to other files became ordinary nodes"));
    EXPECT_FALSE(osg::findAttachment<osg::ReferenceAttachment>(chair));
}

TEST_F(kxNodeSavingTest, LeavesWhoAnswersOtherQuestionsInPlace)
{
    int asked = 0;
    kxModalQuestion::setAnswerer([&asked](const kxModalQuestion::Question &) {
        ++asked;
        return QMessageBox::Ok;
    });

    EXPECT_TRUE(saving.save(add(osg::Group::create(), root(), "Group"), "", library()));

    EXPECT_EQ(asked, 0);
    kxModalQuestion::information(nullptr, "Title", "Text");
    EXPECT_EQ(asked, 1);
    kxModalQuestion::setAnswerer({});
}

TEST_F(kxNodeSavingTest, SavesSeveralNodesAsOneAssetAndPutsThemBack)
{
    const osg::NodePtr room = add(osg::Transform3D::create(), root(), "Room");
    const osg::NodePtr table = add(osg::Transform3D::create(), room, "Table");
    add(osg::Transform3D::create(), room, "Lamp");
    const osg::NodePtr chair = add(osg::Transform3D::create(), room, "Chair");
    const osg::FCRef<osg::FieldContainer> before(osg::deepClone(osg::FieldContainerPtr(root()), {}));

    const auto saved = saving.saveGroup({chair, table}, "Dining set", library());

    ASSERT_TRUE(saved) << saved.reason();
    EXPECT_EQ(osg::findDifference(before.get(), root()), std::nullopt);
    const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(saved.value().uuid));
    ASSERT_EQ(loaded->getNChildren(), 2U);
    EXPECT_EQ(kxNodeUtils::getName(loaded.get()), "Dining set");
    EXPECT_EQ(kxNodeUtils::getName(loaded->getChild(0)), "Chair");
    EXPECT_EQ(kxNodeUtils::getName(loaded->getChild(1)), "Table");
}

TEST_F(kxNodeSavingTest, GroupsPlatesAndNothingMixed)
{
    const osg::NodePtr logo = addPlate("Logo");
    const osg::NodePtr frame = addPlate("Frame");
    const auto plates = saving.saveGroup({logo, frame}, "Both", library());

    ASSERT_TRUE(plates) << plates.reason();
    EXPECT_TRUE(dynamic_cast<kxSceneplateAssetItem *>(item(plates.value().uuid)));
    EXPECT_EQ(logo->getParent(), kxSceneplateUtils::getSceneplateRoot());
    EXPECT_EQ(kxSceneplateUtils::getSceneplateRoot()->getNChildren(), 2U);
    EXPECT_EQ(saving.saveGroup({logo, addChair("Chair")}, "Mix", library()).reason(),
              "'Chair' cannot be saved together with the others");
    EXPECT_EQ(saving.saveGroup({addSky("Sky")}, "Skies", library()).reason(),
              "'Sky' cannot be saved together with the others");
    EXPECT_FALSE(saving.saveGroup({}, "Nothing", library()));
}

TEST_F(kxNodeSavingTest, SaysWhereItCannotWrite)
{
    _folder.write("lib", "a file where the library should be");

    EXPECT_THAT(saving.save(addChair("Chair"), "", library()).reason(),
                HasSubstr("'Chair' was not saved: it cannot be written to '"));
    EXPECT_FALSE(saving.save(nullptr, "", library()));
}

} // namespace
