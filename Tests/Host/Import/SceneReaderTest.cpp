// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/SceneReader.h"

#include "SceneGraph/CameraCore.h"
#include "SceneGraph/Light.h"
#include "SceneGraph/NameAttachment.h"
#include "SmallModels.h"

#include <assimp/Importer.hpp>
#include <assimp/config.h>
#include <assimp/scene.h>

#include <gmock/gmock.h>

#include <cmath>
#include <utility>

using kximport::ImportKind;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class SceneReaderTest : public testing::Test
{
protected:
    kxImportedScene read(const std::string &path, ImportKind kind = ImportKind::Scene)
    {
        auto result = kximport::readForeignScene(path, kind, folder.string(), notes);
        EXPECT_TRUE(result) << (result ? "" : result.reason());
        return result ? std::move(result.value()) : kxImportedScene();
    }
    kxImportedScene readText(const std::string &name, const std::string &text)
    {
        return read(folder.write(name, text));
    }
    /// The only material of a glTF file.
    osg::UBRDFMaterialPtr gltfMaterial(const std::string &material, const std::string &more = "")
    {
        kept = readText("Dreieck.gltf", kxtest::gltfTriangle(material, more));
        if (kept.materials.size() != 1) {
            ADD_FAILURE() << kept.materials.size() << " materials";
            return nullptr;
        }
        return osg::dcast<osg::UBRDFMaterialPtr>(kept.materials[0].get());
    }

    kxtest::TemporaryFolder folder;
    kximport::ImportNotes notes{"model"};
    kxImportedScene kept;
};

TEST_F(SceneReaderTest, ReadsMetallicRoughness)
{
    const auto material = gltfMaterial(R"({"name": "Lack rot", "doubleSided": true, "emissiveFactor": [0.5, 0.25, 0],
        "pbrMetallicRoughness": {"baseColorFactor": [0.1, 0.2, 0.3, 0.4], "metallicFactor": 0.6, "roughnessFactor": 0.7}})");

    ASSERT_TRUE(material);
    EXPECT_EQ(osg::getName(material), "Lack rot");
    EXPECT_EQ(material->getDiffuseColor(), (osg::Color4f{0.1F, 0.2F, 0.3F, 1.0F})); // "OPAQUE" ignores the alpha
    EXPECT_EQ(material->getMetalness(), 0.6F);
    EXPECT_EQ(material->getRoughness(), 0.7F);
    EXPECT_EQ(material->getIncandescenceColor(), (osg::Color4f{0.5F, 0.25F, 0.0F, 1.0F}));
    EXPECT_TRUE(material->getIsTwoSided());
    EXPECT_EQ(material->getIndexOfRefraction(), 1.5F);
    EXPECT_EQ(material->getSpecularColor(), (osg::Color4f{1, 1, 1, 1}));
    EXPECT_EQ(material->getTransparency(), 0.0F);
}

TEST_F(SceneReaderTest, TakesTheDefaultsOfGltf)
{
    const auto material = gltfMaterial(R"({"name": "Leer"})");

    ASSERT_TRUE(material);
    EXPECT_EQ(material->getDiffuseColor(), (osg::Color4f{1, 1, 1, 1}));
    EXPECT_EQ(material->getMetalness(), 1.0F);
    EXPECT_EQ(material->getRoughness(), 1.0F);
    EXPECT_FALSE(material->getIsTwoSided());
}

TEST_F(SceneReaderTest, ReadsClearCoatTransmissionSheenAndIndex)
{
    const auto material = gltfMaterial(R"({"name": "Glas", "pbrMetallicRoughness": {"metallicFactor": 0,
        "baseColorFactor": [0.5, 0.6, 0.7, 1]},
        "extensions": {"KHR_materials_clearcoat": {"clearcoatFactor": 0.25, "clearcoatRoughnessFactor": 0.125},
                       "KHR_materials_transmission": {"transmissionFactor": 0.75},
                       "KHR_materials_sheen": {"sheenColorFactor": [0.1, 0.3, 0.2], "sheenRoughnessFactor": 0.5},
                       "KHR_materials_ior": {"ior": 1.25}}})",
                                       R"(, "extensionsUsed": ["KHR_materials_clearcoat", "KHR_materials_transmission",
        "KHR_materials_sheen", "KHR_materials_ior"])");

    ASSERT_TRUE(material);
    EXPECT_EQ(material->getClearCoat(), 0.25F);
    EXPECT_EQ(material->getClearCoatRoughness(), 0.125F);
    EXPECT_EQ(material->getTransparency(), 0.75F);
    EXPECT_EQ(material->getTransmissionColor(), (osg::Color4f{0.5F, 0.6F, 0.7F, 1.0F}));
    EXPECT_FLOAT_EQ(material->getSheen(), 0.3F);
    EXPECT_EQ(material->getIndexOfRefraction(), 1.25F);
}

