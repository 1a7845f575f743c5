// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ElidedLine.h"

#include <QTest>

#include <gtest/gtest.h>

namespace {

const QString Identity = QStringLiteral("382447dc-5fad-4ba9-b063-5bf3774cf302");

} // namespace

TEST(ElidedLineTest, ShowsDotsOnlyWhereTheTextFindsNoRoom)
{
    ElidedLine line;
    line.resize(4000, 20);
    line.setWholeText(Identity);
    line.show();
    EXPECT_EQ(line.text(), Identity);

    line.resize(80, 20);

    EXPECT_TRUE(line.text().contains(QChar(0x2026))) << line.text().toStdString();
    EXPECT_EQ(line.toolTip(), Identity);
    EXPECT_EQ(line.wholeText(), Identity);
}

TEST(ElidedLineTest, IsWholeAndSelectedWithTheFocusSoThatItCanBeCopied)
{
    ElidedLine line;
    line.resize(80, 20);
    line.setWholeText(Identity);
    line.show();
    line.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&line, 30000));

    line.setFocus();

    ASSERT_TRUE(line.hasFocus());
    EXPECT_EQ(line.selectedText(), Identity);
}
