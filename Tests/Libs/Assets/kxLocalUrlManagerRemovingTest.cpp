// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxLocalUrlManager.h"
#include "LibraryFixture.h"
#include "PlainItem.h"
#include "Support/CapturedOutput.h"

#include <gmock/gmock.h>

#include <unistd.h>

namespace fs = std::filesystem;
using testing::UnorderedElementsAre;

namespace {

const std::string First = "10000000-0000-4000-8000-000000000001";
const std::string Second = "20000000-0000-4000-8000-000000000002";
const std::string Third = "30000000-0000-4000-8000-000000000003";

class kxLocalUrlManagerRemovingTest : public LibraryFixture
{
protected:
    void writeMaterial(const std::string &directory, const std::string &uuid) const
    {
        writeAsset(directory, "<category>Materials</category><uuid>" + uuid +
                                  "</uuid><name>x</name><material><type>UBRDFMaterial</type></material>");
    }

    void writeGeometry(const std::string &directory, const std::string &uuid) const
    {
        writeAsset(directory, "<category>Geometries</category><uuid>" + uuid + "</uuid><name>x</name>");
    }

    void collect() const { manager.collectItems(url(), Undefined, nullptr); }
    static kxAssetItem *item(const std::string &uuid) { return kxAssetItemFactory::the().findItem(uuid); }

    bool remove(const std::string &directory) const
    {
        return kxLocalUrlManager::removeRecursively(QDir(QString::fromStdString(_folder.file(directory))));
    }

    std::vector<std::string> entries(const std::string &directory) const
    {
        std::vector<std::string> names;
        for (const fs::directory_entry &entry : fs::directory_iterator(_folder.file(directory)))
            names.push_back(entry.path().filename().string());
        return names;
    }

    const kxLocalUrlManager &manager = *kxLocalUrlManager::the();
};

/// The rights of an ordinary user, also where the tests run as root, for whom no permission is an obstacle.
class OrdinaryUser
{
public:
    OrdinaryUser() : _isRoot(::geteuid() == 0) { change(Nobody); }
    ~OrdinaryUser() { change(0); }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

private:
    static constexpr uid_t Nobody = 65534;

    void change(uid_t user) const
    {
        if (_isRoot) {
            EXPECT_EQ(::seteuid(user), 0);
        }
    }

    bool _isRoot;
};

/// A library, open to everybody, in which one asset can be read by all and changed by nobody.
class kxLocalUrlManagerRemovingProtectedTest : public kxLocalUrlManagerRemovingTest
{
protected:
    kxLocalUrlManagerRemovingProtectedTest()
    {
        writeMaterial("lib/MAT_Goes", First);
        writeMaterial("lib/MAT_Stays", Second);
        collect();
        for (const char *name : {"", "lib", "lib/MAT_Goes"})
            fs::permissions(_folder.file(name), fs::perms::all);
        fs::permissions(_folder.file("lib/MAT_Stays"), fs::perms(0555));
    }
    ~kxLocalUrlManagerRemovingProtectedTest() override
    {
        fs::permissions(_folder.file("lib/MAT_Stays"), fs::perms::all);
    }
};

} // namespace

TEST_F(kxLocalUrlManagerRemovingTest, RemovesEverythingInADirectory)
{
    writeFile("doomed/file", "x");
    writeFile("doomed/.hidden/.file", "x");
    writeFile("doomed/" + std::string(255, 'n') + "/50% #1", "x");
    _folder.makeFolder("doomed/empty");

    EXPECT_TRUE(remove("doomed"));

    EXPECT_FALSE(_folder.contains("doomed"));
}

TEST_F(kxLocalUrlManagerRemovingTest, GoesOnAfterAFailureAndLeavesTheDirectory)
{
    // What is not UTF-8 cannot be named to the system.
    const std::string stubborn = "doomed/b/\xFF";
    writeFile("doomed/a", "x");
    writeFile(stubborn, "x");
    writeFile("doomed/b/c", "x");
    writeFile("doomed/d/e", "x");

    EXPECT_FALSE(remove("doomed"));

    EXPECT_THAT(entries("doomed"), UnorderedElementsAre("b"));
    EXPECT_THAT(entries("doomed/b"), UnorderedElementsAre("\xFF"));
}

