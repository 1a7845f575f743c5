// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxOSGWidget.h"

#include <gtest/gtest.h>

namespace {

class View final : public kxOSGWidget
{
public:
    int cancelled = 0;

private:
    void cancelRefinement() override { ++cancelled; }
};

} // namespace

TEST(kxOSGWidgetTest, HasNoViewInAProgramWithoutOne)
{
    EXPECT_EQ(kxOSGWidget::getMGLW(-1), nullptr);
    kxOSGWidget::cancelAntialiasing();
}

TEST(kxOSGWidgetTest, FindsTheFirstViewAsTheMainOne)
{
    View first;
    {
        View second;
        EXPECT_EQ(kxOSGWidget::getMGLW(-1), &first);
        EXPECT_EQ(kxOSGWidget::getMGLW(1), &second);
    }
    EXPECT_EQ(kxOSGWidget::getMGLW(1), nullptr);
    EXPECT_EQ(kxOSGWidget::getMGLW(-2), nullptr);
}

TEST(kxOSGWidgetTest, CancelsTheRefinementOfEveryView)
{
    View first;
    View second;

    kxOSGWidget::cancelAntialiasing();

    EXPECT_EQ(first.cancelled, 1);
    EXPECT_EQ(second.cancelled, 1);
}
