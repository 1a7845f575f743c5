// SPDX-License-Identifier: Apache-2.0
#include "Import/kxSceneImporter.h"

#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/UBRDFMaterial.h"

#include "SmallModels.h"
#include "Support/RecordedLog.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

namespace fs = std::filesystem;

/// The environment names another place than the one chosen when configuring.
fs::path modelFolder()
{
    const char *named = std::getenv("KX_TEST_MODELS");
    return named && *named ? named : KX_TEST_MODELS;
}

/// Files that no parser accepts, and part of the reason; each was looked at.
const std::map<std::string, std::string> &rejected()
{
    static const std::map<std::string, std::string> table{
        // Every zero byte of this binary file became a blank.
        {"FBX/transparentTest.fbx", "block offset is out of range"},
        // Binary glTF of version 1, whose header is of another make.
        {"glTF/BoxTextured-glTF-Binary/BoxTextured.glb", "no parser knows this kind of file"},
        {"glTF2/IndexOutOfRange/AllIndicesOutOfRange.gltf", "Mesh \"Mesh\" has no faces"},
        {"glTF2/MissingBin/BoxTextured.gltf", "could not open referenced file \"BoxTextured0.bin\""},
        {"glTF2/RecursiveNodes/RecursiveNodes.gltf", "has recursive reference to itself"},
        {"glTF2/SchemaFailures/sceneWrongType.gltf", "Member \"scene\" was not of type \"uint\""},
        {"glTF2/TestNoRootNode/NoScene.gltf", "No scene"},
        // It has a second set of texture coordinates and no first one.
        {"glTF2/issue_3269/texcoord_crash.gltf", "must start with 0"},
        {"glTF2/wrongTypes/badArray.gltf", "Member \"primitives\" was not of type \"array\""},
        {"glTF2/wrongTypes/badExtension.gltf", "Member \"KHR_texture_transform\" was not of type \"object\""},
        {"glTF2/wrongTypes/badNumber.gltf", "Member \"scale\" was not of type \"number\""},
        {"glTF2/wrongTypes/badObject.gltf", "Member \"pbrMetallicRoughness\" was not of type \"object\""},
        {"glTF2/wrongTypes/badString.gltf", "Member \"name\" was not of type \"string\""},
        {"glTF2/wrongTypes/badUint.gltf", "Member \"index\" was not of type \"uint\""},
        // Claims so many faces that no machine holds them.
        {"invalid/OutOfMemory.off", "of memory"},
        {"invalid/empty.3ds", "the file is empty"},
        {"invalid/empty.ase", "the file is empty"},
        {"invalid/empty.lwo", "the file is empty"},
        {"invalid/empty.md5mesh", "the file is empty"},
        {"invalid/empty.obj", "the file is empty"},
        {"invalid/empty.off", "the file is empty"},
        {"invalid/empty.ply", "the file is empty"},
        {"invalid/empty.raw", "the file is empty"},
        {"invalid/empty.smd", "the file is empty"},
        {"invalid/empty.x", "the file is empty"},
        {"invalid/emptyIrrMesh.xml", "Unable to read a mesh from this file"},
        // Its faces have corners that are not there.
        {"invalid/malformed.obj", "Invalid face index"},
        {"invalid/readme.txt", "no parser knows this kind of file"}};
    return table;
}

/// Files that are fine, and hold nothing with a face: points, lines, or no node at all.
const std::set<std::string> &withoutFaces()
{
    static const std::set<std::string> table{
        "OBJ/point_cloud.obj",
        "OBJ/testline.obj",
        "OBJ/testpoints.obj",
        "PLY/issue623.ply",
        "PLY/points.ply",
        "PLY/pond.0.ply",
        "glTF2/BoxWithInfinites-glTF-Binary/BoxWithInfinites.glb", // every face has a corner at infinity
        "glTF2/TestNoRootNode/SceneWithoutNodes.gltf",
        "glTF2/glTF-Asset-Generator/Mesh_PrimitiveMode/Mesh_PrimitiveMode_00.gltf",
        "glTF2/glTF-Asset-Generator/Mesh_PrimitiveMode/Mesh_PrimitiveMode_01.gltf",
        "glTF2/glTF-Asset-Generator/Mesh_PrimitiveMode/Mesh_PrimitiveMode_02.gltf",
        "glTF2/glTF-Asset-Generator/Mesh_PrimitiveMode/Mesh_PrimitiveMode_03.gltf",
        "glTF2/glTF-Asset-Generator/Mesh_PrimitiveMode/Mesh_PrimitiveMode_07.gltf",
        "glTF2/glTF-Asset-Generator/Mesh_PrimitiveMode/Mesh_PrimitiveMode_08.gltf",
        "glTF2/glTF-Asset-Generator/Mesh_PrimitiveMode/Mesh_PrimitiveMode_09.gltf",
        "glTF2/glTF-Asset-Generator/Mesh_PrimitiveMode/Mesh_PrimitiveMode_10.gltf"};
    return table;
}

