// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxLog.h"

#include "Kernel/kxLogRecorder.h"
#include "Support/CapturedOutput.h"

#include <gmock/gmock.h>

#include <string>
#include <thread>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class kxLogTest : public testing::Test
{
protected:
    ~kxLogTest() override
    {
        kxLog::setLevel(kxLogLevel::Info);
        kxLog::enableStandardError(true);
    }
};

TEST_F(kxLogTest, FormatsLikePrintf)
{
    const kxLogRecorder recorder;

    kxLog::error("Failed to write file '%s' (%d of %u).", "Stühle 日本.osb", -1, 3U);

    EXPECT_THAT(recorder.lines(), ElementsAre("Failed to write file 'Stühle 日本.osb' (-1 of 3)."));
}

TEST_F(kxLogTest, KeepsTheLevelsApart)
{
    kxLog::setLevel(kxLogLevel::Debug);
    const kxLogRecorder recorder;

    kxLog::debug("a");
    kxLog::info("b");
    kxLog::warning("c");
    kxLog::error("d");

    EXPECT_THAT(recorder.lines(kxLogLevel::Debug), ElementsAre("a"));
    EXPECT_THAT(recorder.lines(kxLogLevel::Info), ElementsAre("b"));
    EXPECT_THAT(recorder.lines(kxLogLevel::Warning), ElementsAre("c"));
    EXPECT_THAT(recorder.lines(kxLogLevel::Error), ElementsAre("d"));
}

TEST_F(kxLogTest, DropsDebugLinesUntilTheyAreAskedFor)
{
    const kxLogRecorder recorder;

    kxLog::debug("unasked");
    kxLog::setLevel(kxLogLevel::Debug);
    kxLog::debug("asked");

    EXPECT_THAT(recorder.lines(), ElementsAre("asked"));
}

TEST_F(kxLogTest, DropsLinesBelowTheLevel)
{
    const kxLogRecorder recorder;
    kxLog::setLevel(kxLogLevel::Error);

    kxLog::warning("lower");
    kxLog::error("equal");

    EXPECT_EQ(kxLog::level(), kxLogLevel::Error);
    EXPECT_THAT(recorder.lines(), ElementsAre("equal"));
}

TEST_F(kxLogTest, WritesToStandardErrorWithTheLevelInFront)
{
    kxLog::setLevel(kxLogLevel::Debug);
    kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);

    kxLog::debug("one");
    kxLog::info("two");
    kxLog::warning("three");
    kxLog::error("Größe: 100 %%");

    EXPECT_EQ(output.text(), "debug: one\ninfo: two\nwarning: three\nerror: Größe: 100 %\n");
}

TEST_F(kxLogTest, MakesOneLineOfAMessageWhateverItEndsWith)
{
    const kxLogRecorder recorder;
    kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);

    kxLog::info("with an end\n");
    kxLog::info("without");
    kxLog::info("%s", "");

    EXPECT_EQ(output.text(), "info: with an end\ninfo: without\ninfo: \n");
    EXPECT_THAT(recorder.lines(), ElementsAre("with an end", "without", ""));
}

TEST_F(kxLogTest, EscapesControlCharactersOnStandardErrorOnly)
{
    const kxLogRecorder recorder;
    kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);

    kxLog::error("Failed to read file '%s'.", "a\nb\x1b[31m\x7f\tc");

    EXPECT_EQ(output.text(), "error: Failed to read file 'a\\nb\\x1b[31m\\x7f\tc'.\n");
    EXPECT_THAT(recorder.lines(), ElementsAre("Failed to read file 'a\nb\x1b[31m\x7f\tc'."));
}

TEST_F(kxLogTest, TakesWrittenTextAsItStands)
{
    const kxLogRecorder recorder;

    kxLog::write(kxLogLevel::Warning, "100 %s");

    EXPECT_THAT(recorder.lines(kxLogLevel::Warning), ElementsAre("100 %s"));
}

TEST_F(kxLogTest, StaysSilentOnStandardErrorWhenSwitchedOff)
{
    const kxLogRecorder recorder;
    kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);
    kxLog::enableStandardError(false);

    kxLog::error("silent");

    EXPECT_FALSE(kxLog::isStandardErrorEnabled());
    EXPECT_EQ(output.text(), "");
    EXPECT_THAT(recorder.lines(), ElementsAre("silent"));
}

TEST_F(kxLogTest, CallsASinkOnceHoweverOftenItWasAdded)
{
    kxLogRecorder recorder;
    kxLog::addSink(&recorder);
    kxLog::addSink(nullptr);

    kxLog::info("once");

    EXPECT_THAT(recorder.lines(), ElementsAre("once"));
}

TEST_F(kxLogTest, LeavesARemovedSinkAlone)
{
    kxLogRecorder recorder;
    kxLog::removeSink(&recorder);

    kxLog::info("unheard");

    EXPECT_THAT(recorder.lines(), IsEmpty());
}

TEST_F(kxLogTest, WritesLongLinesWhole)
{
    const std::string name(100000, 'x');
    const kxLogRecorder recorder;
    kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);

    kxLog::info("%s.", name.c_str());

    EXPECT_TRUE(output.text() == "info: " + name + ".\n");
    EXPECT_THAT(recorder.lines(), ElementsAre(name + "."));
}

TEST_F(kxLogTest, KeepsTheLinesOfSeveralThreadsApart)
{
    const kxLogRecorder recorder;
    kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);
    const auto logMany = [](const char *word) {
        for (int i = 0; i < 500; ++i)
            kxLog::info("%s", word);
    };

    std::thread first(logMany, "first");
    std::thread second(logMany, "second");
    first.join();
    second.join();

    std::size_t lines = 0;
    const std::string text = output.text();
    for (std::size_t begin = 0, end = 0; begin < text.size(); begin = end + 1, ++lines) {
        end = text.find('\n', begin);
        const std::string line = text.substr(begin, end - begin);
        ASSERT_TRUE(line == "info: first" || line == "info: second") << line;
    }
    EXPECT_EQ(lines, 1000U);
    EXPECT_EQ(recorder.lines().size(), 1000U);
}

TEST(kxLogRecorderTest, ForgetsOnRequestAndHearsWhatFollows)
{
    kxLogRecorder recorder;
    kxLog::info("before");

    recorder.clear();
    kxLog::info("after");

    EXPECT_THAT(recorder.lines(), ElementsAre("after"));
}

} // namespace