TEST_F(kxLocalUrlManagerRemovingTest, CannotRemoveADirectoryThatIsNotThere)
{
    EXPECT_FALSE(remove("missing"));
}

TEST_F(kxLocalUrlManagerRemovingTest, RemovesALinkHoweverItIsWritten)
{
    writeFile("precious/file", "x");
    fs::create_directory_symlink(_folder.file("precious"), _folder.file("link"));
    fs::create_symlink(_folder.file("nowhere"), _folder.file("dangling"));

    EXPECT_TRUE(manager.removeDirectory(url("link/")));
    EXPECT_TRUE(manager.removeDirectory(url("dangling")));

    EXPECT_THAT(entries(""), UnorderedElementsAre("precious"));
    EXPECT_EQ(readFile("precious/file"), "x");
}

TEST_F(kxLocalUrlManagerRemovingTest, RemovesTheDirectoryThatHoldsAFile)
{
    writeFile("doomed/file", "x");
    writeFile("doomed/other", "x");
    writeFile("stays", "x");

    EXPECT_TRUE(manager.removeDirectory(url("doomed/file")));

    EXPECT_THAT(entries(""), UnorderedElementsAre("stays"));
}

TEST_F(kxLocalUrlManagerRemovingTest, DeletesTheItemsBelowTheDirectoryAndNoOthers)
{
    writeMaterial("lib/MAT_A", First);
    writeMaterial("library/MAT_B", Second);
    collect();

    EXPECT_TRUE(manager.removeDirectory(url("lib/")));

    EXPECT_EQ(item(First), nullptr);
    EXPECT_NE(item(Second), nullptr);
}

TEST_F(kxLocalUrlManagerRemovingTest, DeletesItemsOfEveryCategory)
{
    writeMaterial("lib/MAT_A", First);
    writeGeometry("lib/GEO_B", Second);
    collect();
    ASSERT_NE(item(Second), nullptr);

    EXPECT_TRUE(manager.removeDirectory(url("lib")));

    EXPECT_EQ(item(First), nullptr);
    EXPECT_EQ(item(Second), nullptr);
}

TEST_F(kxLocalUrlManagerRemovingProtectedTest, KeepsSurvivorsOfEveryCategory)
{
    writeGeometry("lib/MAT_Stays/below", Third);
    fs::permissions(_folder.file("lib/MAT_Stays/below"), fs::perms(0555));
    fs::remove(_folder.file("lib/MAT_Stays/asset.xml"));
    manager.collectItems(url("lib/MAT_Stays"), Undefined, nullptr);
    kxAssetItem *survivor = item(Third);
    {
        const OrdinaryUser ordinary;
        EXPECT_FALSE(manager.removeDirectory(url("lib")));
    }

    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 1);
    EXPECT_EQ(item(Third), survivor);
    fs::permissions(_folder.file("lib/MAT_Stays/below"), fs::perms::all);
}

TEST_F(kxLocalUrlManagerRemovingTest, KeepsTheItemOfTheDirectoryItself)
{
    writeMaterial("lib/MAT_A", First);
    collect();

    EXPECT_TRUE(manager.removeDirectory(url("lib/MAT_A")));

    EXPECT_FALSE(_folder.contains("lib/MAT_A"));
    EXPECT_NE(item(First), nullptr) << "whoever removes an asset deletes its item";
}

TEST_F(kxLocalUrlManagerRemovingProtectedTest, KeepsTheItemsWhoseFilesSurvive)
{
    kxAssetItem *survivor = item(Second);
    {
        const OrdinaryUser ordinary;
        EXPECT_FALSE(manager.removeDirectory(url("lib")));
    }

    EXPECT_THAT(entries("lib"), UnorderedElementsAre("MAT_Stays"));
    EXPECT_EQ(item(First), nullptr);
    EXPECT_EQ(item(Second), survivor);
    EXPECT_EQ(survivor->directoryUrl(), url("lib/MAT_Stays"));
}