bool isWanted(const fs::path &path)
{
    static const std::set<std::string> extensions{".dae", ".fbx", ".glb", ".gltf", ".obj", ".ply", ".stl", ".zae"};
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extensions.count(extension) > 0 || path.parent_path().filename() == "invalid";
}

std::vector<std::string> modelFiles()
{
    std::vector<std::string> files;
    std::error_code missing;
    for (const auto &entry : fs::recursive_directory_iterator(modelFolder(), missing))
        if (entry.is_regular_file() && isWanted(entry.path()))
            files.push_back(fs::relative(entry.path(), modelFolder()).string());
    std::sort(files.begin(), files.end());
    return files;
}

void expectSound(const kxImportedScene &scene)
{
    ASSERT_TRUE(scene.root);
    for (const osg::NodePtr &node : kxtest::geometryNodes(scene.root)) {
        EXPECT_TRUE(kxtest::geometryOf(node)->isValid());
        EXPECT_GT(kxtest::geometryOf(node)->getFaceCount(), 0U);
        EXPECT_TRUE(osg::dcast<osg::UBRDFMaterialPtr>(kxtest::geometryOf(node)->getMaterial()));
    }
}

class kxSceneImporterModelsTest : public testing::TestWithParam<std::string>
{
protected:
    kxtest::RecordedLog log;
};

TEST_P(kxSceneImporterModelsTest, ReadsOrRejects)
{
    const std::string path = (modelFolder() / GetParam()).string();
    const auto refusal = rejected().find(GetParam());
    const std::size_t before = kxtest::livingContainers();
    {
        const auto result = kxSceneImporter().importScene(path);

        if (refusal == rejected().end()) {
            ASSERT_TRUE(result) << result.reason();
            expectSound(result.value());
            EXPECT_EQ(kxtest::geometryNodes(result.value().root).empty(), withoutFaces().count(GetParam()) > 0);
        } else {
            ASSERT_FALSE(result);
            EXPECT_THAT(result.reason(), HasSubstr("Cannot import '" + path + "': "));
            EXPECT_THAT(result.reason(), HasSubstr(refusal->second));
            EXPECT_THAT(log.lines(), IsEmpty());
            EXPECT_EQ(kxtest::livingContainers(), before);
        }
    }
    EXPECT_EQ(kxtest::livingContainers(), before);
}

INSTANTIATE_TEST_SUITE_P(Package, kxSceneImporterModelsTest, testing::ValuesIn(modelFiles()), [](const auto &model) {
    std::string name = model.param;
    for (char &c : name)
        if (!std::isalnum(static_cast<unsigned char>(c)))
            c = '_';
    return name;
});

TEST(kxSceneImporterPackageTest, HasEveryKindOfFile)
{
    std::map<std::string, int> counts;
    for (const std::string &file : modelFiles())
        ++counts[file.substr(0, file.find('/'))];

    EXPECT_GE(counts["Collada"], 25);
    EXPECT_GE(counts["FBX"], 19);
    EXPECT_GE(counts["OBJ"], 20);
    EXPECT_GE(counts["PLY"], 8);
    EXPECT_GE(counts["STL"], 8);
    EXPECT_GE(counts["glTF2"], 40);
    EXPECT_GE(counts["invalid"], 15);
}

/// What exactly is in some of the files.
class kxSceneImporterContentTest : public testing::Test
{
protected:
    kxImportedScene read(const std::string &file)
    {
        auto result = kxSceneImporter().importScene((modelFolder() / file).string());
        EXPECT_TRUE(result) << result.reason();
        return result ? result.value() : kxImportedScene();
    }
    osg::UBRDFMaterialPtr materialNamed(const kxImportedScene &scene, const std::string &name)
    {
        for (const auto &material : scene.materials)
            if (osg::getName(material.get()) == name)
                return osg::dcast<osg::UBRDFMaterialPtr>(material.get());
        return nullptr;
    }

    kxtest::RecordedLog log;
};

TEST_F(kxSceneImporterContentTest, ReadsTheTexturedBoxFromEachOfItsForms)
{
    for (const char *file : {"glTF2/BoxTextured-glTF/BoxTextured.gltf", "glTF2/BoxTextured-glTF-Binary/BoxTextured.glb",
                             "glTF2/BoxTextured-glTF-Embedded/BoxTextured.gltf"}) {
        const kxImportedScene scene = read(file);

        const auto nodes = kxtest::geometryNodes(scene.root);
        ASSERT_EQ(nodes.size(), 1U) << file;
        const auto geometry = kxtest::geometryOf(nodes[0]);
        EXPECT_EQ(geometry->getFaceCount(), 12U);
        EXPECT_EQ(geometry->getPositions().size(), 24U);
        EXPECT_EQ(geometry->getNormals().size(), 24U);
        ASSERT_EQ(scene.materials.size(), 1U);
        const auto material = osg::dcast<osg::UBRDFMaterialPtr>(scene.materials[0].get());
        EXPECT_EQ(osg::getName(material), "Texture");
        EXPECT_EQ(material->getMetalness(), 0.0F);
        ASSERT_TRUE(material->getDiffuseTexture()) << file;
        EXPECT_EQ(material->getDiffuseTexture()->getImage()->getWidth(), 211U);
        EXPECT_EQ(material->getDiffuseTexture()->getImage()->getHeight(), 211U);
    }
}

