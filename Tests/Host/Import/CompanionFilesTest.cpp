// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/CompanionFiles.h"

#include "Support/TemporaryFolder.h"

#include <sys/stat.h>

#include <gtest/gtest.h>

using kximport::CompanionFiles;

namespace {

class CompanionFilesTest : public testing::Test
{
protected:
    std::string find(const std::string &reference) const
    {
        return CompanionFiles(folder.string() + "/").find(reference).value_or("nothing");
    }

    kxtest::TemporaryFolder folder;
};

TEST_F(CompanionFilesTest, FindsAFileBesideTheModel)
{
    const std::string path = folder.write("Holz.png", "x");

    EXPECT_EQ(find("Holz.png"), path);
    EXPECT_EQ(find("./Holz.png"), folder.string() + "/./Holz.png");
}

TEST_F(CompanionFilesTest, FollowsBackslashes)
{
    const std::string path = folder.write("Bilder/Holz.png", "x");

    EXPECT_EQ(find("Bilder\\Holz.png"), path);
}

TEST_F(CompanionFilesTest, FindsTheNameAloneWhereThePathIsAnotherMachines)
{
    const std::string path = folder.write("Holz #1.png", "x");

    EXPECT_EQ(find("D:\\Projekte\\Stühle\\Holz #1.png"), path);
    EXPECT_EQ(find("/home/somebody/models/Holz #1.png"), path);
}

TEST_F(CompanionFilesTest, DecodesPercentSigns)
{
    const std::string path = folder.write("weiße Wand.png", "x");

    EXPECT_EQ(find("wei%C3%9Fe%20Wand.png"), path);
}

TEST_F(CompanionFilesTest, PrefersTheNameAsItStands)
{
    const std::string path = folder.write("50%20.png", "as it stands");
    folder.write("50 .png", "decoded");

    EXPECT_EQ(find("50%20.png"), path);
}

TEST_F(CompanionFilesTest, IgnoresTheCaseOfFoldersAndNames)
{
    const std::string path = folder.write("Textures/WOOD.JPG", "x");

    EXPECT_EQ(find("textures/wood.jpg"), path);
    EXPECT_EQ(find("C:\\textures\\other.jpg"), "nothing");
}

TEST_F(CompanionFilesTest, PrefersTheExactCase)
{
    folder.write("WOOD.png", "x");
    const std::string path = folder.write("wood.png", "x");
    folder.write("Wood.PNG", "x");

    EXPECT_EQ(find("wood.png"), path);
    EXPECT_EQ(find("wOOd.png"), folder.file("WOOD.png")); // of several the first in byte order
}

TEST_F(CompanionFilesTest, AcceptsAFileUrlAndAnExistingAbsolutePath)
{
    const kxtest::TemporaryFolder other;
    const std::string path = other.write("木.png", "x");

    EXPECT_EQ(find(path), path);
    EXPECT_EQ(find("file://" + path), path);
}

TEST_F(CompanionFilesTest, LeadsUpwardsToo)
{
    folder.write("textures/a.png", "x");
    folder.makeFolder("model");

    EXPECT_EQ(CompanionFiles(folder.string() + "/model/").find("../textures/a.png"),
              folder.string() + "/model/../textures/a.png");
}

TEST_F(CompanionFilesTest, FindsOnlyRegularFiles)
{
    folder.makeFolder("Holz.png");
    ASSERT_EQ(mkfifo(folder.file("pipe.png").c_str(), 0600), 0);

    EXPECT_EQ(find("Holz.png"), "nothing");
    EXPECT_EQ(find("pipe.png"), "nothing");
    EXPECT_EQ(find("/dev/zero"), "nothing");
}

TEST_F(CompanionFilesTest, FindsNothingForNothing)
{
    EXPECT_EQ(find(""), "nothing");
    EXPECT_EQ(find("."), "nothing");
    EXPECT_EQ(find("/"), "nothing");
    EXPECT_EQ(find("%"), "nothing");
    EXPECT_EQ(find("%zz"), "nothing");
    EXPECT_EQ(find(std::string("a\0b", 3)), "nothing");
    EXPECT_EQ(find("https://example.org/a.png"), "nothing");
}

} // namespace