TEST_F(kxLocalUrlManagerRemovingProtectedTest, RemovesTheNewDirectoryWhenTheOldOneCannotBe)
{
    writeMaterial("new/MAT_Stays", Second);
    fs::permissions(_folder.file("new"), fs::perms::all);
    fs::permissions(_folder.file("new/MAT_Stays"), fs::perms::all);
    PlainItem newItem(Material, Second);
    newItem.setDirectoryUrl(url("new/MAT_Stays"));
    kxtest::CapturedOutput output;
    {
        const OrdinaryUser ordinary;
        EXPECT_FALSE(manager.removeOldItemDirectory(item(Second), &newItem));
    }

    EXPECT_EQ(output.text(),
              "deleting: " + url("lib/MAT_Stays").toString().toStdString() + "\ndeleting old directory failed.\n");
    EXPECT_FALSE(_folder.contains("new/MAT_Stays"));
    EXPECT_TRUE(manager.containsItem(url("lib/MAT_Stays"), Material, Second));
    EXPECT_NE(item(Second), nullptr);
}

TEST_F(kxLocalUrlManagerRemovingTest, IsDoneWhenTheOldAssetIsGoneThoughItsDirectoryIsNot)
{
    // What is not UTF-8 cannot be named to the system.
    const std::string stubborn = "old/MAT_A/\xFF";
    writeMaterial("old/MAT_A", First);
    writeFile(stubborn, "x");
    writeMaterial("new/MAT_A", First);
    manager.collectItems(url("old"), Undefined, nullptr);
    PlainItem newItem(Material, First);
    newItem.setDirectoryUrl(url("new/MAT_A"));
    kxtest::CapturedOutput output;

    EXPECT_TRUE(manager.removeOldItemDirectory(item(First), &newItem));

    EXPECT_EQ(output.text(), "deleting: " + url("old/MAT_A").toString().toStdString() + "\n");
    EXPECT_THAT(entries("old/MAT_A"), UnorderedElementsAre("\xFF"));
    EXPECT_TRUE(manager.containsItem(url("new/MAT_A"), Material, First));
    EXPECT_EQ(item(First), nullptr);
}

TEST_F(kxLocalUrlManagerRemovingTest, KeepsTheOldAssetWhereTheNewOneWasSavedInsideIt)
{
    writeMaterial("MAT_A", First);
    writeMaterial("MAT_A/MAT_A", First);
    collect();
    PlainItem newItem(Material, First);
    newItem.setDirectoryUrl(url("MAT_A/MAT_A"));
    kxtest::CapturedOutput output;

    EXPECT_FALSE(manager.removeOldItemDirectory(item(First), &newItem));

    EXPECT_EQ(output.text(),
              "deleting: " + url("MAT_A").toString().toStdString() + "\ndeleting old directory failed.\n");
    EXPECT_TRUE(manager.containsItem(url("MAT_A"), Material, First));
    EXPECT_FALSE(_folder.contains("MAT_A/MAT_A"));
    EXPECT_NE(item(First), nullptr);
}

TEST_F(kxLocalUrlManagerRemovingTest, KeepsTheOldAssetWhereTheNewOneWasSavedInsideItThroughALink)
{
    writeMaterial("lib/MAT_A", First);
    writeMaterial("lib/MAT_A/MAT_A", First);
    fs::create_directory_symlink(_folder.file("lib"), _folder.file("link"));
    manager.collectItems(url("lib"), Undefined, nullptr);
    PlainItem newItem(Material, First);
    newItem.setDirectoryUrl(url("link/MAT_A/MAT_A"));

    EXPECT_FALSE(manager.removeOldItemDirectory(item(First), &newItem));

    EXPECT_TRUE(_folder.contains("lib/MAT_A/asset.xml"));
    EXPECT_FALSE(_folder.contains("lib/MAT_A/MAT_A"));
}

TEST_F(kxLocalUrlManagerRemovingTest, ComparesOldAndNewPlacesThroughLinks)
{
    writeMaterial("lib/MAT_A", First);
    collect();
    fs::create_directory_symlink(_folder.file("lib"), _folder.file("link"));
    PlainItem newItem(Material, First);
    newItem.setDirectoryUrl(url("link/MAT_A"));

    EXPECT_TRUE(manager.removeOldItemDirectory(item(First), &newItem));

    EXPECT_TRUE(_folder.contains("lib/MAT_A/asset.xml"));
}
