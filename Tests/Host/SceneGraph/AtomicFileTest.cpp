// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/AtomicFile.h"

#include "Support/FileSizeLimit.h"
#include "Support/WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

class AtomicFileTest : public testing::Test
{
protected:
    AtomicFileTest()
    {
        std::string pattern = (fs::temp_directory_path() / "AtomicFileTest-XXXXXX").string();
        _folder = ::mkdtemp(pattern.data());
        fs::permissions(_folder, fs::perms(0755));
    }
    ~AtomicFileTest() override
    {
        fs::permissions(_folder, fs::perms(0755));
        fs::remove_all(_folder);
    }

    std::string path(const std::string &name) const { return (_folder / name).string(); }
    const fs::path &folder() const { return _folder; }

    /// As if it had been written two minutes ago.
    void age(const std::string &name) const
    {
        fs::last_write_time(folder() / name, fs::file_time_type::clock::now() - std::chrono::minutes(2));
    }

    void writeOld(const std::string &name, const std::string &content) const { std::ofstream(path(name)) << content; }

    std::string content(const std::string &name) const
    {
        std::ifstream stream(path(name), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }

    std::vector<std::string> entries() const
    {
        std::vector<std::string> names;
        for (const fs::directory_entry &entry : fs::directory_iterator(_folder))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    /// Empty when it went well, else the reason.
    std::string replace(const std::string &name, const std::string &newContent) const
    {
        std::string error;
        const bool isDone = osg::writeFileAtomically(path(name), newContent.data(), newContent.size(), error);
        EXPECT_EQ(isDone, error.empty());
        return error;
    }

    static mode_t modeOf(const std::string &file)
    {
        struct stat status = {};
        ::stat(file.c_str(), &status);
        return status.st_mode & 07777;
    }

private:
    fs::path _folder;
};

TEST_F(AtomicFileTest, CreatesAFileThatWasNotThere)
{
    EXPECT_EQ(replace("Stühle #1.osb", "content"), "");

    EXPECT_EQ(content("Stühle #1.osb"), "content");
    EXPECT_EQ(entries(), (std::vector<std::string>{"Stühle #1.osb"}));
}

TEST_F(AtomicFileTest, ShowsTheOldContentUntilTheCommit)
{
    writeOld("a.osb", "old");
    std::string error;
    osg::AtomicFile file(path("a.osb"));
    ASSERT_TRUE(file.open(error));

    file.write("new", 3);

    EXPECT_EQ(content("a.osb"), "old");
    ASSERT_TRUE(file.commit(error));
    EXPECT_EQ(content("a.osb"), "new");
}

TEST_F(AtomicFileTest, WritesBesideTheTargetIntoAHiddenFileThatNoReaderLooksFor)
{
    std::string error;
    osg::AtomicFile file(path("a.osb"));

    ASSERT_TRUE(file.open(error));

    ASSERT_EQ(entries().size(), 1U);
    EXPECT_EQ(entries()[0].substr(0, 4), ".kx-");
    EXPECT_EQ(fs::path(entries()[0]).extension(), ".part");
}

TEST_F(AtomicFileTest, LeavesNothingWithoutACommit)
{
    writeOld("a.osb", "old");
    {
        std::string error;
        osg::AtomicFile file(path("a.osb"));
        ASSERT_TRUE(file.open(error));
        file.write("new", 3);
    }

    EXPECT_EQ(content("a.osb"), "old");
    EXPECT_EQ(entries(), (std::vector<std::string>{"a.osb"}));
}

TEST_F(AtomicFileTest, DiscardsOnRequestAndOpensAgain)
{
    std::string error;
    osg::AtomicFile file(path("a.osb"));
    ASSERT_TRUE(file.open(error));
    file.write("first", 5);

    file.discard();
    file.discard();

    EXPECT_TRUE(entries().empty());
    ASSERT_TRUE(file.open(error));
    file.write("second", 6);
    ASSERT_TRUE(file.commit(error));
    EXPECT_EQ(content("a.osb"), "second");
}

TEST_F(AtomicFileTest, KeepsTheOrderOfSmallAndLargeWrites)
{
    const std::string large(1000000, 'x');
    std::string error;
    osg::AtomicFile file(path("a.osb"));
    ASSERT_TRUE(file.open(error));

    EXPECT_TRUE(file.write("begin", 5));
    EXPECT_TRUE(file.write(large.data(), large.size()));
    EXPECT_TRUE(file.write(nullptr, 0));
    EXPECT_TRUE(file.write("end", 3));

    ASSERT_TRUE(file.commit(error));
    EXPECT_TRUE(content("a.osb") == "begin" + large + "end");
}

TEST_F(AtomicFileTest, KeepsTheTargetsPermissions)
{
    writeOld("a.osb", "old");
    ::chmod(path("a.osb").c_str(), 0640);

    EXPECT_EQ(replace("a.osb", "new"), "");

    EXPECT_EQ(modeOf(path("a.osb")), 0640U);
}

TEST_F(AtomicFileTest, GivesANewFileTheUsualPermissions)
{
    const mode_t oldMask = ::umask(027);
    EXPECT_EQ(replace("a.osb", "new"), "");
    ::umask(oldMask);

    EXPECT_EQ(modeOf(path("a.osb")), 0640U);
}

TEST_F(AtomicFileTest, ReplacesTheDestinationOfALinkAndKeepsTheLink)
{
    fs::create_directory(folder() / "store");
    writeOld("store/real.osb", "old");
    fs::create_symlink("store/real.osb", folder() / "link.osb");

    EXPECT_EQ(replace("link.osb", "new"), "");

    EXPECT_TRUE(fs::is_symlink(folder() / "link.osb"));
    EXPECT_EQ(content("store/real.osb"), "new");
}

TEST_F(AtomicFileTest, CreatesTheDestinationOfADanglingLink)
{
    fs::create_symlink(folder() / "missing.osb", folder() / "link.osb");

    EXPECT_EQ(replace("link.osb", "new"), "");

    EXPECT_TRUE(fs::is_symlink(folder() / "link.osb"));
    EXPECT_EQ(content("missing.osb"), "new");
}

TEST_F(AtomicFileTest, RefusesALoopOfLinks)
{
    fs::create_symlink("b.osb", folder() / "a.osb");
    fs::create_symlink("a.osb", folder() / "b.osb");

    EXPECT_EQ(replace("a.osb", "new"), "Too many levels of symbolic links");
}

TEST_F(AtomicFileTest, RefusesAFolder)
{
    fs::create_directory(folder() / "a.osb");

    EXPECT_EQ(replace("a.osb", "new"), "Is a directory");
}

TEST_F(AtomicFileTest, RefusesAMissingFolder)
{
    EXPECT_EQ(replace("missing/a.osb", "new"), "No such file or directory");
    EXPECT_TRUE(entries().empty());
}

TEST_F(AtomicFileTest, FillsTheLongestNameThatAFileMayHave)
{
    const std::string name = std::string(251, 'n') + ".osb";

    EXPECT_EQ(replace(name, "new"), "");

    EXPECT_EQ(content(name), "new");
}

TEST_F(AtomicFileTest, RefusesAWriteProtectedFile)
{
    writeOld("a.osb", "old");
    fs::permissions(folder(), fs::perms(0777));
    ::chmod(path("a.osb").c_str(), 0444);
    std::string error;
    {
        const kxtest::WithoutPrivileges user;
        error = replace("a.osb", "new");
    }

    EXPECT_EQ(error, "Permission denied");
    EXPECT_EQ(content("a.osb"), "old");
}

TEST_F(AtomicFileTest, OverwritesTheFileWhereTheFolderAdmitsNoNewOne)
{
    writeOld("a.osb", "the old and longer content");
    ::chmod(path("a.osb").c_str(), 0666);
    fs::permissions(folder(), fs::perms(0555));
    std::string error;
    {
        const kxtest::WithoutPrivileges user;
        error = replace("a.osb", "new");
    }

    EXPECT_EQ(error, "");
    EXPECT_EQ(content("a.osb"), "new");
}

TEST_F(AtomicFileTest, KeepsTheFileUntilTheCommitAlsoWhereItIsOverwritten)
{
    writeOld("a.osb", "old");
    ::chmod(path("a.osb").c_str(), 0666);
    fs::permissions(folder(), fs::perms(0555));
    {
        const kxtest::WithoutPrivileges user;
        std::string error;
        osg::AtomicFile file(path("a.osb"));
        ASSERT_TRUE(file.open(error));
        file.write("new", 3);
    }

    EXPECT_EQ(content("a.osb"), "old");
}

TEST_F(AtomicFileTest, RefusesANewFileWhereTheFolderAdmitsNone)
{
    fs::permissions(folder(), fs::perms(0555));
    std::string error;
    {
        const kxtest::WithoutPrivileges user;
        error = replace("a.osb", "new");
    }

    EXPECT_EQ(error, "Permission denied");
    EXPECT_TRUE(entries().empty());
}

TEST_F(AtomicFileTest, OverwritesAnotherOwnersFileInASharedFolder)
{
    if (::geteuid() != 0)
        return; // only root can give a file to somebody else; the other tests cover what a user can arrange
    writeOld("a.osb", "the old and longer content");
    ::chmod(path("a.osb").c_str(), 0666);
    fs::permissions(folder(), fs::perms(01777));
    std::string error;
    {
        const kxtest::WithoutPrivileges user;
        error = replace("a.osb", "new");
    }

    EXPECT_EQ(error, "");
    EXPECT_EQ(content("a.osb"), "new");
    EXPECT_EQ(entries(), (std::vector<std::string>{"a.osb"}));
}

TEST_F(AtomicFileTest, KeepsTheOldFileWhenTheDiskFailsInTheMiddle)
{
    writeOld("a.osb", "old");
    const std::string large(1000000, 'x');
    std::string error;
    {
        const kxtest::FileSizeLimit limit(500000, kxtest::FileSizeLimit::Fails);
        error = replace("a.osb", large);
    }

    EXPECT_EQ(error, "File too large");
    EXPECT_EQ(content("a.osb"), "old");
    EXPECT_EQ(entries(), (std::vector<std::string>{"a.osb"}));
}

TEST_F(AtomicFileTest, KeepsTheOldFileWhenThereIsNoRoomToOverwriteIt)
{
    writeOld("a.osb", "old");
    ::chmod(path("a.osb").c_str(), 0666);
    fs::permissions(folder(), fs::perms(0555));
    const std::string large(1000000, 'x');
    std::string error;
    {
        const kxtest::WithoutPrivileges user;
        const kxtest::FileSizeLimit limit(500000, kxtest::FileSizeLimit::Fails);
        error = replace("a.osb", large);
    }

    EXPECT_EQ(error, "File too large");
    EXPECT_EQ(content("a.osb"), "old");
}

TEST_F(AtomicFileTest, ReportsTheFirstFailureAtTheCommit)
{
    const std::string large(1000000, 'x');
    std::string error;
    osg::AtomicFile file(path("a.osb"));
    ASSERT_TRUE(file.open(error));
    {
        const kxtest::FileSizeLimit limit(500000, kxtest::FileSizeLimit::Fails);
        EXPECT_FALSE(file.write(large.data(), large.size()));
    }

    EXPECT_FALSE(file.write("more", 4));
    EXPECT_FALSE(file.commit(error));

    EXPECT_EQ(error, "File too large");
    EXPECT_TRUE(entries().empty());
}

TEST_F(AtomicFileTest, WritesToADeviceWithoutReplacingIt)
{
    fs::create_symlink("/dev/null", folder() / "null.osb");

    EXPECT_EQ(replace("null.osb", "new"), "");

    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_EQ(content("null.osb"), "");
}

TEST_F(AtomicFileTest, ReportsAFullDevice)
{
    fs::create_symlink("/dev/full", folder() / "full.osb");

    EXPECT_EQ(replace("full.osb", "new"), "No space left on device");
}

TEST_F(AtomicFileTest, FailsWhenNothingWasOpened)
{
    std::string error;
    osg::AtomicFile file(path("a.osb"));

    EXPECT_FALSE(file.write("new", 3));
    EXPECT_FALSE(file.commit(error));

    EXPECT_EQ(error, "Bad file descriptor");
    EXPECT_TRUE(entries().empty());
}

TEST_F(AtomicFileTest, RemovesWhatAKilledProcessLeftAMinuteAgo)
{
    writeOld(".kx-0123456789abcdef.part", "half");
    age(".kx-0123456789abcdef.part");

    EXPECT_EQ(replace("a.osb", "new"), "");

    EXPECT_EQ(entries(), std::vector<std::string>{"a.osb"});
}

TEST_F(AtomicFileTest, LeavesWhatMayBelongToSomebody)
{
    writeOld(".kx-0123456789abcdef.part", "young");
    for (const char *name : {".kx-012.part", "x.kx-0123456789abcdef.part", ".kx-0123456789abcdef.part~"}) {
        writeOld(name, "of another name");
        age(name);
    }
    fs::create_directory(folder() / ".kx-aaaaaaaaaaaaaaaa.part");
    age(".kx-aaaaaaaaaaaaaaaa.part");

    EXPECT_EQ(replace("a.osb", "new"), "");

    EXPECT_EQ(entries().size(), 6U);
}

TEST_F(AtomicFileTest, LeavesWhatIsStillBeingWritten)
{
    std::string error;
    osg::AtomicFile slow(path("slow.osb"));
    ASSERT_TRUE(slow.open(error));
    ASSERT_EQ(entries().size(), 1U);
    age(entries()[0]);

    EXPECT_EQ(replace("a.osb", "new"), "");

    EXPECT_TRUE(slow.write("slow", 4));
    EXPECT_TRUE(slow.commit(error)) << error;
    EXPECT_EQ(content("slow.osb"), "slow");
}

} // namespace
