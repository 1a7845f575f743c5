// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxTexturePattern.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gmock/gmock.h>

#include <cmath>
#include <set>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

QJsonObject json(const char *text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text);
    EXPECT_TRUE(document.isObject()) << text;
    return document.object();
}

osg::Result<kxTexturePattern> make(const char *text)
{
    return kxTexturePattern::fromJson(json(text));
}

std::string complaintAbout(const char *text)
{
    const auto pattern = make(text);
    return pattern ? "" : pattern.reason();
}

osg::Vec4f pixel(const osg::FCRef<osg::Image> &image, std::uint32_t x, std::uint32_t y)
{
    return image->pixel(x, y);
}

class kxTexturePatternEachTest : public testing::TestWithParam<std::string>
{
protected:
    kxTexturePatternEachTest()
    {
        QJsonObject description{{QStringLiteral("pattern"), QString::fromStdString(GetParam())},
                                {QStringLiteral("size"), 64}};
        const auto made = kxTexturePattern::fromJson(description);
        EXPECT_TRUE(made) << (made ? "" : made.reason());
        if (made)
            pattern = made.value();
    }

    std::optional<kxTexturePattern> pattern;
};

} // namespace

TEST_P(kxTexturePatternEachTest, ContinuesOverItsBorders)
{
    for (int i = 0; i < 50; ++i) {
        const float t = (static_cast<float>(i) + 0.3F) / 50.0F;
        const auto left = pattern->at(0.0F, t);
        const auto right = pattern->at(1.0F, t);
        const auto low = pattern->at(t, 0.0F);
        const auto high = pattern->at(t, 1.0F);
        EXPECT_NEAR(left.tone, right.tone, 2e-3) << "at v = " << t;
        EXPECT_NEAR(left.height, right.height, 2e-3) << "at v = " << t;
        EXPECT_NEAR(low.tone, high.tone, 2e-3) << "at u = " << t;
        EXPECT_NEAR(low.height, high.height, 2e-3) << "at u = " << t;
    }
}

