// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxContactSheet.h"

#include <gtest/gtest.h>

#include <set>

namespace {

const QColor Background(30, 31, 34);

kxContactSheet::Tile tile(const QColor &color)
{
    QImage preview(64, 64, QImage::Format_RGB32);
    preview.fill(color);
    return {"A name that is by far too long for the width of one tile", "BRDF Material", preview};
}

std::set<QRgb> colorsIn(const QImage &image)
{
    std::set<QRgb> colors;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            colors.insert(image.pixel(x, y));
    return colors;
}

/// The columns of pixels that hold something of this colour.
int widthOf(const QImage &image, const QColor &color)
{
    int count = 0;
    for (int x = 0; x < image.width(); ++x)
        for (int y = 0; y < image.height(); ++y)
            if (image.pixelColor(x, y) == color) {
                ++count;
                break;
            }
    return count;
}

} // namespace

TEST(kxContactSheetTest, ShowsTheTitleOfAnEmptyLibrary)
{
    const QImage empty = kxContactSheet("").paint();
    const QImage titled = kxContactSheet("Materials").paint();

    EXPECT_FALSE(titled.isNull());
    EXPECT_NE(titled, empty);
    EXPECT_EQ(titled.pixelColor(0, 0), Background);
}

TEST(kxContactSheetTest, ShowsEveryPreview)
{
    kxContactSheet sheet("Materials");
    for (const QColor &color : {QColor(255, 0, 0), QColor(0, 255, 0), QColor(0, 0, 255)})
        sheet.addTile(tile(color));

    const std::set<QRgb> colors = colorsIn(sheet.paint());

    EXPECT_TRUE(colors.count(qRgb(255, 0, 0)));
    EXPECT_TRUE(colors.count(qRgb(0, 255, 0)));
    EXPECT_TRUE(colors.count(qRgb(0, 0, 255)));
}

TEST(kxContactSheetTest, PutsAsManySideBySideAsWanted)
{
    kxContactSheet sheet("Materials");
    sheet.setTileSize(100);
    sheet.setColumns(2);
    for (int i = 0; i < 5; ++i)
        sheet.addTile(tile(Qt::red));

    const QImage image = sheet.paint();

    EXPECT_EQ(image.width(), 32 + 100 + 18 + 100 + 32);
    EXPECT_EQ(widthOf(image, Qt::red), 200);
}

TEST(kxContactSheetTest, IsWiderThanHighByItself)
{
    kxContactSheet sheet("Materials");
    for (int i = 0; i < 24; ++i)
        sheet.addTile(tile(Qt::red));

    const QImage image = sheet.paint();

    EXPECT_GT(image.width(), image.height());
    EXPECT_LT(image.width(), 2 * image.height());
}

TEST(kxContactSheetTest, RoundsTheCornersOfTiles)
{
    kxContactSheet sheet("");
    sheet.setTileSize(100);
    sheet.addTile(tile(Qt::red));

    const QImage image = sheet.paint();

    // The tile begins below the header, 32 + 56 pixels from the top.
    EXPECT_EQ(image.pixelColor(32, 88), Background);
    EXPECT_EQ(image.pixelColor(32 + 50, 88 + 1), QColor(Qt::red));
}

TEST(kxContactSheetTest, FillsTilesWithTheMiddleOfWidePreviews)
{
    QImage wide(200, 100, QImage::Format_RGB32);
    wide.fill(Qt::red);
    for (int y = 0; y < 100; ++y)
        wide.setPixelColor(0, y, Qt::green);
    kxContactSheet sheet("");
    sheet.setTileSize(100);
    sheet.addTile({"Panorama", "", wide});

    const QImage image = sheet.paint();

    EXPECT_EQ(widthOf(image, Qt::red), 100);
    EXPECT_EQ(widthOf(image, Qt::green), 0);
}

TEST(kxContactSheetTest, SaysWhereThereIsNoPreview)
{
    kxContactSheet with("");
    with.addTile({"", "", QImage()});

    const std::set<QRgb> colors = colorsIn(with.paint());

    EXPECT_TRUE(colors.count(QColor(43, 45, 49).rgb())); // the empty tile
    EXPECT_GT(colors.size(), 10U);                       // and the smoothed text on it
}