TEST_F(SceneReaderTest, PutsTheChannelsOfMetallicRoughnessTogether)
{
    kxtest::writeColumn(folder, "mr.png", 3, {0, 128, 255});

    const auto material =
        gltfMaterial(R"({"name": "M", "pbrMetallicRoughness": {"metallicRoughnessTexture": {"index": 0}}})",
                     kxtest::gltfTextures({"mr.png"}));

    ASSERT_TRUE(material);
    ASSERT_TRUE(material->getRoughnessTexture());
    EXPECT_EQ(material->getRoughnessTexture(), material->getMetalnessTexture());
    EXPECT_FALSE(material->getRoughnessTexture()->getIsSrgb());
    EXPECT_EQ(material->getRoughnessTexture()->getWrapU(), static_cast<std::uint32_t>(osg::TextureWrap::Clamp));
    EXPECT_EQ(material->getRoughnessTexture()->getWrapV(), static_cast<std::uint32_t>(osg::TextureWrap::Mirror));
}

TEST_F(SceneReaderTest, LaysTexturesTheRightWayUp)
{
    kxtest::writeColumn(folder, "oben rot.png", 3, {255, 0, 0, 0, 0, 255});

    const auto material = gltfMaterial(R"({"name": "M", "pbrMetallicRoughness": {"baseColorTexture": {"index": 0}}})",
                                       kxtest::gltfTextures({"oben%20rot.png"}));

    // The first corner has the texture coordinates of the upper left in glTF, which is red.
    ASSERT_TRUE(material && material->getDiffuseTexture());
    const auto geometry = kxtest::geometryOf(kxtest::geometryNodes(kept.root)[0]);
    EXPECT_EQ(geometry->getTexCoords()[0], (osg::Vec2f{0.0F, 1.0F}));
    EXPECT_EQ(geometry->getTexCoords()[2], (osg::Vec2f{0.0F, 0.0F}));
    EXPECT_EQ(material->getDiffuseTexture()->getImage()->pixel(0, 1), (osg::Vec4f{1, 0, 0, 1}));
    EXPECT_EQ(osg::getName(material->getDiffuseTexture()->getImage()), "oben rot.png");
    EXPECT_THAT(notes.lines(), IsEmpty());
}

TEST_F(SceneReaderTest, SharesThePictureThatTwoTexturesShow)
{
    kxtest::writeColumn(folder, "a.png", 3, {255, 0, 0});

    const auto material = gltfMaterial(R"({"name": "M", "normalTexture": {"index": 1, "scale": 0.5},
        "pbrMetallicRoughness": {"baseColorTexture": {"index": 0}}})",
                                       kxtest::gltfTextures({"a.png", "./a.png"}));

    ASSERT_TRUE(material && material->getDiffuseTexture() && material->getNormalTexture());
    EXPECT_EQ(material->getDiffuseTexture()->getImage(), material->getNormalTexture()->getImage());
    EXPECT_EQ(material->getBumpStrength(), 0.5F);
}

