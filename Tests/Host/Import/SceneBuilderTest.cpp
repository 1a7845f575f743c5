// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/SceneBuilder.h"

#include "SceneGraph/NameAttachment.h"
#include "SmallModels.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

using testing::ElementsAre;

namespace {

class SceneBuilderTest : public testing::Test
{
protected:
    SceneBuilderTest() { scene.mRootNode = new aiNode("Wurzel"); }

    void addMaterials(const std::vector<std::string> &names)
    {
        scene.mNumMaterials = static_cast<unsigned>(names.size());
        scene.mMaterials = new aiMaterial *[names.size()];
        for (std::size_t i = 0; i < names.size(); ++i) {
            scene.mMaterials[i] = new aiMaterial;
            const aiString name(names[i]);
            scene.mMaterials[i]->AddProperty(&name, AI_MATKEY_NAME);
        }
    }

    /// A triangle for each of \a materials, all at the root.
    void addMeshes(const std::vector<unsigned> &materials)
    {
        scene.mNumMeshes = scene.mRootNode->mNumMeshes = static_cast<unsigned>(materials.size());
        scene.mMeshes = new aiMesh *[materials.size()];
        scene.mRootNode->mMeshes = new unsigned[materials.size()];
        for (std::size_t i = 0; i < materials.size(); ++i) {
            aiMesh &mesh = *(scene.mMeshes[i] = new aiMesh);
            mesh.mMaterialIndex = materials[i];
            mesh.mNumVertices = 3;
            mesh.mVertices = new aiVector3D[3];
            mesh.mNumFaces = 1;
            mesh.mFaces = new aiFace[1];
            mesh.mFaces[0].mNumIndices = 3;
            mesh.mFaces[0].mIndices = new unsigned[3]{0, 1, 2};
            scene.mRootNode->mMeshes[i] = static_cast<unsigned>(i);
        }
    }

    std::vector<std::string> materialNames()
    {
        std::vector<std::string> names;
        for (const auto &material : build().materials)
            names.push_back(osg::getName(material.get()));
        return names;
    }

    kxImportedScene build()
    {
        kximport::ImageStore images(scene, "/models/Stuhl.obj", "/nowhere", notes);
        kximport::TextureBuilder textures(images, false);
        kximport::MaterialBuilder materials(textures, images, notes, false);
        kximport::SceneBuilder builder({scene, "/models/Stuhl.obj", false}, materials, notes);
        kxImportedScene result;
        result.materials = builder.buildMaterials();
        result.root = builder.buildTree();
        return result;
    }

    aiScene scene;
    kximport::ImportNotes notes{"Stuhl.obj"};
};

TEST_F(SceneBuilderTest, KeepsTheOrderOfMaterialsUsedOrNot)
{
    addMaterials({"Zinn", "Ahorn", "Zinn", "木"});
    addMeshes({3, 0});

    EXPECT_THAT(materialNames(), ElementsAre("Zinn", "Ahorn", "Zinn", "木"));
}

TEST_F(SceneBuilderTest, LeavesOutPlaceholdersThatNoMeshUses)
{
    addMaterials({"DefaultMaterial", "Ahorn", ""});
    addMeshes({1});

    EXPECT_THAT(materialNames(), ElementsAre("Ahorn"));
}

TEST_F(SceneBuilderTest, CallsAMaterialWithoutNameAfterTheFile)
{
    addMaterials({"DefaultMaterial", "Ahorn"});
    addMeshes({0, 1});

    EXPECT_THAT(materialNames(), ElementsAre("Stuhl", "Ahorn"));
}

TEST_F(SceneBuilderTest, NumbersSeveralMaterialsWithoutName)
{
    addMaterials({"", "Ahorn", "", "DefaultMaterial"});
    addMeshes({3, 0});

    EXPECT_THAT(materialNames(), ElementsAre("Stuhl 1", "Ahorn", "Stuhl 2"));
}

TEST_F(SceneBuilderTest, SharesAMaterialBetweenItsMeshes)
{
    addMaterials({"Ahorn"});
    addMeshes({0, 0});

    const kxImportedScene result = build();

    const auto nodes = kxtest::geometryNodes(result.root);
    ASSERT_EQ(nodes.size(), 2U);
    EXPECT_EQ(kxtest::geometryOf(nodes[0])->getMaterial(), result.materials[0].get());
    EXPECT_EQ(kxtest::geometryOf(nodes[1])->getMaterial(), result.materials[0].get());
}

TEST_F(SceneBuilderTest, SharesTheGeometryOfAMeshThatIsUsedTwice)
{
    addMaterials({"Ahorn"});
    addMeshes({0});
    auto *child = new aiNode("Kind");
    child->mNumMeshes = 1;
    child->mMeshes = new unsigned[1]{0};
    scene.mRootNode->addChildren(1, &child);

    const kxImportedScene result = build();

    const auto nodes = kxtest::geometryNodes(result.root);
    ASSERT_EQ(nodes.size(), 2U);
    EXPECT_NE(nodes[0], nodes[1]);
    EXPECT_EQ(nodes[0]->getCore(), nodes[1]->getCore());
    EXPECT_EQ(osg::getName(nodes[1]), "Kind"); // the mesh has no name of its own
}

TEST_F(SceneBuilderTest, SurvivesIndicesThatLeadNowhere)
{
    addMaterials({"Ahorn"});
    addMeshes({7});
    scene.mRootNode->mMeshes[0] = 9;

    const kxImportedScene result = build();

    EXPECT_EQ(result.root->getNChildren(), 0U);
}

TEST_F(SceneBuilderTest, BuildsATreeOfAnyDepth)
{
    aiNode *parent = scene.mRootNode;
    for (int i = 0; i < 5000; ++i) {
        auto *child = new aiNode;
        parent->addChildren(1, &child);
        parent = child;
    }

    const kxImportedScene result = build();

    osg::NodePtr node = result.root;
    int depth = 0;
    for (; node->getNChildren() == 1; node = node->getChild(0))
        ++depth;
    EXPECT_EQ(depth, 5000);
    EXPECT_EQ(osg::getName(node), "Node");
}

TEST_F(SceneBuilderTest, CallsARootWithoutNameAfterTheFile)
{
    scene.mRootNode->mName.Set("<parser's own>");

    EXPECT_EQ(osg::getName(build().root.get()), "Stuhl");
}

} // namespace
