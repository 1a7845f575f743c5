// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxMaterialPreviewRenderer.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/MultiPassMaterial.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "SceneGraph/USphereEnvironmentMaterial.h"

#include <tbb/global_control.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr int Size = 24;
constexpr int Samples = 2;

using Picture = osg::FCRef<osg::Image>;
using Owned = osg::FCRef<osg::UBRDFMaterial>;

Picture render(const osg::MaterialPtr &material)
{
    return Picture::adopt(kxMaterialPreviewRenderer::renderPreview(material, Size, Size, Samples));
}

std::vector<std::uint8_t> bytesOf(const Picture &picture)
{
    return picture ? picture->getPixels().values() : std::vector<std::uint8_t>();
}

Owned colored(float r, float g, float b, float opacity = 1.0F)
{
    Owned material(osg::UBRDFMaterial::create());
    const osg::CPEditor edit(material.get(), osg::UBRDFMaterial::DiffuseColorFieldMask);
    material->setDiffuseColor({r, g, b, opacity});
    return material;
}

template <class T> osg::FCRef<T> composite(const std::vector<osg::MaterialPtr> &parts)
{
    osg::FCRef<T> material(T::create());
    const osg::CPEditor edit(material.get(), osg::MultiMaterial::MaterialsFieldMask);
    for (const osg::MaterialPtr &part : parts)
        material->addMaterial(part);
    return material;
}

osg::Vec4f middle(const Picture &picture)
{
    return picture->pixel(Size / 2, Size / 2);
}

} // namespace

TEST(kxMaterialPreviewRendererTest, PaintsAnOpaquePictureOfTheWantedSize)
{
    const Picture picture = render(colored(0.8F, 0.1F, 0.1F));

    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->getRefCount(), 1) << "the caller's";
    EXPECT_EQ(picture->getWidth(), 24U);
    EXPECT_EQ(picture->getHeight(), 24U);
    EXPECT_EQ(picture->getChannels(), 4U);
    for (std::uint32_t i = 0; i < 24; ++i)
        EXPECT_EQ(picture->pixel(i, i)[3], 1.0F);
    EXPECT_GT(middle(picture)[0], middle(picture)[1] + 0.2F) << "a red material looks red";
}

TEST(kxMaterialPreviewRendererTest, GivesTheSameBytesForAnyNumberOfThreads)
{
    const Owned material = colored(0.2F, 0.5F, 0.9F);
    const std::vector<std::uint8_t> first = bytesOf(render(material));

    EXPECT_EQ(bytesOf(render(material)), first);
    const tbb::global_control one(tbb::global_control::max_allowed_parallelism, 1);
    EXPECT_EQ(bytesOf(render(material)), first);
}

TEST(kxMaterialPreviewRendererTest, ShowsTheChosenMaterialOfASwitch)
{
    const Owned red = colored(0.8F, 0.0F, 0.0F);
    const Owned blue = colored(0.0F, 0.0F, 0.8F);
    const auto chooser = composite<osg::SwitchMaterial>({red.get(), blue.get()});
    {
        const osg::CPEditor edit(chooser.get(), osg::SwitchMaterial::ChoiceFieldMask);
        chooser->setChoice(1);
    }

    EXPECT_EQ(bytesOf(render(chooser.get())), bytesOf(render(blue.get())));
}

TEST(kxMaterialPreviewRendererTest, ShowsTheTopOfOpaquePassesAndBelowClearOnes)
{
    const Owned red = colored(0.8F, 0.0F, 0.0F);
    const Owned blue = colored(0.0F, 0.0F, 0.8F);
    const Owned clear = colored(0.0F, 0.8F, 0.0F, 0.0F);

    EXPECT_EQ(bytesOf(render(composite<osg::MultiPassMaterial>({red.get(), blue.get()}).get())),
              bytesOf(render(blue.get())));
    const Picture through = render(composite<osg::MultiPassMaterial>({red.get(), clear.get()}).get());
    EXPECT_GT(middle(through)[0], middle(through)[1] + 0.2F);
}

TEST(kxMaterialPreviewRendererTest, PaintsGlowAsItIs)
{
    const Owned glowing = colored(0.0F, 0.0F, 0.0F);
    {
        const osg::CPEditor edit(glowing.get(), osg::AllFieldMask);
        glowing->setSpecularColor({0.0F, 0.0F, 0.0F, 1.0F});
        glowing->setIncandescenceColor({0.0F, 1.0F, 0.0F, 0.3F});
    }

    const osg::Vec4f pixel = middle(render(glowing.get()));

    EXPECT_EQ(pixel[0], 0.0F);
    // Below the shoulder of the tone curve: sRGB of 0.3 times the studio's exposure of 0.82.
    EXPECT_NEAR(pixel[1], 0.533F, 0.01F);
}

