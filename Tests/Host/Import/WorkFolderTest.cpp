// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/WorkFolder.h"

#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;
using kximport::WorkFolder;

namespace {

class WorkFolderTest : public testing::Test
{
protected:
    void SetUp() override
    {
        const char *value = getenv("TMPDIR");
        _hadValue = value != nullptr;
        _value = value ? value : "";
    }
    void TearDown() override
    {
        if (_hadValue)
            setenv("TMPDIR", _value.c_str(), 1);
        else
            unsetenv("TMPDIR");
    }

    kxtest::TemporaryFolder folder;

private:
    bool _hadValue = false;
    std::string _value;
};

TEST_F(WorkFolderTest, IsOfItsOwnAndForNobodyElse)
{
    const WorkFolder first;
    const WorkFolder second;

    EXPECT_NE(first.path(), second.path());
    EXPECT_EQ(fs::status(first.path()).permissions(), fs::perms::owner_all);
}

TEST_F(WorkFolderTest, GoesWithAllItHolds)
{
    std::string path;
    {
        const WorkFolder work;
        path = work.path();
        std::ofstream(path + "/left behind") << "x";
    }

    EXPECT_FALSE(fs::exists(path));
}

TEST_F(WorkFolderTest, TakesTheUsualPlaceWhereTheChosenOneIsNotThere)
{
    setenv("TMPDIR", folder.file("not there").c_str(), 1);

    const WorkFolder work;

    EXPECT_THAT(work.path(), testing::HasSubstr("/kx-import-"));
}

TEST_F(WorkFolderTest, SaysWhyItCannotBeMade)
{
    setenv("TMPDIR", "/proc", 1);
    const WorkFolder work;

    EXPECT_EQ(work.path(), "");
    EXPECT_THAT(work.error(), testing::StartsWith("no temporary folder '/proc/kx-import-"));
}

} // namespace
