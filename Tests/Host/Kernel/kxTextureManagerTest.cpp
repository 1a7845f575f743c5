// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxTextureManager.h"

#include "Kernel/kxLogRecorder.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/SceneLog.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/Texture.h"
#include "SceneGraph/USphereEnvironmentMaterial.h"
#include "SceneGraph/UberMaterial.h"
#include "Support/SceneTest.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class kxTextureManagerTest : public kxtest::SceneTest
{
protected:
    /// 2 x 2 pixels of this value.
    static osg::ImagePtr newImage(std::uint8_t value, std::uint32_t channels = 3)
    {
        const osg::ImagePtr image = osg::Image::create();
        image->set(2, 2, channels, osg::PixelType::UInt8);
        fill(image, value);
        return image;
    }

    static void fill(const osg::ImagePtr &image, std::uint8_t value)
    {
        const osg::CPEditor edit(image, osg::Image::PixelsFieldMask);
        for (std::uint8_t &byte : image->editPixels().values())
            byte = value;
    }

    static osg::TexturePtr textureOf(const osg::ImagePtr &image)
    {
        const osg::TexturePtr texture = osg::Texture::create();
        const osg::CPEditor edit(texture, osg::Texture::ImageFieldMask);
        texture->setImage(image);
        return texture;
    }

    static osg::FCRef<osg::UBRDFMaterial> materialWith(const osg::ImagePtr &diffuse,
                                                       const osg::ImagePtr &bump = nullptr)
    {
        osg::FCRef<osg::UBRDFMaterial> material(osg::UBRDFMaterial::create());
        const osg::CPEditor edit(material.get(), osg::UBRDFMaterial::DiffuseTextureFieldMask |
                                                     osg::UBRDFMaterial::BumpTextureFieldMask);
        material->setDiffuseTexture(textureOf(diffuse));
        if (bump)
            material->setBumpTexture(textureOf(bump));
        return material;
    }

    static osg::ImagePtr diffuseImage(const osg::FCRef<osg::UBRDFMaterial> &material)
    {
        return material->getDiffuseTexture()->getImage();
    }
};

TEST_F(kxTextureManagerTest, TakesTheImageThatTheSceneHolds)
{
    const osg::ImagePtr image = newImage(7);
    const auto present = materialWith(image);
    const osg::ImagePtr copy = newImage(7);
    const std::uint32_t copyId = copy.getFieldContainerId();
    const auto loaded = materialWith(copy);

    EXPECT_EQ(kxTextureManager::shareImagesRecursive(loaded.get()), 1);

    EXPECT_EQ(diffuseImage(loaded), image);
    EXPECT_FALSE(osg::FieldContainerFactory::the().isAlive(copyId));
    EXPECT_EQ(kxTextureManager::shareImagesRecursive(loaded.get()), 0);
}

TEST_F(kxTextureManagerTest, KeepsImagesThatDiffer)
{
    const auto present = materialWith(newImage(7));
    const auto otherContent = materialWith(newImage(8));
    const auto otherFormat = materialWith(newImage(7, 4));

    EXPECT_EQ(kxTextureManager::shareImagesRecursive(otherContent.get()), 0);
    EXPECT_EQ(kxTextureManager::shareImagesRecursive(otherFormat.get()), 0);
}

TEST_F(kxTextureManagerTest, TakesAnImageOfTheSameSource)
{
    const osg::ImagePtr image = newImage(7);
    image->setSource("wood.png");
    const auto present = materialWith(image);
    const osg::ImagePtr again = newImage(8);
    again->setSource("wood.png");
    const auto loaded = materialWith(again);

    EXPECT_EQ(kxTextureManager::shareImagesRecursive(loaded.get()), 1);

    EXPECT_EQ(diffuseImage(loaded), image);
}

