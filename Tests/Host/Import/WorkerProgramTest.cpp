// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/WorkerProgram.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

using kximport::WorkerProgram;

namespace {

class WorkerProgramTest : public testing::Test
{
protected:
    void SetUp() override { unsetenv(WorkerProgram::EnvironmentVariable); }
    void TearDown() override
    {
        WorkerProgram::set("");
        unsetenv(WorkerProgram::EnvironmentVariable);
    }
};

TEST_F(WorkerProgramTest, IsFoundInTheBuildTree)
{
    const std::filesystem::path found = WorkerProgram::find();

    EXPECT_EQ(found.filename(), "kx-import-worker");
    EXPECT_TRUE(std::filesystem::equivalent(found, KX_TEST_IMPORT_WORKER));
}

TEST_F(WorkerProgramTest, IsWhatTheEnvironmentNames)
{
    setenv(WorkerProgram::EnvironmentVariable, "/a/b c", 1);
    EXPECT_EQ(WorkerProgram::find(), "/a/b c");

    setenv(WorkerProgram::EnvironmentVariable, "", 1);
    EXPECT_TRUE(std::filesystem::equivalent(WorkerProgram::find(), KX_TEST_IMPORT_WORKER));
}

TEST_F(WorkerProgramTest, IsFirstOfAllWhatWasSet)
{
    setenv(WorkerProgram::EnvironmentVariable, "/a/b c", 1);

    WorkerProgram::set("/d");

    EXPECT_EQ(WorkerProgram::find(), "/d");
}

} // namespace
