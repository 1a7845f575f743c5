// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/MaterialBuilder.h"

#include "SceneGraph/NameAttachment.h"
#include "SmallModels.h"

#include <assimp/scene.h>

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Materials as the parsers of formats other than glTF describe them; glTF is tested with files.
class MaterialBuilderTest : public testing::Test
{
protected:
    void set(const char *key, unsigned type, unsigned index, ai_real value)
    {
        parsed.AddProperty(&value, 1, key, type, index);
    }
    void set(const char *key, unsigned type, unsigned index, const aiColor3D &value)
    {
        parsed.AddProperty(&value, 1, key, type, index);
    }
    void setTexture(aiTextureType type, const char *file)
    {
        const aiString name(file);
        parsed.AddProperty(&name, AI_MATKEY_TEXTURE(type, 0));
    }

    osg::FCRef<osg::UBRDFMaterial> build()
    {
        kximport::ImageStore images(scene, folder.file("a.obj"), folder.string(), notes);
        kximport::TextureBuilder textures(images, false);
        return kximport::MaterialBuilder(textures, images, notes, false).build(parsed, "Stoff");
    }

    kxtest::TemporaryFolder folder;
    aiScene scene;
    aiMaterial parsed;
    kximport::ImportNotes notes{"a.obj"};
};

TEST_F(MaterialBuilderTest, TakesPhongOver)
{
    set(AI_MATKEY_COLOR_DIFFUSE, aiColor3D(0.1F, 0.2F, 0.3F));
    set(AI_MATKEY_COLOR_SPECULAR, aiColor3D(0.4F, 0.5F, 2.0F));
    set(AI_MATKEY_SHININESS, 30.0F);
    set(AI_MATKEY_REFRACTI, 1.0F);

    const auto material = build();

    EXPECT_EQ(osg::getName(material.get()), "Stoff");
    EXPECT_EQ(material->getDiffuseColor(), (osg::Color4f{0.1F, 0.2F, 0.3F, 1.0F}));
    EXPECT_EQ(material->getSpecularColor(), (osg::Color4f{0.4F, 0.5F, 1.0F, 1.0F}));
    EXPECT_FLOAT_EQ(material->getRoughness(), 0.5F);
    EXPECT_EQ(material->getMetalness(), 0.0F);
    EXPECT_EQ(material->getTransparency(), 0.0F);
    EXPECT_EQ(material->getIndexOfRefraction(), 1.5F); // 1 is what stands there when nobody chose anything
    EXPECT_EQ(material->getIncandescenceColor(), (osg::Color4f{0, 0, 0, 0}));
}

TEST_F(MaterialBuilderTest, SeesAMetalInBlackWithAStrongHighlight)
{
    set(AI_MATKEY_COLOR_DIFFUSE, aiColor3D(0.0F, 0.0F, 0.0F));
    set(AI_MATKEY_COLOR_SPECULAR, aiColor3D(1.0F, 0.8F, 0.3F));

    const auto material = build();

    EXPECT_EQ(material->getMetalness(), 1.0F);
    EXPECT_EQ(material->getDiffuseColor(), (osg::Color4f{1.0F, 0.8F, 0.3F, 1.0F}));
    EXPECT_EQ(material->getSpecularColor(), (osg::Color4f{1, 1, 1, 1}));
}

TEST_F(MaterialBuilderTest, MakesOpacityTransparency)
{
    set(AI_MATKEY_OPACITY, 0.25F);
    set(AI_MATKEY_REFRACTI, 1.33F);
    set(AI_MATKEY_COLOR_TRANSPARENT, aiColor3D(0.9F, 1.0F, 0.8F));

    const auto material = build();

    EXPECT_EQ(material->getTransparency(), 0.75F);
    EXPECT_EQ(material->getIndexOfRefraction(), 1.33F);
    EXPECT_EQ(material->getTransmissionColor(), (osg::Color4f{0.9F, 1.0F, 0.8F, 1.0F}));
    EXPECT_EQ(material->getDiffuseColor()[3], 1.0F);
}

TEST_F(MaterialBuilderTest, SplitsIncandescenceIntoColourAndIntensity)
{
    set(AI_MATKEY_COLOR_EMISSIVE, aiColor3D(4.0F, 2.0F, 0.0F));

    EXPECT_EQ(build()->getIncandescenceColor(), (osg::Color4f{1.0F, 0.5F, 0.0F, 4.0F}));
}

TEST_F(MaterialBuilderTest, TurnsAPictureOfIncandescenceOn)
{
    kxtest::writeColumn(folder, "glow.png", 3, {1, 2, 3});
    set(AI_MATKEY_COLOR_EMISSIVE, aiColor3D(0.0F, 0.0F, 0.0F));
    setTexture(aiTextureType_EMISSIVE, "glow.png");

    const auto material = build();

    EXPECT_EQ(material->getIncandescenceColor(), (osg::Color4f{1, 1, 1, 1}));
    ASSERT_TRUE(material->getIncandescenceTexture());
    EXPECT_TRUE(material->getIncandescenceTexture()->getIsSrgb());
}

