// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxFile.h"

#include "Kernel/kxLogRecorder.h"
#include "Support/TemporaryFolder.h"
#include "Support/WithoutPrivileges.h"

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class EnvironmentVariable
{
public:
    EnvironmentVariable(const char *name, const char *value) : _name(name)
    {
        if (const char *old = std::getenv(name)) {
            _old = old;
            _wasSet = true;
        }
        ::setenv(name, value, 1);
    }
    ~EnvironmentVariable()
    {
        if (_wasSet)
            ::setenv(_name, _old.c_str(), 1);
        else
            ::unsetenv(_name);
    }
    EnvironmentVariable(const EnvironmentVariable &) = delete;
    EnvironmentVariable &operator=(const EnvironmentVariable &) = delete;

private:
    const char *_name;
    std::string _old;
    bool _wasSet = false;
};

class kxFileTest : public testing::Test
{
protected:
    kxFileTest() { fs::permissions(folder.path(), fs::perms(0755)); }
    ~kxFileTest() override { fs::permissions(folder.path(), fs::perms(0755)); }

    kxtest::TemporaryFolder folder;
    kxLogRecorder log;
};

TEST_F(kxFileTest, ExpandsTheHomeFolder)
{
    const EnvironmentVariable home("HOME", "/home/käthe");

    EXPECT_EQ(kxFile::expandFilename("~"), "/home/käthe");
    EXPECT_EQ(kxFile::expandFilename("~/Library"), "/home/käthe/Library");
    EXPECT_EQ(kxFile::expandFilename("~other/Library"), "~other/Library");
    EXPECT_EQ(kxFile::expandFilename("/a/~/b"), "/a/~/b");
}

TEST_F(kxFileTest, ExpandsVariablesAndLeavesUnknownOnes)
{
    const EnvironmentVariable variable("KX_FILE_TEST", "value");

    EXPECT_EQ(kxFile::expandFilename("/a/$KX_FILE_TEST/b"), "/a/value/b");
    EXPECT_EQ(kxFile::expandFilename("/a/${KX_FILE_TEST}b"), "/a/valueb");
    EXPECT_EQ(kxFile::expandFilename("/a/$KX_FILE_TESTb"), "/a/$KX_FILE_TESTb");
    EXPECT_EQ(kxFile::expandFilename("/a/${KX_FILE_TEST"), "/a/${KX_FILE_TEST");
    EXPECT_EQ(kxFile::expandFilename("/a/$/${}$"), "/a/$/${}$");
}

TEST_F(kxFileTest, LeavesThePathOfSomethingThatExistsAsItIs)
{
    const EnvironmentVariable variable("KX_FILE_TEST", "value");
    const std::string path = folder.write("$KX_FILE_TEST", "");

    EXPECT_EQ(kxFile::expandFilename(path.c_str()), path);
}

TEST_F(kxFileTest, ExpandsNothingToNothing)
{
    EXPECT_EQ(kxFile::expandFilename(nullptr), "");
    EXPECT_EQ(kxFile::expandFilename(""), "");
}

