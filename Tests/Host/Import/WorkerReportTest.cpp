// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/WorkerReport.h"

#include <gmock/gmock.h>

using kximport::WorkerReport;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST(WorkerReportTest, ReadsWhatItWrites)
{
    const WorkerReport report = WorkerReport::parse(WorkerReport::noteLine("first") +
                                                    WorkerReport::noteLine("zweite Ü") + WorkerReport::doneLine());

    EXPECT_TRUE(report.isDone);
    EXPECT_FALSE(report.isOutOfMemory);
    EXPECT_FALSE(report.failure);
    EXPECT_THAT(report.notes, ElementsAre("first", "zweite Ü"));
}

TEST(WorkerReportTest, ReadsAFailure)
{
    const WorkerReport report = WorkerReport::parse(WorkerReport::failureLine("two\nlines"));

    EXPECT_FALSE(report.isDone);
    EXPECT_EQ(report.failure, "two lines");
}

TEST(WorkerReportTest, ReadsThatMemoryRanOut)
{
    EXPECT_TRUE(WorkerReport::parse(WorkerReport::outOfMemoryLine()).isOutOfMemory);
}

TEST(WorkerReportTest, PassesOverWhatMeansNothing)
{
    const WorkerReport report = WorkerReport::parse("done?\nhello\n\n\xFF\xFE\nnote ");

    EXPECT_FALSE(report.isDone);
    EXPECT_THAT(report.notes, IsEmpty());
    EXPECT_FALSE(report.failure);
}

TEST(WorkerReportTest, TrustsNoBytes)
{
    const WorkerReport report = WorkerReport::parse(std::string_view("note a\x1B[2Jb\0c\xFF\n", 15));

    EXPECT_THAT(report.notes, ElementsAre("a [2Jb cÿ"));
}

} // namespace
