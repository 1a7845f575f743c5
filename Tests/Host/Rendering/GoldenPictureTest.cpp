// SPDX-License-Identifier: Apache-2.0
// Previews against pictures that somebody looked at. After a wanted change, KX_WRITE_GOLDEN=1 writes them anew: look at
// them again before they are committed.
#include "Rendering/QImageConverter.h"
#include "Rendering/kxMaterialPreviewRenderer.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <QImage>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <string>

namespace {

using Owned = osg::FCRef<osg::UBRDFMaterial>;

constexpr int Side = 96;
constexpr int Samples = 64;

/// Of 8-bit channels. Processors round differently, and a path that takes another turn changes its pixel: little on average,
/// few pixels by much, none by very much.
constexpr double MaxMean = 0.6;
constexpr int Visible = 10;
constexpr double MaxVisibleShare = 0.01;
constexpr int MaxDifference = 90;

struct Golden
{
    const char *name;
    std::function<void(osg::UBRDFMaterial &)> change;
};

struct Difference
{
    double mean = 0.0;
    double visibleShare = 0.0;
    int greatest = 0;

    bool isSmall() const { return mean <= MaxMean && visibleShare <= MaxVisibleShare && greatest <= MaxDifference; }
};

QImage render(const std::function<void(osg::UBRDFMaterial &)> &change)
{
    Owned material(osg::UBRDFMaterial::create());
    {
        const osg::CPEditor edit(material.get(), osg::AllFieldMask);
        change(*material);
    }
    const auto picture =
        osg::FCRef<osg::Image>::adopt(kxMaterialPreviewRenderer::renderPreview(material.get(), Side, Side, Samples));
    return QImageConverter::convertToQImage(picture.get()).convertToFormat(QImage::Format_RGB888);
}

QString pathOf(const Golden &golden)
{
    return QStringLiteral(KX_GOLDEN_FOLDER "/%1.png").arg(QString::fromUtf8(golden.name));
}

Difference differenceOf(const QImage &a, const QImage &b)
{
    Difference result;
    int visible = 0;
    for (int y = 0; y < Side; ++y)
        for (int x = 0; x < Side; ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            const int red = std::abs(qRed(p) - qRed(q));
            const int green = std::abs(qGreen(p) - qGreen(q));
            const int blue = std::abs(qBlue(p) - qBlue(q));
            const int worst = std::max(red, std::max(green, blue));
            result.mean += red + green + blue;
            result.greatest = std::max(result.greatest, worst);
            visible += worst > Visible ? 1 : 0;
        }
    result.mean /= 3.0 * Side * Side;
    result.visibleShare = static_cast<double>(visible) / (Side * Side);
    return result;
}

const std::vector<Golden> &goldens()
{
    static const std::vector<Golden> all{
        {"plastic",
         [](osg::UBRDFMaterial &m) {
             m.setDiffuseColor({0.05F, 0.2F, 0.6F, 1.0F});
             m.setRoughness(0.3F);
         }},
        {"gold",
         [](osg::UBRDFMaterial &m) {
             m.setDiffuseColor({1.0F, 0.76F, 0.33F, 1.0F});
             m.setMetalness(1.0F);
             m.setRoughness(0.2F);
         }},
        {"brushed-steel",
         [](osg::UBRDFMaterial &m) {
             m.setDiffuseColor({0.6F, 0.6F, 0.62F, 1.0F});
             m.setMetalness(1.0F);
             m.setRoughness(0.45F);
             m.setAnisotropy(0.8F);
         }},
        {"lacquer",
         [](osg::UBRDFMaterial &m) {
             m.setDiffuseColor({0.5F, 0.02F, 0.02F, 1.0F});
             m.setRoughness(0.6F);
             m.setClearCoat(1.0F);
         }},
        {"glass",
         [](osg::UBRDFMaterial &m) {
             m.setTransparency(1.0F);
             m.setTransmissionColor({0.8F, 0.95F, 0.9F, 1.0F});
             m.setRoughness(0.05F);
         }},
        {"velvet",
         [](osg::UBRDFMaterial &m) {
             m.setDiffuseColor({0.2F, 0.02F, 0.15F, 1.0F});
             m.setRoughness(0.9F);
             m.setSheen(1.0F);
         }},
    };
    return all;
}

class GoldenPictureTest : public testing::TestWithParam<Golden>
{};

} // namespace

TEST_P(GoldenPictureTest, LooksAsItDid)
{
    const QImage picture = render(GetParam().change);
    ASSERT_EQ(picture.size(), QSize(Side, Side));
    if (std::getenv("KX_WRITE_GOLDEN") != nullptr) {
        ASSERT_TRUE(picture.save(pathOf(GetParam())));
    }

    const QImage golden(pathOf(GetParam()));
    ASSERT_EQ(golden.size(), picture.size());
    const Difference difference = differenceOf(picture, golden);

    EXPECT_LE(difference.mean, MaxMean);
    EXPECT_LE(difference.visibleShare, MaxVisibleShare);
    EXPECT_LE(difference.greatest, MaxDifference);
}

TEST_P(GoldenPictureTest, IsToldFromAnotherThatIsATouchDarker)
{
    const QImage darker = render([](osg::UBRDFMaterial &m) {
        GetParam().change(m);
        const osg::Color4f color = m.getDiffuseColor();
        const osg::Color4f through = m.getTransmissionColor();
        m.setDiffuseColor({color[0] * 0.85F, color[1] * 0.85F, color[2] * 0.85F, color[3]});
        m.setTransmissionColor({through[0] * 0.85F, through[1] * 0.85F, through[2] * 0.85F, through[3]});
    });

    EXPECT_FALSE(differenceOf(darker, QImage(pathOf(GetParam()))).isSmall());
}

INSTANTIATE_TEST_SUITE_P(Materials, GoldenPictureTest, testing::ValuesIn(goldens()), [](const auto &golden) {
    std::string name = golden.param.name;
    name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
    return name;
});