TEST_F(kxTextureManagerTest, SeesWhatAnImageBecameMeanwhile)
{
    const osg::ImagePtr image = newImage(7);
    const auto present = materialWith(image);
    const auto first = materialWith(newImage(7));
    kxTextureManager::shareImagesRecursive(first.get());

    fill(image, 9);

    EXPECT_EQ(kxTextureManager::shareImagesRecursive(materialWith(newImage(7)).get()), 0);
    EXPECT_EQ(kxTextureManager::shareImagesRecursive(materialWith(newImage(9)).get()), 1);
}

TEST_F(kxTextureManagerTest, ForgetsImagesThatNobodyShowsAnyMore)
{
    {
        const auto gone = materialWith(newImage(7));
    }

    EXPECT_EQ(kxTextureManager::shareImagesRecursive(materialWith(newImage(7)).get()), 0);
}

TEST_F(kxTextureManagerTest, ReachesLayersEntriesAndEnvironments)
{
    const osg::ImagePtr image = newImage(7);
    const osg::ImagePtr sky = newImage(9);
    const auto present = materialWith(image, sky);
    const auto layer = materialWith(newImage(7));
    const osg::FCRef<osg::UberMaterial> uber(osg::UberMaterial::create());
    {
        const osg::CPEditor edit(uber.get(), osg::UberMaterial::BRDFMaterialsFieldMask);
        uber->editBRDFMaterials().push_back(layer.get());
    }
    const osg::USphereEnvironmentMaterialPtr environment = osg::USphereEnvironmentMaterial::create();
    {
        const osg::CPEditor edit(environment, osg::USphereEnvironmentMaterial::ImageFieldMask);
        environment->setImage(newImage(9));
    }
    const auto choice = compositeOf<osg::SwitchMaterial>({uber.get(), environment});

    EXPECT_EQ(kxTextureManager::shareImagesRecursive(choice.get()), 2);

    EXPECT_EQ(diffuseImage(layer), image);
    EXPECT_EQ(environment->getImage(), sky);
}

TEST_F(kxTextureManagerTest, KeepsTheImagesOfOneMaterialApart)
{
    const auto present = materialWith(newImage(7));
    const auto loaded = materialWith(newImage(7), newImage(7));

    EXPECT_EQ(kxTextureManager::shareImagesRecursive(loaded.get()), 1);

    EXPECT_NE(loaded->getDiffuseTexture()->getImage(), loaded->getBumpTexture()->getImage());
}

TEST_F(kxTextureManagerTest, KeepsTexturesThatShareAnImageTogether)
{
    const osg::ImagePtr image = newImage(7);
    const auto present = materialWith(image);
    const osg::ImagePtr own = newImage(7);
    const auto loaded = materialWith(own, own);

    EXPECT_EQ(kxTextureManager::shareImagesRecursive(loaded.get()), 1);

    EXPECT_EQ(loaded->getDiffuseTexture()->getImage(), image);
    EXPECT_EQ(loaded->getBumpTexture()->getImage(), image);
}

TEST_F(kxTextureManagerTest, HasNothingToDoForNullAndForMaterialsWithoutTextures)
{
    EXPECT_EQ(kxTextureManager::shareImagesRecursive(nullptr), 0);
    EXPECT_EQ(kxTextureManager::shareImagesRecursive(newMaterial()), 0);
}

TEST(SceneLogBridgeTest, PassesTheSceneGraphsLinesToTheHostLog)
{
    const kxLogRecorder log;

    osg::logLine(osg::LogLevel::Info, "one");
    osg::logLine(osg::LogLevel::Warning, "two");
    osg::logLine(osg::LogLevel::Error, "100 %s");

    EXPECT_THAT(log.lines(kxLogLevel::Info), ElementsAre("one"));
    EXPECT_THAT(log.lines(kxLogLevel::Warning), ElementsAre("two"));
    EXPECT_THAT(log.lines(kxLogLevel::Error), ElementsAre("100 %s"));
}

} // namespace
