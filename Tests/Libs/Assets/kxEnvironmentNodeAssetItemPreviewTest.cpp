// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Kernel/kxIconManager.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>

#include <gtest/gtest.h>

namespace {

/// A black picture with the sky painted into it.
QImage withSky(int width, int height)
{
    QPixmap preview(width, height);
    preview.fill(Qt::black);
    kxEnvironmentNodeAssetItem().addOverlayIcon(preview);
    return preview.toImage();
}

/// A black picture with this icon at x = 0.
QImage withIcon(int width, int height, const QPixmap &icon, int y)
{
    QPixmap preview(width, height);
    preview.fill(Qt::black);
    QPainter(&preview).drawPixmap(0, y, icon);
    return preview.toImage();
}

QPixmap sky()
{
    return kxIconManager::get("scenegraph/Skydome.svg");
}

} // namespace

TEST(kxEnvironmentNodeAssetItemPreviewTest, PaintsTheSkyOnePixelAboveTheEdge)
{
    ASSERT_EQ(sky().size(), QSize(32, 32));

    EXPECT_EQ(withSky(128, 96), withIcon(128, 96, sky(), 63));
    EXPECT_EQ(withSky(64, 42), withIcon(64, 42, sky(), 9)) << "of 42, three quarters are 32, rounded";
}

TEST(kxEnvironmentNodeAssetItemPreviewTest, FitsTheSkyIntoThreeQuarters)
{
    const auto fitted = [](int width, int height) {
        return sky().scaled(width, height, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    };

    EXPECT_EQ(withSky(40, 30), withIcon(40, 30, fitted(30, 23), 6));
    EXPECT_EQ(withSky(20, 40), withIcon(20, 40, fitted(15, 30), 24)) << "bounded by the width";
}

TEST(kxEnvironmentNodeAssetItemPreviewTest, PaintsASkyIntoTheLowerLeftCorner)
{
    QPixmap preview(128, 96);
    preview.fill(Qt::black);

    kxEnvironmentNodeAssetItem().addOverlayIcon(preview);

    const QImage image = preview.toImage();
    const auto isPainted = [&image](int x, int y) { return image.pixelColor(x, y) != QColor(Qt::black); };
    bool isAnywhere = false;
    for (int y = 0; y < 96; ++y)
        for (int x = 0; x < 128; ++x)
            if (isPainted(x, y)) {
                isAnywhere = true;
                EXPECT_LT(x, 96);
                EXPECT_GE(y, 96 - 72 - 1);
                EXPECT_LT(y, 95) << "one pixel stays free below";
            }
    EXPECT_TRUE(isAnywhere);
}

TEST(kxEnvironmentNodeAssetItemPreviewTest, ShrinksTheSkyThatIsTooLarge)
{
    QPixmap preview(40, 30); // three quarters are 30 by 23, rounded
    preview.fill(Qt::black);

    kxEnvironmentNodeAssetItem().addOverlayIcon(preview);

    const QImage image = preview.toImage();
    QRect painted;
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 40; ++x)
            if (image.pixelColor(x, y) != QColor(Qt::black))
                painted |= QRect(x, y, 1, 1);
    EXPECT_GT(painted.height(), 10);
    EXPECT_LT(painted.right(), 23);
    EXPECT_GE(painted.top(), 30 - 23 - 1);
    EXPECT_LT(painted.bottom(), 29);
}
