// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/PictureOperations.h"

#include "SceneGraph/EditCP.h"

#include <gmock/gmock.h>

#include <vector>

using namespace kximport;
using testing::ElementsAre;

namespace {

using Bytes = std::vector<std::uint8_t>;

osg::FCRef<osg::Image> makeImage(std::uint32_t width, std::uint32_t height, std::uint32_t channels, const Bytes &pixels)
{
    osg::FCRef<osg::Image> image(osg::Image::create());
    EXPECT_TRUE(image->set(width, height, channels, osg::PixelType::UInt8));
    const osg::CPEditor edit(image.get(), osg::Image::PixelsFieldMask);
    image->editPixels().values() = pixels;
    return image;
}

TEST(PictureOperationsTest, TakesTheAlphaChannelAway)
{
    const auto image = makeImage(2, 1, 4, {1, 2, 3, 4, 5, 6, 7, 8});

    const osg::FCRef<osg::Image> result(withoutAlpha(*image));

    ASSERT_TRUE(result);
    EXPECT_EQ(result->getChannels(), 3U);
    EXPECT_EQ(result->getWidth(), 2U);
    EXPECT_THAT(result->getPixels().values(), ElementsAre(1, 2, 3, 5, 6, 7));
    EXPECT_TRUE(result->isValid());
}

TEST(PictureOperationsTest, TakesNoAlphaWhereThereIsNone)
{
    EXPECT_FALSE(withoutAlpha(*makeImage(1, 1, 3, {1, 2, 3})));
    EXPECT_FALSE(withHardAlpha(*makeImage(1, 1, 1, {1}), 0.5F));
}

TEST(PictureOperationsTest, MakesAlphaHard)
{
    const auto image = makeImage(3, 1, 2, {9, 127, 9, 128, 9, 255});

    const osg::FCRef<osg::Image> result(withHardAlpha(*image, 0.5F));

    ASSERT_TRUE(result);
    EXPECT_THAT(result->getPixels().values(), ElementsAre(9, 0, 9, 255, 9, 255));
}

TEST(PictureOperationsTest, CombinesColoursWithTheRedOfAnOpacityPicture)
{
    const auto colors = makeImage(2, 1, 3, {1, 2, 3, 4, 5, 6});
    const auto opacity = makeImage(1, 1, 3, {77, 88, 99});

    const osg::FCRef<osg::Image> result(withOpacity(colors.get(), *opacity));

    ASSERT_TRUE(result);
    EXPECT_EQ(result->getChannels(), 4U);
    EXPECT_THAT(result->getPixels().values(), ElementsAre(1, 2, 3, 77, 4, 5, 6, 77));
}

TEST(PictureOperationsTest, PrefersAnAlphaThatSaysSomething)
{
    const auto speaking = makeImage(1, 1, 4, {10, 20, 30, 40});
    const auto silent = makeImage(1, 1, 4, {10, 20, 30, 255});

    const osg::FCRef<osg::Image> fromAlpha(withOpacity(nullptr, *speaking));
    const osg::FCRef<osg::Image> fromRed(withOpacity(nullptr, *silent));

    EXPECT_THAT(fromAlpha->getPixels().values(), ElementsAre(255, 255, 255, 40));
    EXPECT_THAT(fromRed->getPixels().values(), ElementsAre(255, 255, 255, 10));
}

TEST(PictureOperationsTest, SpreadsGreyColours)
{
    const auto grey = makeImage(1, 2, 1, {5, 6});
    const auto opacity = makeImage(1, 2, 1, {1, 2});

    const osg::FCRef<osg::Image> result(withOpacity(grey.get(), *opacity));

    EXPECT_THAT(result->getPixels().values(), ElementsAre(5, 5, 5, 1, 6, 6, 6, 2));
}

TEST(PictureOperationsTest, TurnsGlossinessIntoRoughness)
{
    const auto gloss = makeImage(2, 1, 4, {0, 0, 0, 255, 0, 0, 0, 55});

    const osg::FCRef<osg::Image> result(invertedToGreen(*gloss, 3));

    EXPECT_THAT(result->getPixels().values(), ElementsAre(0, 0, 0, 0, 200, 0));
    EXPECT_FALSE(invertedToGreen(*makeImage(1, 1, 3, {1, 2, 3}), 3));
}

TEST(PictureOperationsTest, RefusesAnEmptyPicture)
{
    const osg::FCRef<osg::Image> empty(osg::Image::create());

    EXPECT_FALSE(withoutAlpha(*empty));
    EXPECT_FALSE(withHardAlpha(*empty, 0.5F));
    EXPECT_FALSE(withOpacity(nullptr, *empty));
    EXPECT_FALSE(invertedToGreen(*empty, 0));
}

} // namespace