TEST_F(MaterialBuilderTest, PutsPicturesWhereTheyBelong)
{
    kxtest::writeColumn(folder, "a.png", 3, {1, 2, 3});
    setTexture(aiTextureType_DIFFUSE, "a.png");
    setTexture(aiTextureType_NORMALS, "a.png");
    setTexture(aiTextureType_HEIGHT, "a.png");
    set(AI_MATKEY_BUMPSCALING, 0.5F);

    const auto material = build();

    EXPECT_TRUE(material->getDiffuseTexture()->getIsSrgb());
    EXPECT_FALSE(material->getNormalTexture()->getIsSrgb());
    EXPECT_FALSE(material->getBumpTexture()->getIsSrgb());
    EXPECT_EQ(material->getNormalTexture()->getImage(), material->getDiffuseTexture()->getImage());
    EXPECT_EQ(material->getBumpStrength(), 0.5F);
}

TEST_F(MaterialBuilderTest, CombinesTheOpacityPictureWithTheColours)
{
    kxtest::writeColumn(folder, "color.png", 3, {1, 2, 3});
    kxtest::writeColumn(folder, "opacity.png", 1, {77});
    setTexture(aiTextureType_DIFFUSE, "color.png");
    setTexture(aiTextureType_OPACITY, "opacity.png");

    const auto material = build();

    EXPECT_THAT(material->getDiffuseTexture()->getImage()->getPixels().values(), ElementsAre(1, 2, 3, 77));
}

TEST_F(MaterialBuilderTest, MakesColoursForAnOpacityPictureAlone)
{
    kxtest::writeColumn(folder, "opacity.png", 1, {77});
    setTexture(aiTextureType_OPACITY, "opacity.png");

    const auto material = build();

    ASSERT_TRUE(material->getDiffuseTexture());
    EXPECT_THAT(material->getDiffuseTexture()->getImage()->getPixels().values(), ElementsAre(255, 255, 255, 77));
}

TEST_F(MaterialBuilderTest, LeavesThePictureAloneThatIsItsOwnOpacity)
{
    kxtest::writeColumn(folder, "leaf.png", 4, {1, 2, 3, 77});
    setTexture(aiTextureType_DIFFUSE, "leaf.png");
    setTexture(aiTextureType_OPACITY, "leaf.png");

    EXPECT_THAT(build()->getDiffuseTexture()->getImage()->getPixels().values(), ElementsAre(1, 2, 3, 77));
}

TEST_F(MaterialBuilderTest, NotesThePicturesItHasNoPlaceFor)
{
    setTexture(aiTextureType_SHININESS, "a.png");
    setTexture(aiTextureType_REFLECTION, "a.png");

    build();

    EXPECT_THAT(notes.lines(), ElementsAre("'a.obj': the shininess texture of material 'Stoff' is left out",
                                           "'a.obj': the reflection texture of material 'Stoff' is left out"));
}

TEST_F(MaterialBuilderTest, ReadsPhysicalMaterialsOf3dsMax)
{
    set("$raw.3dsMax|main|metalness", 0, 0, 0.25F);
    set("$raw.3dsMax|main|roughness", 0, 0, 0.5F);
    set(AI_MATKEY_ROUGHNESS_FACTOR, 0.9F); // derived by the parser
    set("$raw.3dsMax|main|basecolor", 0, 0, aiColor3D(0.0F, 1.0F, 1.0F));
    set("$raw.3dsMax|main|emit_color", 0, 0, aiColor3D(1.0F, 1.0F, 0.0F));

    const auto material = build();

    EXPECT_EQ(material->getMetalness(), 0.25F);
    EXPECT_EQ(material->getRoughness(), 0.5F);
    EXPECT_EQ(material->getDiffuseColor(), (osg::Color4f{0, 1, 1, 1}));
    EXPECT_EQ(material->getIncandescenceColor(), (osg::Color4f{1, 1, 0, 1}));
}

TEST_F(MaterialBuilderTest, IsPlainWhereNothingIsSaid)
{
    const auto material = build();

    EXPECT_EQ(material->getDiffuseColor(), (osg::Color4f{0.8F, 0.8F, 0.8F, 1.0F}));
    EXPECT_EQ(material->getRoughness(), 1.0F);
    EXPECT_TRUE(material->getIsTwoSided());
    EXPECT_FALSE(material->getDiffuseTexture());
    EXPECT_THAT(notes.lines(), IsEmpty());
}

TEST_F(MaterialBuilderTest, StaysInRange)
{
    set(AI_MATKEY_OPACITY, -3.0F);
    set(AI_MATKEY_COLOR_DIFFUSE, aiColor3D(-1.0F, 5.0F, 0.5F));
    set(AI_MATKEY_CLEARCOAT_FACTOR, 7.0F);
    set(AI_MATKEY_ANISOTROPY_FACTOR, -9.0F);

    const auto material = build();

    EXPECT_EQ(material->getTransparency(), 1.0F);
    EXPECT_EQ(material->getDiffuseColor(), (osg::Color4f{0.0F, 1.0F, 0.5F, 1.0F}));
    EXPECT_EQ(material->getClearCoat(), 1.0F);
    EXPECT_EQ(material->getAnisotropy(), -1.0F);
}

} // namespace
