// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/SceneLog.h"

#include "Support/CapturedOutput.h"
#include "Support/RecordedLog.h"

#include <gmock/gmock.h>

#include <thread>
#include <vector>

namespace {

using namespace osg;
using testing::ElementsAre;

TEST(SceneLogTest, WritesToStandardErrorWithoutAReceiver)
{
    kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);

    logLine(LogLevel::Warning, "Größe");

    EXPECT_EQ(output.text(), "Größe\n");
}

TEST(SceneLogTest, GivesLinesToTheReceiver)
{
    const kxtest::RecordedLog log;

    logLine(LogLevel::Error, "first");
    logLine(LogLevel::Info, "second");

    EXPECT_THAT(log.lines(), ElementsAre("first", "second"));
}

TEST(SceneLogTest, TakesLinesFromAnyThread)
{
    const kxtest::RecordedLog log;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([] {
            for (int line = 0; line < 100; ++line)
                logLine(LogLevel::Info, "line");
        });
    for (std::thread &thread : threads)
        thread.join();

    EXPECT_EQ(log.lines().size(), 400U);
}

} // namespace