// In glTF: (u', v') = offset + anticlockwise turn of (scale x (u, v)), all from the upper left.
TEST_F(SceneReaderTest, PlacesTexturesAsTheTransformSays)
{
    kxtest::writeColumn(folder, "a.png", 3, {255, 0, 0});
    const auto material =
        gltfMaterial(R"({"name": "M", "pbrMetallicRoughness": {"baseColorTexture": {"index": 0,
        "extensions": {"KHR_texture_transform": {"offset": [0.1, 0.2], "rotation": 0.5, "scale": [2, 3]}}}}})",
                     kxtest::gltfTextures({"a.png"}) + R"(, "extensionsUsed": ["KHR_texture_transform"])");
    ASSERT_TRUE(material && material->getDiffuseTexture());
    const osg::Texture &texture = *material->getDiffuseTexture();

    const double c = std::cos(0.5);
    const double s = std::sin(0.5);
    for (const auto &[u, v] : {std::pair{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}, {0.3, 0.8}}) {
        const double wantedU = 0.1 + c * 2 * u + s * 3 * v;
        const double wantedV = 0.2 - s * 2 * u + c * 3 * v;
        const double ownC = std::cos(static_cast<double>(texture.getRotation()));
        const double ownS = std::sin(static_cast<double>(texture.getRotation()));
        const double x = static_cast<double>(texture.getScale()[0]) * u;
        const double y = static_cast<double>(texture.getScale()[1]) * (1.0 - v);
        EXPECT_NEAR(ownC * x - ownS * y + static_cast<double>(texture.getOffset()[0]), wantedU, 1e-5);
        EXPECT_NEAR(ownS * x + ownC * y + static_cast<double>(texture.getOffset()[1]), 1.0 - wantedV, 1e-5);
    }
}

TEST_F(SceneReaderTest, IgnoresTheAlphaOfAnOpaqueTexture)
{
    kxtest::writeColumn(folder, "a.png", 4, {1, 2, 3, 77});
    const std::string color = R"("pbrMetallicRoughness": {"baseColorTexture": {"index": 0}})";

    const auto material = gltfMaterial(R"({"name": "M", )" + color + "}", kxtest::gltfTextures({"a.png"}));

    EXPECT_THAT(material->getDiffuseTexture()->getImage()->getPixels().values(), ElementsAre(1, 2, 3));
}

TEST_F(SceneReaderTest, KeepsTheAlphaOfABlendedTexture)
{
    kxtest::writeColumn(folder, "a.png", 4, {1, 2, 3, 77});

    const auto material = gltfMaterial(R"({"name": "M", "alphaMode": "BLEND", "pbrMetallicRoughness": {
        "baseColorFactor": [1, 1, 1, 0.5], "baseColorTexture": {"index": 0}}})",
                                       kxtest::gltfTextures({"a.png"}));

    EXPECT_EQ(material->getDiffuseColor()[3], 0.5F);
    EXPECT_THAT(material->getDiffuseTexture()->getImage()->getPixels().values(), ElementsAre(1, 2, 3, 77));
}

TEST_F(SceneReaderTest, CutsTheAlphaOfAMask)
{
    kxtest::writeColumn(folder, "a.png", 4, {1, 2, 3, 127, 4, 5, 6, 129});

    const auto material =
        gltfMaterial(R"({"name": "M", "alphaMode": "MASK", "alphaCutoff": 0.25, "pbrMetallicRoughness": {
        "baseColorFactor": [1, 1, 1, 0.5], "baseColorTexture": {"index": 0}}})",
                     kxtest::gltfTextures({"a.png"}));

    EXPECT_EQ(material->getDiffuseColor()[3], 1.0F);
    EXPECT_THAT(material->getDiffuseTexture()->getImage()->getPixels().values(), ElementsAre(4, 5, 6, 255, 1, 2, 3, 0));
}

TEST_F(SceneReaderTest, CutsAMaskWithoutTexture)
{
    const auto material = gltfMaterial(
        R"({"name": "M", "alphaMode": "MASK", "pbrMetallicRoughness": {"baseColorFactor": [1, 1, 1, 0.4]}})");

    EXPECT_EQ(material->getDiffuseColor()[3], 0.0F);
}

TEST_F(SceneReaderTest, LetsUnlitSurfacesShine)
{
    const auto material = gltfMaterial(R"({"name": "M", "pbrMetallicRoughness": {"baseColorFactor": [0.2, 0.4, 0.6, 1]},
        "extensions": {"KHR_materials_unlit": {}}})",
                                       R"(, "extensionsUsed": ["KHR_materials_unlit"])");

    EXPECT_EQ(material->getIncandescenceColor(), (osg::Color4f{0.2F, 0.4F, 0.6F, 1.0F}));
    EXPECT_EQ(material->getDiffuseColor(), (osg::Color4f{0, 0, 0, 1}));
    EXPECT_EQ(material->getSpecularColor(), (osg::Color4f{0, 0, 0, 1}));
}

