// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/Appearance.h"

#include <QApplication>
#include <QLabel>
#include <QPalette>
#include <QToolTip>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

class AppearanceTest : public testing::Test
{
protected:
    ~AppearanceTest() override
    {
        QApplication::setPalette(before);
        QToolTip::setPalette(tipsBefore);
    }

    const QPalette before = QApplication::palette();
    const QPalette tipsBefore = QToolTip::palette();
};

double luminance(const QColor &color)
{
    const auto linear = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// As accessibility guidelines define it: 1 for equal colours, 21 for black on white.
double contrast(const QColor &one, const QColor &other)
{
    const std::pair<double, double> range = std::minmax({luminance(one), luminance(other)});
    return (range.second + 0.05) / (range.first + 0.05);
}

/// Whether a label in the colour of hints leaves any trace.
bool showsHint()
{
    QLabel label(QStringLiteral("Drag an asset here"));
    label.setForegroundRole(QPalette::PlaceholderText);
    const QImage image = label.grab().toImage();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != image.pixel(0, 0))
                return true;
    return false;
}

TEST_F(AppearanceTest, ShowsHintsInTheColoursOfTheDesktop)
{
    // The brush that Qt makes for hints by itself paints nothing.
    Appearance::apply(Appearance::Kind::Desktop);

    EXPECT_TRUE(showsHint());
}

TEST_F(AppearanceTest, ShowsHintsAlsoWhenTheDesktopChangesItsColours)
{
    Appearance::apply(Appearance::Kind::Desktop);

    QPalette changed;
    changed.setColor(QPalette::Text, Qt::red);
    QApplication::setPalette(changed);

    EXPECT_EQ(QApplication::palette().color(QPalette::PlaceholderText).rgb(), QColor(Qt::red).rgb());
    EXPECT_TRUE(showsHint());
}

TEST_F(AppearanceTest, IsReadableInLightAndInDark)
{
    for (const QPalette &palette : {Appearance::light(), Appearance::dark()}) {
        const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {
            {QPalette::WindowText, QPalette::Window},       {QPalette::Text, QPalette::Base},
            {QPalette::Text, QPalette::AlternateBase},      {QPalette::ButtonText, QPalette::Button},
            {QPalette::ToolTipText, QPalette::ToolTipBase}, {QPalette::PlaceholderText, QPalette::Base},
            {QPalette::PlaceholderText, QPalette::Window},  {QPalette::Link, QPalette::Base}};
        for (const auto &[text, ground] : pairs)
            EXPECT_GE(contrast(palette.color(text), palette.color(ground)), 4.5) << text << " on " << ground;
        EXPECT_GE(contrast(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight)), 4.0);
    }
}

TEST_F(AppearanceTest, GoesByTheNamesOfTheCommandLine)
{
    EXPECT_EQ(Appearance::byName("light"), Appearance::Kind::Light);
    EXPECT_EQ(Appearance::byName("dark"), Appearance::Kind::Dark);
    EXPECT_EQ(Appearance::byName(""), Appearance::Kind::Desktop);
}

TEST_F(AppearanceTest, ShowsHintsInTheDark)
{
    Appearance::apply(Appearance::Kind::Dark);

    EXPECT_EQ(QApplication::palette().color(QPalette::Window), Appearance::dark().color(QPalette::Window));
    EXPECT_TRUE(showsHint());
}

} // namespace
