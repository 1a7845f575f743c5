// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxGeometryImport.h"

#include "AssetSession/kxAssetLibrary.h"
#include "AssetSession/kxAssetSession.h"
#include "AssetSession/kxLibraryVerifier.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Import/kxSceneImporter.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/Geometry.h"
#include "Support/TemporaryFolder.h"

#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

namespace {

/// Two squares, one of them a polygon of four corners, in groups of their own.
constexpr const char *Model = "mtllib paint.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 3 0 0\nv 4 0 0\nv 4 1 0\n"
                              "usemtl Red\no Left\nf 1 2 3 4\no Right\nf 5 6 7\n";

class kxGeometryImportTest : public testing::Test
{
protected:
    kxGeometryImportTest()
    {
        _folder.write("paint.mtl", "newmtl Red\nKd 1 0 0\n");
        model = QString::fromStdString(_folder.write("model.obj", Model));
    }

    QUrl library() const { return QUrl::fromLocalFile(QString::fromStdString(_folder.file("lib"))); }
    kxGeometryImport::Outcome importModel(bool isSplit) const
    {
        kxGeometryImport import;
        import.setSplit(isSplit);
        return import.importFile(model, library(), [] { return true; });
    }

    kxtest::TemporaryFolder _folder;
    kxAssetSession session;
    QString model;
};

} // namespace

TEST_F(kxGeometryImportTest, KeepsAWholeFileAsOneAsset)
{
    const osg::FCRef<osg::FieldContainer> before(osg::deepClone(osg::FieldContainerPtr(kxScenegraph::getRoot()), {}));

    const auto outcome = importModel(false);

    EXPECT_TRUE(outcome.failures.empty());
    ASSERT_EQ(outcome.saved.size(), 1U);
    EXPECT_EQ(outcome.saved[0].name, "model");
    EXPECT_EQ(osg::findDifference(before.get(), kxScenegraph::getRoot()), std::nullopt) << "the scene is as before";
    const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(outcome.saved[0].uuid));
    ASSERT_TRUE(loaded);
    std::vector<osg::NodePtr> meshes;
    kxNodeUtils::getGeometryNodes(loaded, meshes);
    EXPECT_EQ(meshes.size(), 2U);
    EXPECT_EQ(QImage(QString::fromStdString(_folder.file("lib/GEO_model/model.png"))).size(), QSize(512, 384));
}

TEST_F(kxGeometryImportTest, KeepsEachPartAsAnAsset)
{
    const auto outcome = importModel(true);

    EXPECT_TRUE(outcome.failures.empty());
    ASSERT_EQ(outcome.saved.size(), 2U);
    EXPECT_EQ(outcome.saved[0].name, "Left");
    EXPECT_EQ(outcome.saved[1].name, "Right");
    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 2);
}

TEST_F(kxGeometryImportTest, MakesLibrariesThatAreWholeAndSaysWhatIsDamaged)
{
    importModel(false);
    EXPECT_TRUE(kxLibraryVerifier(QString::fromStdString(_folder.file("lib"))).verify().empty());

    _folder.write("lib/GEO_model/model.osb", "no scene");
    auto findings = kxLibraryVerifier(QString::fromStdString(_folder.file("lib"))).verify();
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].kind, "payload-damaged");
    ASSERT_TRUE(QFile::remove(QString::fromStdString(_folder.file("lib/GEO_model/model.osb"))));
    findings = kxLibraryVerifier(QString::fromStdString(_folder.file("lib"))).verify();
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].kind, "payload-missing");
}

TEST_F(kxGeometryImportTest, SaysWhyAFileCannotBeImported)
{
    model = QString::fromStdString(_folder.file("none.obj"));

    const auto outcome = importModel(false);

    ASSERT_EQ(outcome.failures.size(), 1U);
    EXPECT_NE(outcome.failures[0].find("none.obj"), std::string::npos);
    EXPECT_FALSE(QFile::exists(library().toLocalFile()));
}

TEST_F(kxGeometryImportTest, KeepsAShearedFrameAboveAPart)
{
    // A triangle twice below a node whose matrix shears x by y.
    model = QString::fromStdString(_folder.write(
        "sheared.gltf",
        R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],)"
        R"("nodes":[{"name":"Frame","children":[1,2],"matrix":[1,0,0,0, 1,1,0,0, 0,0,1,0, 0,0,5,1]},)"
        R"({"name":"A","mesh":0},{"name":"B","mesh":0,"translation":[2,0,0]}],)"
        R"("meshes":[{"primitives":[{"attributes":{"POSITION":0}}]}],)"
        R"("accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3","min":[0,0,0],"max":[1,1,0]}],)"
        R"("bufferViews":[{"buffer":0,"byteLength":36}],"buffers":[{"byteLength":36,"uri":)"
        R"("data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA"}]})"));

    const auto outcome = importModel(true);

    ASSERT_EQ(outcome.saved.size(), 2U) << (outcome.failures.empty() ? "" : outcome.failures[0]);
    const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(outcome.saved[0].uuid));
    const osg::Volume box = loaded->getWorldVolume();
    EXPECT_DOUBLE_EQ(box.min()[0], 0.0);
    EXPECT_DOUBLE_EQ(box.max()[0], 2.0) << "the upper corner leans to the side; the box of the corners reaches there";
    EXPECT_DOUBLE_EQ(box.max()[1], 1.0);
    EXPECT_DOUBLE_EQ(box.max()[2], 5.0);
}