TEST_P(kxTexturePatternEachTest, HasTonesOfItsRangeAndMoreThanOne)
{
    std::set<float> tones;
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 200; ++x) {
            const auto place = pattern->at(static_cast<float>(x) / 200.0F, static_cast<float>(y) / 200.0F);
            ASSERT_GE(place.tone, 0.0F);
            ASSERT_LE(place.tone, 1.0F);
            ASSERT_TRUE(std::isfinite(place.height + place.slopeX + place.slopeY));
            tones.insert(place.tone);
        }
    EXPECT_GT(tones.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(All, kxTexturePatternEachTest, testing::ValuesIn(kxTexturePattern::names()),
                         [](const auto &test) { return test.param; });

TEST(kxTexturePatternTest, KnowsItsPatterns)
{
    EXPECT_THAT(kxTexturePattern::names(),
                ElementsAre("brushed", "chips", "flakes", "hammered", "holes", "knurled", "leather", "marble", "noise",
                            "stripes", "tiles", "weave", "wood"));
}

TEST(kxTexturePatternTest, DrawsColorsAlongTheTone)
{
    const auto pattern =
        make(R"({"pattern": "stripes", "stripes": 1, "share": 0.5, "size": 8, "colors": ["#102030", "#c0a080"]})");
    ASSERT_TRUE(pattern) << pattern.reason();

    const osg::FCRef<osg::Image> image = pattern.value().drawColors();

    EXPECT_EQ(image->getWidth(), 8U);
    EXPECT_EQ(image->getChannels(), 3U);
    EXPECT_NEAR(pixel(image, 0, 3)[0], 0x10 / 255.0, 1e-6);
    EXPECT_NEAR(pixel(image, 3, 3)[0], 0xc0 / 255.0, 1e-6);
    EXPECT_NEAR(pixel(image, 3, 3)[2], 0x80 / 255.0, 1e-6);
}

TEST(kxTexturePatternTest, KeepsTheOpacityOfColors)
{
    const auto pattern =
        make(R"({"pattern": "stripes", "stripes": 1, "size": 8, "colors": ["#00ffffff", "#ffffffff"]})");
    ASSERT_TRUE(pattern) << pattern.reason();

    const osg::FCRef<osg::Image> image = pattern.value().drawColors();

    EXPECT_EQ(image->getChannels(), 4U);
    EXPECT_EQ(pixel(image, 0, 0)[3], 0.0F);
    EXPECT_EQ(pixel(image, 4, 0)[3], 1.0F);
}

TEST(kxTexturePatternTest, ReachesEachColorAtItsTone)
{
    const auto pattern = make(
        R"({"pattern": "stripes", "stripes": 1, "size": 8, "colors": [[0, "#000000"], [0.9, "#ff0000"], [1, "#00ff00"]]})");
    ASSERT_TRUE(pattern) << pattern.reason();

    EXPECT_EQ(pixel(pattern.value().drawColors(), 4, 0)[1], 1.0F);
}

TEST(kxTexturePatternTest, DrawsValuesBetweenTheirBounds)
{
    const auto pattern =
        make(R"({"pattern": "stripes", "stripes": 1, "share": 0.5, "size": 8, "from": 0.2, "to": 0.6})");
    ASSERT_TRUE(pattern) << pattern.reason();

    const osg::FCRef<osg::Image> image = pattern.value().drawValues();

    EXPECT_EQ(image->getChannels(), 1U);
    EXPECT_NEAR(pixel(image, 0, 0)[0], 0.2, 0.5 / 255);
    EXPECT_NEAR(pixel(image, 4, 0)[0], 0.6, 0.5 / 255);
}

TEST(kxTexturePatternTest, LeansNormalsAwayFromWhatRises)
{
    // From the left the height rises towards the stripe in the middle, from the right it falls.
    const auto pattern =
        make(R"({"pattern": "stripes", "stripes": 1, "share": 0.5, "softness": 0.2, "size": 64, "depth": 0.1})");
    ASSERT_TRUE(pattern) << pattern.reason();

    const osg::FCRef<osg::Image> image = pattern.value().drawNormals();

    EXPECT_LT(pixel(image, 16, 5)[0], 0.45F);
    EXPECT_GT(pixel(image, 47, 5)[0], 0.55F);
    EXPECT_NEAR(pixel(image, 16, 5)[1], 0.5, 0.5 / 255 + 1e-6);
    EXPECT_NEAR(pixel(image, 32, 5)[0], 0.5, 0.5 / 255 + 1e-6);
    EXPECT_EQ(pixel(image, 32, 5)[2], 1.0F);
}

TEST(kxTexturePatternTest, TurnsReliefsInsideOutByNegativeDepth)
{
    const auto up = make(R"({"pattern": "leather", "size": 16, "depth": 0.01})");
    const auto down = make(R"({"pattern": "leather", "size": 16, "depth": -0.01})");
    ASSERT_TRUE(up && down);

    EXPECT_NEAR(pixel(up.value().drawNormals(), 5, 5)[0], 1.0F - pixel(down.value().drawNormals(), 5, 5)[0], 1.1 / 255);
}

TEST(kxTexturePatternTest, IsTheSameForTheSameSeedOnly)
{
    const auto first = make(R"({"pattern": "noise", "seed": 1, "size": 16})");
    const auto again = make(R"({"pattern": "noise", "seed": 1, "size": 16})");
    const auto other = make(R"({"pattern": "noise", "seed": 2, "size": 16})");

    EXPECT_EQ(first.value().drawValues()->contentHash(), again.value().drawValues()->contentHash());
    EXPECT_NE(first.value().drawValues()->contentHash(), other.value().drawValues()->contentHash());
}

TEST(kxTexturePatternTest, NamesWhatIsWrong)
{
    EXPECT_THAT(complaintAbout(R"({"pattern": "tweed"})"),
                HasSubstr("there is no pattern 'tweed', but brushed, chips"));
    EXPECT_EQ(complaintAbout(R"({"pattern": "noise", "size": 100000})"),
              "pattern 'noise': 'size' is not a whole number from 4 to 4096");
    EXPECT_EQ(complaintAbout(R"({"pattern": "noise", "size": 10.5})"),
              "pattern 'noise': 'size' is not a whole number from 4 to 4096");
    EXPECT_EQ(complaintAbout(R"({"pattern": "noise", "rings": 3})"), "pattern 'noise': 'rings' is not known here");
    EXPECT_EQ(complaintAbout(R"({"pattern": "noise", "from": "dark"})"),
              "pattern 'noise': 'from' is not a number from 0 to 1");
    EXPECT_EQ(complaintAbout(R"({"pattern": "noise", "count": [1, 2, 3]})"),
              "pattern 'noise': 'count' is not a whole number or two from 1 to 1024");
    EXPECT_EQ(complaintAbout(R"({"pattern": "noise", "colors": []})"),
              "pattern 'noise': 'colors' is not a list of colours");
    EXPECT_THAT(complaintAbout(R"({"pattern": "noise", "colors": ["reddish"]})"), HasSubstr("'colors' is not a list"));
    EXPECT_THAT(complaintAbout(R"({"pattern": "noise", "colors": [[0.5, "#000000"], [0.2, "#ffffff"]]})"),
                HasSubstr("with rising tones"));
    EXPECT_THAT(complaintAbout(R"({"pattern": "weave", "count": 6, "step": 2})"),
                HasSubstr("multiple of twice 'step'"));
    EXPECT_THAT(complaintAbout(R"({"pattern": "holes", "count": 7})"), HasSubstr("even along v"));
}