TEST_F(kxFileTest, AllowsWritingAFileThatIsThereAndOneThatCanBeMade)
{
    EXPECT_TRUE(kxFile::checkWrite(folder.write("old.xml", "").c_str(), false, false));
    EXPECT_TRUE(kxFile::checkWrite(folder.file("new.xml").c_str(), false, false));
    EXPECT_TRUE(kxFile::checkWrite("a name without a folder", false, false));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(kxFileTest, DeniesWritingWhatCannotBeWritten)
{
    EXPECT_FALSE(kxFile::checkWrite(folder.makeFolder("folder").c_str(), false, false));
    EXPECT_FALSE(kxFile::checkWrite(folder.file("missing/new.xml").c_str(), false, false));
    EXPECT_FALSE(kxFile::checkWrite((folder.write("file", "") + "/new.xml").c_str(), false, false));
    EXPECT_FALSE(kxFile::checkWrite("", false, false));
    EXPECT_FALSE(kxFile::checkWrite(nullptr, false, false));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(kxFileTest, DeniesWritingWithoutPermission)
{
    const std::string file = folder.write("old.xml", "");
    ::chmod(file.c_str(), 0444);
    fs::permissions(folder.path(), fs::perms(0555));
    const kxtest::WithoutPrivileges user;

    EXPECT_FALSE(kxFile::checkWrite(file.c_str(), false, false));
    EXPECT_FALSE(kxFile::checkWrite(folder.file("new.xml").c_str(), false, false));
}

TEST_F(kxFileTest, DeniesAnExistingFileThatMustBeNew)
{
    EXPECT_FALSE(kxFile::checkWrite(folder.write("old.xml", "").c_str(), true, false));
    EXPECT_TRUE(kxFile::checkWrite(folder.file("new.xml").c_str(), true, false));
}

TEST_F(kxFileTest, ReportsADenialOnRequest)
{
    const std::string path = folder.makeFolder("Ordner");

    kxFile::checkWrite(path.c_str(), false, true);

    EXPECT_THAT(log.lines(kxLogLevel::Error), ElementsAre("Can't write file '" + path + "': Is a directory."));
}

TEST_F(kxFileTest, ComputesTheChecksumOfAFile)
{
    // The check value of this CRC.
    EXPECT_EQ(kxFile::getChecksum(folder.write("a", "123456789").c_str(), 0), 0xCBF43926U);
    EXPECT_EQ(kxFile::getChecksum(folder.write("b", "").c_str(), 0), 0U);
    EXPECT_EQ(kxFile::getChecksum(folder.write("c", std::string(1, '\0')).c_str(), 0), 0xD202EF8DU);
}

TEST_F(kxFileTest, ComputesTheChecksumOfAFileOfManyPieces)
{
    std::string bytes(3000001, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(i * 7 % 251);

    const std::uint32_t checksum = kxFile::getChecksum(folder.write("large", bytes).c_str(), 0);

    EXPECT_EQ(checksum, 0xE22B9FC2U);
    EXPECT_EQ(kxFile::getChecksum(bytes, 0), 0xE22B9FC2U);
}

TEST_F(kxFileTest, ContinuesAChecksum)
{
    const std::uint32_t first = kxFile::getChecksum(std::string_view("1234"), 0);

    EXPECT_EQ(kxFile::getChecksum(folder.write("rest", "56789").c_str(), first), 0xCBF43926U);
}

TEST_F(kxFileTest, LogsAFileWhoseChecksumCannotBeRead)
{
    const std::string path = folder.file("missing.osb");

    EXPECT_EQ(kxFile::getChecksum(path.c_str(), 5), 0U);
    EXPECT_EQ(kxFile::getChecksum(folder.string().c_str(), 0), 0U);

    EXPECT_THAT(log.lines(kxLogLevel::Error),
                ElementsAre("Failed to read file '" + path + "': No such file or directory.",
                            "Failed to read file '" + folder.string() + "': Is a directory."));
}

TEST_F(kxFileTest, KnowsWhatExists)
{
    EXPECT_TRUE(kxFile::exists(folder.write("file", "").c_str(), false, true));
    EXPECT_TRUE(kxFile::exists(folder.string().c_str(), false, false));
    EXPECT_FALSE(kxFile::exists(folder.file("missing").c_str(), false, true));
    EXPECT_FALSE(kxFile::exists(nullptr, false, true));
}

TEST_F(kxFileTest, CountsADanglingLinkOnlyOnRequest)
{
    fs::create_symlink("missing", folder.path() / "link");

    EXPECT_TRUE(kxFile::exists(folder.file("link").c_str(), false, true));
    EXPECT_FALSE(kxFile::exists(folder.file("link").c_str(), false, false));
}

TEST_F(kxFileTest, ExpandsThePathOnlyOnRequest)
{
    folder.write("file", "");
    const EnvironmentVariable variable("KX_FILE_TEST", folder.string().c_str());

    EXPECT_TRUE(kxFile::exists("$KX_FILE_TEST/file", true, true));
    EXPECT_FALSE(kxFile::exists("$KX_FILE_TEST/file", false, true));
}

TEST_F(kxFileTest, RemovesFilesAndLinksButNothingBehindThem)
{
    const std::string file = folder.write("file", "");
    const std::string kept = folder.write("kept/file", "");
    fs::create_symlink("kept", folder.path() / "link");

    EXPECT_TRUE(kxFile::remove(file.c_str()));
    EXPECT_TRUE(kxFile::remove(folder.file("link").c_str()));

    EXPECT_FALSE(folder.contains("file"));
    EXPECT_FALSE(fs::is_symlink(folder.path() / "link"));
    EXPECT_TRUE(folder.contains("kept/file"));
}

TEST_F(kxFileTest, RemovesNoFolderAndNothingTwice)
{
    const std::string file = folder.write("file", "");

    EXPECT_TRUE(kxFile::remove(file.c_str()));
    EXPECT_FALSE(kxFile::remove(file.c_str()));
    EXPECT_FALSE(kxFile::remove(folder.makeFolder("folder").c_str()));
    EXPECT_FALSE(kxFile::remove(nullptr));
    EXPECT_TRUE(folder.contains("folder"));
}

TEST_F(kxFileTest, ReplacesTheContentOfAFile)
{
    const std::string path = folder.write("ä.xml", "old");
    std::string error;

    EXPECT_TRUE(kxFile::write(path.c_str(), "new", error));

    EXPECT_EQ(folder.read("ä.xml"), "new");
    EXPECT_EQ(error, "");
}

TEST_F(kxFileTest, GivesTheReasonWhenAFileCannotBeWritten)
{
    std::string error;

    EXPECT_FALSE(kxFile::write(folder.file("missing/a.xml").c_str(), "new", error));

    EXPECT_EQ(error, "No such file or directory");
    EXPECT_THAT(log.lines(), IsEmpty());
}

} // namespace