TEST_F(SceneReaderTest, ConvertsSpecularGlossiness)
{
    const auto material = gltfMaterial(R"({"name": "Gold", "extensions": {"KHR_materials_pbrSpecularGlossiness": {
        "diffuseFactor": [0, 0, 0, 1], "specularFactor": [1, 0.77, 0.34], "glossinessFactor": 0.75}}})",
                                       R"(, "extensionsUsed": ["KHR_materials_pbrSpecularGlossiness"])");

    EXPECT_NEAR(material->getMetalness(), 1.0F, 1e-3F);
    EXPECT_NEAR(material->getDiffuseColor()[1], 0.77F, 1e-3F);
    EXPECT_FLOAT_EQ(material->getRoughness(), 0.25F);
}

TEST_F(SceneReaderTest, DecodesAPictureWithinTheFile)
{
    kxtest::writeColumn(folder, "a.png", 3, {11, 22, 33});
    const std::string uri = "data:image/png;base64," + kxtest::base64(folder.read("a.png"));

    const auto material = gltfMaterial(R"({"name": "M", "pbrMetallicRoughness": {"baseColorTexture": {"index": 0}}})",
                                       kxtest::gltfTextures({uri}));

    ASSERT_TRUE(material && material->getDiffuseTexture());
    EXPECT_THAT(material->getDiffuseTexture()->getImage()->getPixels().values(), ElementsAre(11, 22, 33));
}

TEST_F(SceneReaderTest, NotesAMissingTextureAndGoesOn)
{
    const auto material = gltfMaterial(R"({"name": "M", "pbrMetallicRoughness": {"baseColorTexture": {"index": 0}}})",
                                       kxtest::gltfTextures({"fehlt.png"}));

    ASSERT_TRUE(material);
    EXPECT_FALSE(material->getDiffuseTexture());
    EXPECT_THAT(notes.lines(), ElementsAre("'model': the texture 'fehlt.png' is missing"));
}

TEST_F(SceneReaderTest, ReadsMtl)
{
    kxtest::writeColumn(folder, "Stoff.png", 3, {1, 2, 3});
    folder.write("a.mtl", "newmtl Stoff blau\nKd 0.1 0.2 0.3\nKs 0.4 0.4 0.4\nNs 30\nd 0.25\nNi 1.4\nKe 2 1 0\n"
                          "map_Kd STOFF.PNG\nnewmtl unbenutzt\nKd 1 0 0\n");

    const kxImportedScene scene = readText("a.obj", kxtest::objSquare("mtllib a.mtl\nusemtl Stoff blau\n"));

    ASSERT_EQ(scene.materials.size(), 2U);
    const auto material = osg::dcast<osg::UBRDFMaterialPtr>(scene.materials[0].get());
    EXPECT_EQ(osg::getName(material), "Stoff blau");
    EXPECT_EQ(material->getDiffuseColor(), (osg::Color4f{0.1F, 0.2F, 0.3F, 1.0F}));
    EXPECT_FLOAT_EQ(material->getRoughness(), 0.5F);
    EXPECT_EQ(material->getTransparency(), 0.75F);
    EXPECT_EQ(material->getIndexOfRefraction(), 1.4F);
    EXPECT_EQ(material->getIncandescenceColor(), (osg::Color4f{1.0F, 0.5F, 0.0F, 2.0F}));
    EXPECT_TRUE(material->getDiffuseTexture());
    EXPECT_EQ(osg::getName(scene.materials[1].get()), "unbenutzt");
    EXPECT_THAT(notes.lines(), IsEmpty());
}

TEST_F(SceneReaderTest, KeepsPolygonsAndSharesCorners)
{
    const kxImportedScene scene = readText("a.obj", kxtest::objSquare("o Platte\n"));

    const auto nodes = kxtest::geometryNodes(scene.root);
    ASSERT_EQ(nodes.size(), 1U);
    const auto geometry = kxtest::geometryOf(nodes[0]);
    EXPECT_THAT(geometry->getFaceSizes().values(), ElementsAre(4));
    EXPECT_EQ(geometry->getPositions().size(), 4U);
    EXPECT_TRUE(geometry->isValid());
    EXPECT_EQ(scene.root->getWorldVolume().max(), (osg::Vec3d{2.0, 3.0, 0.0}));
    EXPECT_EQ(osg::getName(nodes[0]), "Platte");
}