TEST_F(kxSceneImporterContentTest, ReadsTheEmbeddedPictureAsTheOneBesideTheFile)
{
    const auto beside = read("glTF2/BoxTextured-glTF/BoxTextured.gltf");
    const auto embedded = read("glTF2/BoxTextured-glTF-Binary/BoxTextured.glb");

    const auto first = osg::dcast<osg::UBRDFMaterialPtr>(beside.materials[0].get());
    const auto second = osg::dcast<osg::UBRDFMaterialPtr>(embedded.materials[0].get());
    EXPECT_EQ(first->getDiffuseTexture()->getImage()->contentHash(),
              second->getDiffuseTexture()->getImage()->contentHash());
}

TEST_F(kxSceneImporterContentTest, ReadsClearCoats)
{
    const kxImportedScene scene = read("glTF2/ClearCoat-glTF/ClearCoatTest.gltf");

    const auto base = materialNamed(scene, "Partial_Base");
    const auto coated = materialNamed(scene, "Partial_Coated");
    ASSERT_TRUE(base && coated);
    EXPECT_EQ(base->getClearCoat(), 0.0F);
    EXPECT_EQ(coated->getClearCoat(), 1.0F);
    EXPECT_EQ(coated->getClearCoatRoughness(), 0.03F);
    EXPECT_EQ(coated->getRoughness(), 0.44F);
    EXPECT_NEAR(coated->getDiffuseColor()[2], 0.109462F, 1e-6F);
}

TEST_F(kxSceneImporterContentTest, ReadsTheSpiderWithItsTextures)
{
    const kxImportedScene scene = read("OBJ/spider.obj");

    EXPECT_EQ(kxtest::geometryNodes(scene.root).size(), 19U);
    const auto skin = materialNamed(scene, "Skin");
    ASSERT_TRUE(skin && skin->getDiffuseTexture());
    EXPECT_FLOAT_EQ(skin->getDiffuseColor()[0], 0.827451F);
    EXPECT_EQ(skin->getDiffuseTexture()->getImage()->getWidth(), 250U);
    EXPECT_EQ(osg::getName(skin->getDiffuseTexture()->getImage()), "wal67ar_small.jpg");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(kxSceneImporterContentTest, ReadsTheEmbeddedTextureOfAnFbxFile)
{
    const kxImportedScene scene = read("FBX/embedded_ascii/box.FBX");

    ASSERT_EQ(scene.materials.size(), 1U);
    const auto material = osg::dcast<osg::UBRDFMaterialPtr>(scene.materials[0].get());
    EXPECT_EQ(osg::getName(material), "03 - Default");
    EXPECT_TRUE(material->getDiffuseTexture());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(kxSceneImporterContentTest, ReadsPhysicalMaterialsOfFbx)
{
    const kxImportedScene scene = read("FBX/maxPbrMaterial_metalRough.fbx");

    const auto material = materialNamed(scene, "PBR Material");
    ASSERT_TRUE(material);
    EXPECT_EQ(material->getMetalness(), 0.25F);
    EXPECT_EQ(material->getRoughness(), 0.5F);
    EXPECT_EQ(material->getDiffuseColor(), (osg::Color4f{0, 1, 1, 1}));
}

TEST_F(kxSceneImporterContentTest, KeepsNamesInOtherScripts)
{
    EXPECT_TRUE(kxtest::findNode(read("FBX/cubes_with_names.fbx").root, "Куб1"));
}

TEST_F(kxSceneImporterContentTest, CountsTheTrianglesOfTheOtherFormats)
{
    const auto countOf = [this](const std::string &file) {
        std::size_t count = 0;
        const kxImportedScene scene = read(file);
        for (const osg::NodePtr &node : kxtest::geometryNodes(scene.root))
            count += kxtest::geometryOf(node)->getFaceCount();
        return count;
    };

    EXPECT_EQ(countOf("PLY/cube.ply"), 6U);
    EXPECT_EQ(countOf("PLY/cube_binary.ply"), 12U);
    EXPECT_EQ(countOf("STL/triangle.stl"), 1U);
    EXPECT_EQ(countOf("STL/triangle_with_two_solids.stl"), 2U);
    EXPECT_EQ(countOf("OBJ/box_UTF16BE.obj"), 6U);
    EXPECT_EQ(countOf("Collada/cube_UTF16LE.dae"), countOf("Collada/cube_UTF8BOM.dae"));
}

TEST_F(kxSceneImporterContentTest, ReadsVertexColours)
{
    const kxImportedScene scene = read("PLY/float-color.ply");

    const auto nodes = kxtest::geometryNodes(scene.root);
    ASSERT_EQ(nodes.size(), 1U);
    EXPECT_EQ(kxtest::geometryOf(nodes[0])->getColors().size(), kxtest::geometryOf(nodes[0])->getPositions().size());
}

} // namespace
