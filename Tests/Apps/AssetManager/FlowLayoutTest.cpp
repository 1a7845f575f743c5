// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/FlowLayout.h"

#include <QLabel>
#include <QWidget>

#include <gtest/gtest.h>

#include <array>
#include <memory>

namespace {

constexpr int Width = 100;
constexpr int Height = 20;

class FlowLayoutTest : public testing::Test
{
protected:
    FlowLayoutTest()
    {
        layout->setSpacing(0);
        for (QLabel &label : labels) {
            label.setFixedSize(Width, Height);
            layout->addWidget(&label);
        }
    }

    QWidget panel;
    FlowLayout *layout = new FlowLayout(&panel); // owned by the panel
    std::array<QLabel, 3> labels;                // which go before the panel, whose children they are
};

} // namespace

TEST_F(FlowLayoutTest, NeedsAsManyRowsAsTheWidthAsksFor)
{
    EXPECT_EQ(layout->heightForWidth(3 * Width), Height);
    EXPECT_EQ(layout->heightForWidth(3 * Width - 1), 2 * Height);
    EXPECT_EQ(layout->heightForWidth(Width), 3 * Height);
    EXPECT_EQ(layout->minimumSize(), QSize(Width, Height));
}

TEST_F(FlowLayoutTest, BeginsAnotherRowWhereThereIsNoRoom)
{
    layout->setGeometry({0, 0, 2 * Width, 2 * Height});

    EXPECT_EQ(labels[0].pos(), QPoint(0, 0));
    EXPECT_EQ(labels[1].pos(), QPoint(Width, 0));
    EXPECT_EQ(labels[2].pos(), QPoint(0, Height));
}

TEST_F(FlowLayoutTest, GivesItsItemsBack)
{
    const std::unique_ptr<QLayoutItem> first(layout->takeAt(0));

    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->widget(), labels.data());
    EXPECT_EQ(layout->count(), 2);
    EXPECT_EQ(layout->takeAt(2), nullptr);
}
