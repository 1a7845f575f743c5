// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/RegularFile.h"

#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <limits>

namespace {

using namespace osg;

class RegularFileTest : public testing::Test
{
protected:
    static std::string readAt(const RegularFile &file, std::uint64_t offset, std::size_t size)
    {
        std::string bytes(size, '?');
        bytes.resize(file.readAt(offset, std::as_writable_bytes(std::span(bytes))));
        return bytes;
    }

    kxtest::TemporaryFolder folder;
};

TEST_F(RegularFileTest, ReadsPieces)
{
    const Result<RegularFile> file = RegularFile::open(folder.write("a", "0123456789"));

    ASSERT_TRUE(file);
    EXPECT_EQ(file.value().size(), 10U);
    EXPECT_EQ(readAt(file.value(), 3, 4), "3456");
    EXPECT_EQ(readAt(file.value(), 8, 4), "89");
    EXPECT_EQ(readAt(file.value(), 10, 4), "");
    EXPECT_EQ(readAt(file.value(), std::numeric_limits<std::uint64_t>::max() - 1, 4), "");
}

TEST_F(RegularFileTest, ReadsAllWithinALimit)
{
    const Result<RegularFile> file = RegularFile::open(folder.write("a", "0123456789"));

    EXPECT_EQ(file.value().readAll(10).value().size(), 10U);
    EXPECT_EQ(file.value().readAll(9).reason(), "The file is too large");
}

TEST_F(RegularFileTest, NoticesThatAFileWasCutShort)
{
    const Result<RegularFile> file = RegularFile::open(folder.write("a", "0123456789"));
    std::filesystem::resize_file(folder.file("a"), 4);

    EXPECT_EQ(file.value().readAll(10).reason(), "The file became shorter while it was read");
}

TEST_F(RegularFileTest, OpensNothingButFiles)
{
    ASSERT_EQ(::mkfifo(folder.file("pipe").c_str(), 0600), 0);

    EXPECT_EQ(RegularFile::open(folder.file("pipe")).reason(), "Not a regular file");
    EXPECT_EQ(RegularFile::open(folder.string()).reason(), "Is a directory");
    EXPECT_EQ(RegularFile::open(folder.file("none")).reason(), "No such file or directory");
    EXPECT_EQ(RegularFile::open("/dev/zero").reason(), "Not a regular file");
}

} // namespace
