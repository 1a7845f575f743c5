// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/TextureBuilder.h"

#include "SmallModels.h"

#include <assimp/material.h>
#include <assimp/scene.h>

#include <gtest/gtest.h>

#include <cmath>

using kximport::TextureBuilder;
using kximport::TextureSlot;

namespace {

constexpr TextureSlot Diffuse{aiTextureType_DIFFUSE, 0};

osg::Vec2f mapped(const osg::Texture &texture, float u, float v)
{
    const float c = std::cos(texture.getRotation());
    const float s = std::sin(texture.getRotation());
    const float x = texture.getScale()[0] * u;
    const float y = texture.getScale()[1] * v;
    return {c * x - s * y + texture.getOffset()[0], s * x + c * y + texture.getOffset()[1]};
}

class TextureBuilderTest : public testing::Test
{
protected:
    void SetUp() override
    {
        kxtest::writeColumn(folder, "a.png", 3, {255, 0, 0});
        const aiString file("a.png");
        material.AddProperty(&file, AI_MATKEY_TEXTURE_DIFFUSE(0));
    }

    void setTransform(const aiUVTransform &transform)
    {
        material.AddProperty(&transform, 1, AI_MATKEY_UVTRANSFORM_DIFFUSE(0));
    }

    kxtest::TemporaryFolder folder;
    aiScene scene;
    aiMaterial material;
    kximport::ImportNotes notes{"a.obj"};
    kximport::ImageStore images{scene, folder.file("a.obj"), folder.string(), notes};
    TextureBuilder builder{images, false};
};

TEST_F(TextureBuilderTest, MakesAPlainTexture)
{
    const osg::TexturePtr texture = builder.make(material, Diffuse, TextureBuilder::Encoding::Srgb);

    ASSERT_TRUE(texture);
    EXPECT_EQ(texture->getImage(), images.find("a.png"));
    EXPECT_EQ(texture->getScale(), (osg::Vec2f{1, 1}));
    EXPECT_EQ(texture->getOffset(), (osg::Vec2f{0, 0}));
    EXPECT_EQ(texture->getRotation(), 0.0F);
    EXPECT_EQ(texture->getWrapU(), 0U);
    EXPECT_TRUE(texture->getIsSrgb());
}

TEST_F(TextureBuilderTest, MakesTheSameOnce)
{
    const osg::TexturePtr texture = builder.make(material, Diffuse, TextureBuilder::Encoding::Srgb);

    EXPECT_EQ(builder.make(material, Diffuse, TextureBuilder::Encoding::Srgb), texture);
    EXPECT_NE(builder.make(material, Diffuse, TextureBuilder::Encoding::Linear), texture);
}

TEST_F(TextureBuilderTest, MakesNothingOfAnEmptySlotOrAMissingPicture)
{
    const aiString file("gone.png");
    material.AddProperty(&file, AI_MATKEY_TEXTURE(aiTextureType_OPACITY, 0));

    EXPECT_FALSE(builder.make(material, {aiTextureType_NORMALS, 0}, TextureBuilder::Encoding::Linear));
    EXPECT_FALSE(builder.make(material, {aiTextureType_OPACITY, 0}, TextureBuilder::Encoding::Linear));
    EXPECT_TRUE(builder.reference(material, {aiTextureType_OPACITY, 0}));
}

TEST_F(TextureBuilderTest, TakesOverHowThePictureGoesOn)
{
    const int mirror = aiTextureMapMode_Mirror;
    const int decal = aiTextureMapMode_Decal;
    material.AddProperty(&mirror, 1, AI_MATKEY_MAPPINGMODE_U_DIFFUSE(0));
    material.AddProperty(&decal, 1, AI_MATKEY_MAPPINGMODE_V_DIFFUSE(0));

    const osg::TexturePtr texture = builder.make(material, Diffuse, TextureBuilder::Encoding::Srgb);

    EXPECT_EQ(texture->getWrapU(), static_cast<std::uint32_t>(osg::TextureWrap::Mirror));
    EXPECT_EQ(texture->getWrapV(), static_cast<std::uint32_t>(osg::TextureWrap::Clamp));
}

TEST_F(TextureBuilderTest, TurnsAboutTheCentreOfThePicture)
{
    aiUVTransform transform;
    transform.mRotation = 1.5707963F;
    transform.mTranslation = {0.25F, 0.0F};
    setTransform(transform);

    const osg::TexturePtr texture = builder.make(material, Diffuse, TextureBuilder::Encoding::Srgb);

    EXPECT_NEAR(mapped(*texture, 0.5F, 0.5F)[0], 0.75F, 1e-6F);
    EXPECT_NEAR(mapped(*texture, 0.5F, 0.5F)[1], 0.5F, 1e-6F);
    EXPECT_NEAR(mapped(*texture, 1.0F, 0.5F)[0], 0.75F, 1e-6F); // anticlockwise: right becomes up
    EXPECT_NEAR(mapped(*texture, 1.0F, 0.5F)[1], 1.0F, 1e-6F);
}

TEST_F(TextureBuilderTest, PassesOverATransformThatIsNone)
{
    aiUVTransform transform;
    transform.mScaling = {INFINITY, 1.0F};
    setTransform(transform);

    EXPECT_EQ(builder.make(material, Diffuse, TextureBuilder::Encoding::Srgb)->getScale(), (osg::Vec2f{1, 1}));
}

TEST_F(TextureBuilderTest, TakesADerivedPicture)
{
    const auto derive = [](const osg::Image &) { return osg::Image::create(); };

    const osg::TexturePtr texture =
        builder.makeDerived(material, Diffuse, TextureBuilder::Encoding::Srgb, "other", derive);

    EXPECT_NE(texture->getImage(), images.find("a.png"));
    EXPECT_EQ(builder.makeDerived(material, Diffuse, TextureBuilder::Encoding::Srgb, "other", derive), texture);
}

TEST_F(TextureBuilderTest, KeepsThePictureWhereNothingCanBeDerived)
{
    const auto derive = [](const osg::Image &) { return osg::ImagePtr(); };

    const osg::TexturePtr texture =
        builder.makeDerived(material, Diffuse, TextureBuilder::Encoding::Srgb, "other", derive);

    EXPECT_EQ(texture->getImage(), images.find("a.png"));
}

} // namespace
