// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/LogCapture.h"

#include "SceneGraph/SceneLog.h"
#include "Support/CapturedOutput.h"

#include <gtest/gtest.h>

using kximport::LogCapture;

namespace {

TEST(LogCaptureTest, TakesTheNewestLineWithoutTheNameOfTheFile)
{
    LogCapture log;

    osg::logLine(osg::LogLevel::Error, "Something before");
    osg::logLine(osg::LogLevel::Error, "Cannot read image \"/a/b.png\": it is cut off");

    EXPECT_EQ(log.takeReason("/a/b.png"), "it is cut off");
    EXPECT_EQ(log.takeReason("/a/b.png"), "");
}

TEST(LogCaptureTest, KeepsALineThatNamesAnotherFile)
{
    LogCapture log;

    osg::logLine(osg::LogLevel::Error, "Cannot read image \"/a/b.png\": it is cut off");

    EXPECT_EQ(log.takeReason("/a/c.png"), "Cannot read image \"/a/b.png\": it is cut off");
}

TEST(LogCaptureTest, GivesTheLogBackToStandardError)
{
    {
        const LogCapture log;
    }
    kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);

    osg::logLine(osg::LogLevel::Error, "heard again");

    EXPECT_EQ(output.text(), "heard again\n");
}

} // namespace