TEST(kxMaterialPreviewRendererTest, HasNoPictureOfNothing)
{
    const osg::FCRef<osg::USphereEnvironmentMaterial> empty(osg::USphereEnvironmentMaterial::create());

    EXPECT_FALSE(kxMaterialPreviewRenderer::renderPreview(nullptr, 16, 16, 1));
    EXPECT_FALSE(kxMaterialPreviewRenderer::renderPreview(colored(1, 1, 1).get(), 0, 16, 1));
    EXPECT_FALSE(kxMaterialPreviewRenderer::renderPreview(empty.get(), 16, 16, 1));
}

TEST(kxMaterialPreviewRendererTest, EndsWithoutAPictureWhenCancelled)
{
    EXPECT_FALSE(kxMaterialPreviewRenderer::renderPreview(colored(1, 1, 1).get(), 64, 64, 4, [] { return true; }));
}

TEST(kxMaterialPreviewRendererTest, ShowsEnvironmentsAsPanoramas)
{
    const osg::FCRef<osg::Image> image(osg::Image::create());
    {
        const osg::CPEditor edit(image.get(), osg::AllFieldMask);
        ASSERT_TRUE(image->set(4, 2, 3, osg::PixelType::UInt8));
        // The lower half green, the upper half blue.
        for (std::size_t i = 0; i < 8; ++i)
            image->editPixels()[i * 3 + (i < 4 ? 1 : 2)] = 200;
    }
    const osg::FCRef<osg::USphereEnvironmentMaterial> environment(osg::USphereEnvironmentMaterial::create());
    {
        const osg::CPEditor edit(environment.get(), osg::USphereEnvironmentMaterial::ImageFieldMask);
        environment->setImage(image);
    }

    const Picture panorama = Picture::adopt(kxMaterialPreviewRenderer::renderPreview(environment.get(), 32, 32, 1));

    ASSERT_TRUE(panorama);
    EXPECT_EQ(panorama->getWidth(), 32U);
    EXPECT_EQ(panorama->getHeight(), 16U);
    EXPECT_GT(panorama->pixel(3, 1)[1], panorama->pixel(3, 1)[2]) << "below";
    EXPECT_GT(panorama->pixel(3, 14)[2], panorama->pixel(3, 14)[1]) << "above";
}

TEST(kxMaterialPreviewRendererTest, SurvivesAbsurdValues)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    for (const float value : {nan, inf, -inf, -1.0F, 1e30F, 0.0F}) {
        const Owned material(osg::UBRDFMaterial::create());
        {
            const osg::CPEditor edit(material.get(), osg::AllFieldMask);
            const osg::Color4f color{value, value, value, value};
            material->setDiffuseColor(color);
            material->setSpecularColor(color);
            material->setTransmissionColor(color);
            material->setIncandescenceColor(color);
            material->setRoughness(value);
            material->setMetalness(value);
            material->setClearCoat(value);
            material->setClearCoatRoughness(value);
            material->setTransparency(value);
            material->setIndexOfRefraction(value);
            material->setBumpStrength(value);
            material->setSheen(value);
            material->setAnisotropy(value);
            material->setDiffuseTexture(osg::Texture::create());
        }
        const Picture picture = render(material.get());
        ASSERT_TRUE(picture) << value;
        EXPECT_EQ(middle(picture)[3], 1.0F) << value;
    }
}

TEST(kxMaterialPreviewRendererTest, EndsOnMaterialsThatContainThemselves)
{
    const auto loop = composite<osg::MultiPassMaterial>({});
    {
        const osg::CPEditor edit(loop.get(), osg::MultiMaterial::MaterialsFieldMask);
        loop->addMaterial(loop.get());
    }

    EXPECT_TRUE(render(loop.get()));

    const osg::CPEditor edit(loop.get(), osg::MultiMaterial::MaterialsFieldMask);
    loop->editMaterials().clear();
}

TEST(kxMaterialPreviewRendererTest, LeavesNothingBehind)
{
    const Owned material = colored(0.5F, 0.5F, 0.5F);
    const std::size_t before = osg::FieldContainerFactory::the().livingContainerCount();

    render(material.get());

    EXPECT_EQ(osg::FieldContainerFactory::the().livingContainerCount(), before);
    EXPECT_EQ(material->getRefCount(), 1);
}
