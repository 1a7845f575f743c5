// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/StateMark.h"

#include "AssetManager/AssetStates.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <array>

namespace {

using Kind = StateMark::Kind;

constexpr std::array AllKinds{Kind::InScene, Kind::Edited, Kind::Newer, Kind::Broken, Kind::NotFound, Kind::Favourite};

QImage painted(Kind kind, const QColor &ground, int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(ground);
    QPainter painter(&image);
    StateMark::paint(painter, QRectF(image.rect()).adjusted(2, 2, -2, -2), kind);
    return image;
}

/// How many of a hundred pixels differ in brightness, which is what is left without colours.
int difference(const QImage &one, const QImage &other)
{
    constexpr int Seen = 60;
    int count = 0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            if (std::abs(qGray(one.pixel(x, y)) - qGray(other.pixel(x, y))) > Seen)
                ++count;
    return 100 * count / (one.width() * one.height());
}

} // namespace

TEST(StateMarkTest, MarksDifferInMoreThanTheirColours)
{
    for (const int size : {18, 36})
        for (const QColor &ground : {QColor(Qt::white), QColor(Qt::black), QColor(Qt::gray)})
            for (std::size_t i = 0; i < AllKinds.size(); ++i)
                for (std::size_t j = 0; j < i; ++j)
                    EXPECT_GE(difference(painted(AllKinds[i], ground, size), painted(AllKinds[j], ground, size)), 8)
                        << i << ' ' << j << ' ' << size;
}

TEST(StateMarkTest, MarksAreSeenOnEachGround)
{
    for (const QColor &ground : {QColor(Qt::white), QColor(Qt::black), QColor(Qt::gray)})
        for (const Kind kind : AllKinds) {
            QImage bare(18, 18, QImage::Format_ARGB32_Premultiplied);
            bare.fill(ground);
            EXPECT_GE(difference(painted(kind, ground, 18), bare), 15) << static_cast<int>(kind);
        }
}

TEST(StateMarkTest, UseInTheSceneGoesWithoutSayingWhereTheCopyDiffers)
{
    const unsigned inScene = AssetStates::InScene;

    EXPECT_TRUE(StateMark::of(0).empty());
    EXPECT_EQ(StateMark::of(inScene), std::vector{Kind::InScene});
    EXPECT_EQ(StateMark::of(inScene | AssetStates::EditedInScene), std::vector{Kind::Edited});
    EXPECT_EQ(StateMark::of(inScene | AssetStates::StoredNewer), std::vector{Kind::Newer});
    EXPECT_EQ(StateMark::of(inScene | AssetStates::EditedInScene | AssetStates::StoredNewer),
              (std::vector{Kind::Newer, Kind::Edited}));
    EXPECT_EQ(StateMark::of(AssetStates::Broken), std::vector{Kind::Broken});
}

TEST(StateMarkTest, IconsStayAsTheyAreWhereTheirRowIsSelected)
{
    for (const Kind kind : AllKinds) {
        const QIcon icon = StateMark::icon(kind);
        EXPECT_EQ(icon.pixmap(16, QIcon::Selected).toImage(), icon.pixmap(16, QIcon::Normal).toImage());
    }
}
