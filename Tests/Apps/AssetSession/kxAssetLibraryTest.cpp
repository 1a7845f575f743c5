// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"

#include "AssetSession/kxAssetSession.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Support/TemporaryFolder.h"

#include "SmallMaterials.h"

#include <gmock/gmock.h>

#include <filesystem>

using kxtest::makeSurface;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class kxAssetLibraryTest : public testing::Test
{
protected:
    kxAssetLibrary library(const std::string &name = "Lïb rary") const
    {
        return kxAssetLibrary(QString::fromStdString(_folder.file(name)));
    }

    std::string store(const std::string &name) const { return kxtest::store(makeSurface(name), library().url()); }

    static std::vector<std::string> namesIn(const kxAssetLibrary &library)
    {
        std::vector<std::string> names;
        for (kxAssetItem *item : library.items())
            names.push_back(item->name());
        return names;
    }

    kxtest::TemporaryFolder _folder;
    kxAssetSession _session;
};

} // namespace

TEST_F(kxAssetLibraryTest, IsEmptyWhereThereIsNoFolder)
{
    kxAssetLibrary missing = library("nowhere");

    missing.open(nullptr);

    EXPECT_FALSE(missing.exists());
    EXPECT_THAT(missing.items(), IsEmpty());
    EXPECT_FALSE(_folder.contains("nowhere"));
}

TEST_F(kxAssetLibraryTest, ReadsWhatIsOnDisk)
{
    store("Steel");
    store("Brass");
    kxAssetItemFactory::the().deleteAllItems();
    kxAssetLibrary opened = library();

    opened.open(nullptr);

    EXPECT_TRUE(opened.exists());
    EXPECT_THAT(namesIn(opened), ElementsAre("Brass", "Steel"));
}

TEST_F(kxAssetLibraryTest, ListsOnlyItsOwnAssetsOfTheCategory)
{
    store("Steel");
    kxtest::store(makeSurface("Elsewhere"), library("other").url());

    EXPECT_THAT(namesIn(library()), ElementsAre("Steel"));
    EXPECT_THAT(library().items(Environment), IsEmpty());
}

TEST_F(kxAssetLibraryTest, FindsAssetsWhenItIsNamedThroughALink)
{
    store("Steel");
    std::filesystem::create_directory_symlink(_folder.file("Lïb rary"), _folder.file("link"));

    EXPECT_THAT(namesIn(library("link")), ElementsAre("Steel"));
}

TEST_F(kxAssetLibraryTest, ResolvesUuidsTheirBeginningsAndExactNames)
{
    const std::string steel = store("Steel");
    store("Steel, fine");

    EXPECT_EQ(library().resolve(QString::fromStdString(steel)).value(), steel);
    EXPECT_EQ(library().resolve(QString::fromStdString(steel.substr(0, 13))).value(), steel);
    EXPECT_EQ(library().resolve("Steel").value(), steel);
}

TEST_F(kxAssetLibraryTest, SaysThatThereIsNoSuchAsset)
{
    store("Steel");

    const auto result = library().resolve("steel");

    ASSERT_FALSE(result);
    EXPECT_EQ(result.reason(), "no asset 'steel' in " + _folder.file("Lïb rary"));
}

TEST_F(kxAssetLibraryTest, WantsFourCharactersOfAUuid)
{
    const std::string steel = store("Steel");

    EXPECT_FALSE(library().resolve(QString::fromStdString(steel.substr(0, 3))));
    EXPECT_TRUE(library().resolve(QString::fromStdString(steel.substr(0, 4))));
    EXPECT_FALSE(library().resolve(""));
}

TEST_F(kxAssetLibraryTest, NamesAllThatAnAmbiguousNameMayBe)
{
    const std::string one = store("Steel");
    const std::string two = store("Steel");

    const auto result = library().resolve("Steel");

    ASSERT_FALSE(result);
    EXPECT_THAT(result.reason(), HasSubstr(one));
    EXPECT_THAT(result.reason(), HasSubstr(two));
}

TEST_F(kxAssetLibraryTest, PrefersANameToTheBeginningOfAUuid)
{
    const std::string steel = store("Steel");
    const std::string prank = store(steel.substr(0, 8));

    EXPECT_EQ(library().resolve(QString::fromStdString(steel.substr(0, 8))).value(), prank);
}

TEST_F(kxAssetLibraryTest, LetsNoFolderLeadOut)
{
    EXPECT_EQ(library().folder("Metals/Ferrous").value().toLocalFile().toStdString(),
              _folder.file("Lïb rary/Metals/Ferrous"));
    EXPECT_EQ(library().folder("").value(), library().url());
    EXPECT_EQ(library().folder("Metals/..").value(), library().url());
    EXPECT_FALSE(library().folder(".."));
    EXPECT_FALSE(library().folder("Metals/../../other"));
    EXPECT_FALSE(library().folder("../Lïb rary 2"));
    EXPECT_FALSE(library().folder("/etc"));
}

TEST_F(kxAssetLibraryTest, TellsWhereAnItemIs)
{
    const std::string uuid = kxtest::store(makeSurface("Steel"), library().folder("Metals").value());

    EXPECT_EQ(library().relativePath(*kxAssetItemFactory::the().findItem(uuid)), "Metals/MAT_Steel");
}
