// SPDX-License-Identifier: Apache-2.0
// Every model of the package, kept as a geometry asset and loaded back: the nodes are those that went in, and so is the
// picture.
#include "AssetSession/kxAssetSession.h"
#include "AssetSession/kxNodeSaving.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Import/kxSceneImporter.h"
#include "Kernel/NodeUtils.h"
#include "Kernel/kxGeometryBuffer.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxOptimize.h"
#include "Kernel/kxScenegraph.h"
#include "Rendering/kxOSGWidget.h"
#include "Rendering/kxSceneRenderer.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/Transform3D.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>

namespace {

namespace fs = std::filesystem;

/// The environment names another place than the one chosen when configuring.
fs::path modelFolder()
{
    const char *named = std::getenv("KX_TEST_MODELS");
    return named && *named ? named : KX_TEST_MODELS;
}

std::vector<fs::path> modelsIn(const std::string &folder)
{
    static const std::set<std::string> extensions{".dae", ".fbx", ".glb", ".gltf", ".obj", ".ply", ".stl"};
    std::vector<fs::path> files;
    std::error_code missing;
    for (const auto &entry : fs::recursive_directory_iterator(modelFolder() / folder, missing))
        if (entry.is_regular_file() && extensions.count(entry.path().extension().string()) > 0)
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

/// A main view without a camera: saving renders no previews, which would take most of the time.
class BlindView final : public kxOSGWidget
{
public:
    osg::UberCameraPtr getUberCamera() const override { return nullptr; }

private:
    void cancelRefinement() override {}
};

class ModelRoundTripTest : public testing::TestWithParam<const char *>
{
protected:
    /// Framed as the asset root is, so that both pictures are taken from the same place.
    static osg::FCRef<osg::Image> pictureOf(const osg::NodePtr &node)
    {
        const osg::FCRef<osg::UberCamera> camera(osg::UberCamera::create());
        {
            const osg::CPEditor edit(camera.get(), osg::AllFieldMask);
            camera->setFrom({1.0, 0.7, 1.6});
            camera->zoomTo(node->getWorldVolume(), true, {0.0, 0.0, 0.0});
        }
        kxSceneRenderer::Settings settings;
        settings.width = 48;
        settings.height = 36;
        settings.samples = 2;
        return osg::FCRef<osg::Image>::adopt(kxSceneRenderer::render({node}, camera.get(), settings));
    }

    static void triangulate(const osg::NodePtr &root)
    {
        std::vector<osg::NodePtr> nodes;
        kxNodeUtils::getGeometryNodes(root, nodes);
        for (const osg::NodePtr &node : nodes)
            if (const auto geometry = osg::GeometryPtr::dcast(node->getCore());
                kxGeometryBuffer::needsTriangulation(nullptr, geometry))
                kxOptimize::triangulate(geometry, false);
    }

    void expectSameAfterwards(const fs::path &file) const
    {
        const auto scene = kxSceneImporter().importScene(file.string());
        if (!scene)
            return; // which files those are is tested with the importer
        const osg::NodePtr place =
            NodeUtils::createNodeWithCore(osg::Transform3D::create(), kxScenegraph::getRoot(), file.stem().string());
        {
            const osg::CPEditor edit(place, osg::Node::ChildrenFieldMask);
            place->addChild(scene.value().root.get());
        }
        const osg::FCRef<osg::Image> before = pictureOf(place);
        const auto saved =
            kxNodeSaving({}).save(place, "", QUrl::fromLocalFile(QString::fromStdString(_folder.file("lib"))));
        ASSERT_TRUE(saved) << saved.reason();

        const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(saved.value().uuid));

        ASSERT_TRUE(loaded);
        triangulate(place); // as loading does
        EXPECT_EQ(osg::findDifference(place, loaded.get()), std::nullopt);
        const osg::FCRef<osg::Image> after = pictureOf(loaded.get());
        ASSERT_TRUE(before && after);
        EXPECT_EQ(before->contentHash(), after->contentHash()) << "the picture";
        const osg::CPEditor edit(kxScenegraph::getRoot(), osg::Node::ChildrenFieldMask);
        kxScenegraph::getRoot()->subChild(place);
    }

    kxtest::TemporaryFolder _folder;
    BlindView view;
    kxAssetSession session;
};

} // namespace

TEST_P(ModelRoundTripTest, LoadsWhatWasSaved)
{
    const std::vector<fs::path> files = modelsIn(GetParam());
    ASSERT_FALSE(files.empty());
    for (const fs::path &file : files) {
        SCOPED_TRACE(file.string());
        expectSameAfterwards(file);
    }
}

INSTANTIATE_TEST_SUITE_P(Package, ModelRoundTripTest,
                         testing::Values("Collada", "FBX", "OBJ", "PLY", "STL", "glTF", "glTF2"),
                         [](const auto &folder) { return std::string(folder.param); });