TEST_F(SceneReaderTest, NotesAMissingMaterialLibrary)
{
    const kxImportedScene scene = readText("a.obj", kxtest::objSquare("mtllib fort.mtl\nusemtl Holz\n"));

    EXPECT_TRUE(scene.root);
    EXPECT_THAT(notes.lines(), testing::Contains("'model': the material library 'fort.mtl' is missing"));
}

TEST_F(SceneReaderTest, ReadsMaterialsAloneWithoutATree)
{
    folder.write("a.mtl", "newmtl A\nKd 1 0 0\nnewmtl B\nKd 0 1 0\n");
    const std::string path = folder.write("a.obj", kxtest::objSquare("mtllib a.mtl\nusemtl B\n"));

    const kxImportedScene scene = read(path, ImportKind::Materials);

    EXPECT_FALSE(scene.root);
    EXPECT_EQ(scene.materials.size(), 2U);
}

TEST_F(SceneReaderTest, ReadsCamerasAndLightsOfGltf)
{
    const std::string more = R"(, "cameras": [{"type": "perspective", "perspective": {"yfov": 0.6, "aspectRatio": 1.5,
        "znear": 0.1, "zfar": 100}}],
        "extensionsUsed": ["KHR_lights_punctual"],
        "extensions": {"KHR_lights_punctual": {"lights": [{"type": "point", "intensity": 683, "color": [1, 0.5, 0]}]}})";
    std::string text = kxtest::gltfTriangle(R"({"name": "A"})", more);
    const std::string nodes = R"("nodes": [{"name": "Dreieck", "mesh": 0)";
    text.replace(text.find(nodes), nodes.size(),
                 R"("nodes": [{"name": "Dreieck", "mesh": 0, "children": [1, 2]},
                 {"name": "Kamera", "camera": 0, "translation": [1, 2, 3]},
                 {"name": "Lampe", "extensions": {"KHR_lights_punctual": {"light": 0}})");

    const kxImportedScene scene = readText("a.gltf", text);

    const auto camera = kxtest::findNode(scene.root, "Kamera");
    ASSERT_TRUE(camera && camera->getNChildren() == 1);
    const auto cameraCore = osg::dcast<osg::CameraCorePtr>(camera->getChild(0)->getCore());
    ASSERT_TRUE(cameraCore);
    EXPECT_NEAR(cameraCore->getCamera()->getFieldOfView(), 0.6, 1e-5);
    EXPECT_EQ(osg::transformPoint(camera->getChild(0)->getToWorld(), {0, 0, 0}), (osg::Vec3d{1, 2, 3}));
    const auto lamp = kxtest::findNode(scene.root, "Lampe");
    ASSERT_TRUE(lamp && lamp->getNChildren() == 1);
    const auto light = osg::dcast<osg::LightPtr>(lamp->getChild(0)->getCore());
    ASSERT_TRUE(light);
    EXPECT_FLOAT_EQ(light->getIntensity(), 1.0F);
    EXPECT_EQ(light->getColor(), (osg::Color4f{1.0F, 0.5F, 0.0F, 1.0F}));
}

TEST_F(SceneReaderTest, SaysWhyAFileCannotBeRead)
{
    const auto result =
        kximport::readForeignScene(folder.write("a.gltf", "{\"asset\": {\"version\": \"2.0\"}, \"scene\": "),
                                   ImportKind::Scene, folder.string(), notes);

    ASSERT_FALSE(result);
    EXPECT_NE(result.reason(), "");
    EXPECT_THAT(result.reason(), testing::Not(HasSubstr("\n")));
}

