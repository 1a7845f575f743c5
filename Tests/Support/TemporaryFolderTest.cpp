// SPDX-License-Identifier: Apache-2.0
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

using kxtest::TemporaryFolder;

namespace {

TEST(TemporaryFolderTest, IsEmptyAndItsOwn)
{
    const TemporaryFolder one;
    const TemporaryFolder other;

    EXPECT_TRUE(std::filesystem::is_empty(one.path()));
    EXPECT_NE(one.path(), other.path());
}

TEST(TemporaryFolderTest, ReadsBackWhatWasWritten)
{
    const TemporaryFolder folder;

    const std::string path = folder.write("a b/Gr\xc3\xbc\xc3\x9f#e.bin", std::string_view("\0x\n", 3));

    EXPECT_EQ(path, folder.string() + "/a b/Gr\xc3\xbc\xc3\x9f#e.bin");
    EXPECT_EQ(folder.read("a b/Gr\xc3\xbc\xc3\x9f#e.bin"), std::string("\0x\n", 3));
    EXPECT_TRUE(folder.contains("a b"));
    EXPECT_FALSE(folder.contains("a"));
}

TEST(TemporaryFolderTest, RemovesFoldersWithoutRights)
{
    std::filesystem::path path;
    {
        const TemporaryFolder folder;
        path = folder.path();
        folder.write("locked/inner/file", "x");
        std::filesystem::permissions(path / "locked/inner", std::filesystem::perms::none);
        std::filesystem::permissions(path / "locked", std::filesystem::perms::none);
    }

    EXPECT_FALSE(std::filesystem::exists(path));
}

} // namespace
