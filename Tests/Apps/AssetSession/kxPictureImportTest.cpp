// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxPictureImport.h"

#include "AssetSession/kxAssetSession.h"
#include "AssetSession/kxLibraryVerifier.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxSceneplateAssetItem.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/USphereEnvironmentMaterial.h"
#include "Support/TemporaryFolder.h"

#include <QImage>

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

class kxPictureImportTest : public testing::Test
{
protected:
    kxPictureImportTest()
    {
        QImage red(40, 20, QImage::Format_ARGB32);
        red.fill(Qt::red);
        red.save(picture);
    }

    auto import(kxPictureImport::Kind kind) { return kxPictureImport(kind).importFile(picture, library()); }
    QUrl library() const { return QUrl::fromLocalFile(QString::fromStdString(_folder.file("lib"))); }

    kxtest::TemporaryFolder _folder;
    QString picture = QString::fromStdString(_folder.file("Abend röt.png"));
    kxAssetSession session;
};

TEST_F(kxPictureImportTest, MakesPlates)
{
    const osg::FCRef<osg::FieldContainer> before(
        osg::deepClone(osg::FieldContainerPtr(kxSceneplateUtils::getSceneplateRoot()), {}));
    const auto front = import(kxPictureImport::Kind::Frontplate);
    const auto back = import(kxPictureImport::Kind::Backplate);

    ASSERT_EQ(front.saved.size() + back.saved.size(), 2U);
    EXPECT_EQ(front.saved[0].name, "Abend röt");
    EXPECT_EQ(osg::findDifference(before.get(), kxSceneplateUtils::getSceneplateRoot()), std::nullopt);
    const auto load = [](const std::string &uuid) {
        const osg::FCRef<osg::Node> node(kxSceneplateAssetItem::loadNodeFromUUID(uuid));
        return osg::FCRef<osg::Sceneplate>(osg::SceneplatePtr::dcast(node->getCore()));
    };
    EXPECT_TRUE(load(front.saved[0].uuid)->getIsFront());
    EXPECT_FALSE(load(back.saved[0].uuid)->getIsFront());
    EXPECT_EQ(load(back.saved[0].uuid)->getImage()->getWidth(), 40U);
    EXPECT_TRUE(_folder.contains("lib/SCP_Abend röt/Abend röt.png")) << "a preview";
    EXPECT_TRUE(kxLibraryVerifier(library().toLocalFile()).verify().empty());
}

TEST_F(kxPictureImportTest, MakesEnvironmentsToSwitchTo)
{
    const osg::FCRef<osg::FieldContainer> before(osg::deepClone(osg::FieldContainerPtr(kxScenegraph::getRoot()), {}));
    const auto outcome = import(kxPictureImport::Kind::Environment);

    ASSERT_EQ(outcome.saved.size(), 1U) << (outcome.failures.empty() ? "" : outcome.failures[0]);
    EXPECT_EQ(osg::findDifference(before.get(), kxScenegraph::getRoot()), std::nullopt);
    EXPECT_TRUE(_folder.contains("lib/ENV_Abend röt/Abend röt.png")) << "a preview";
    ASSERT_TRUE(kxEnvironmentNodeAssetItem::loadEnvironmentNodeFromUUID(outcome.saved[0].uuid));
    const auto current =
        osg::USphereEnvironmentMaterialPtr::dcast(kxDefaultEnvironment::getSwitch()->getCurrentMaterial());
    ASSERT_TRUE(current);
    EXPECT_EQ(osg::getName(current), "Abend röt");
    EXPECT_EQ(current->getImage()->getWidth(), 40U);
    EXPECT_TRUE(kxLibraryVerifier(library().toLocalFile()).verify().empty());
}

TEST_F(kxPictureImportTest, SaysWhyAPictureCannotBeRead)
{
    _folder.write("broken.png", "no picture");

    const auto outcome = kxPictureImport(kxPictureImport::Kind::Frontplate)
                             .importFile(QString::fromStdString(_folder.file("broken.png")), library());

    EXPECT_TRUE(outcome.saved.empty());
    ASSERT_EQ(outcome.failures.size(), 1U);
    EXPECT_THAT(outcome.failures[0], HasSubstr("broken.png"));
    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 0);
}

} // namespace