TEST_F(SceneReaderTest, ReadsAPictureAsEnvironment)
{
    kxtest::writeColumn(folder, "Wald am See.exr", 3, {255, 0, 0, 0, 255, 0});

    const auto result = kximport::readForeignEnvironment(folder.file("Wald am See.exr"));

    ASSERT_TRUE(result);
    EXPECT_EQ(osg::getName(result.value().get()), "Wald am See");
    EXPECT_EQ(result.value()->getImage()->getHeight(), 2U);
    EXPECT_TRUE(result.value()->getIsVisible());
}

TEST_F(SceneReaderTest, SaysWhyAPictureCannotBeRead)
{
    const std::string path = folder.write("a.hdr", "no picture");

    const auto result = kximport::readForeignEnvironment(path);

    ASSERT_FALSE(result);
    EXPECT_THAT(result.reason(), testing::Not(HasSubstr(path)));
    EXPECT_NE(result.reason(), "");
}

TEST_F(SceneReaderTest, LetsEverythingGo)
{
    kxtest::writeColumn(folder, "a.png", 3, {255, 0, 0});
    const std::string path =
        folder.write("a.gltf", kxtest::gltfTriangle(R"({"name": "M", "normalTexture": {"index": 0}})",
                                                    kxtest::gltfTextures({"a.png"})));
    const std::size_t before = kxtest::livingContainers();
    {
        const kxImportedScene scene = read(path);
        EXPECT_GT(kxtest::livingContainers(), before);
    }

    EXPECT_EQ(kxtest::livingContainers(), before);
}

/// The boxes of all meshes in the world, parents first, as the parser says.
void collectBoxes(const aiScene &scene, const aiNode &node, const aiMatrix4x4 &above, std::vector<osg::Volume> &boxes)
{
    const aiMatrix4x4 world = above * node.mTransformation;
    for (unsigned i = 0; i < node.mNumMeshes; ++i) {
        const aiMesh &mesh = *scene.mMeshes[node.mMeshes[i]];
        osg::Volume box;
        for (unsigned j = 0; j < mesh.mNumVertices; ++j) {
            const aiVector3D p = world * mesh.mVertices[j];
            box.extend({static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z)});
        }
        boxes.push_back(box);
    }
    for (unsigned i = 0; i < node.mNumChildren; ++i)
        collectBoxes(scene, *node.mChildren[i], world, boxes);
}

osg::Volume boxOf(const osg::NodePtr &node)
{
    osg::Volume box;
    const osg::Matrix world = node->getToWorld();
    for (const osg::Vec3f &p : kxtest::geometryOf(node)->getPositions())
        box.extend(osg::transformPoint(
            world, {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])}));
    return box;
}

class SceneReaderPlacesTest : public SceneReaderTest, public testing::WithParamInterface<const char *>
{};

TEST_P(SceneReaderPlacesTest, EveryMeshWhereTheFileHasIt)
{
    const std::string path = std::string(KX_TEST_MODELS) + "/" + GetParam();
    Assimp::Importer importer;
    importer.SetPropertyBool(AI_CONFIG_IMPORT_FBX_PRESERVE_PIVOTS, false);
    const aiScene *parsed = importer.ReadFile(path, 0);
    ASSERT_TRUE(parsed);
    std::vector<osg::Volume> wanted;
    collectBoxes(*parsed, *parsed->mRootNode, aiMatrix4x4(), wanted);

    const kxImportedScene scene = read(path);

    const auto nodes = kxtest::geometryNodes(scene.root);
    ASSERT_EQ(nodes.size(), wanted.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const osg::Volume box = boxOf(nodes[i]);
        for (std::size_t j = 0; j < 3; ++j) {
            const double tolerance = 1e-5 * (1.0 + std::abs(wanted[i].max()[j]) + std::abs(wanted[i].min()[j]));
            EXPECT_NEAR(box.min()[j], wanted[i].min()[j], tolerance) << osg::getName(nodes[i]);
            EXPECT_NEAR(box.max()[j], wanted[i].max()[j], tolerance) << osg::getName(nodes[i]);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Models, SceneReaderPlacesTest,
                         testing::Values("glTF2/2CylinderEngine-glTF-Binary/2CylinderEngine.glb",
                                         "FBX/cubes_with_mirroring_and_pivot.fbx", "FBX/spider.fbx",
                                         "Collada/COLLADA.dae", "Collada/teapot_instancenodes.DAE", "OBJ/spider.obj"));

} // namespace
