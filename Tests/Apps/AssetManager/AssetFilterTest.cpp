// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetFilter.h"

#include <gtest/gtest.h>

namespace {

AssetEntry chair()
{
    AssetEntry entry;
    entry.uuid = "1";
    entry.category = Geometry;
    entry.name = "Chair";
    entry.folder = "/library/Seats";
    entry.searched = AssetFilter::folded("Chair\nGeometry");
    entry.tags = QStringList{"oak", "old"};
    return entry;
}

AssetFilter withText(const QString &text)
{
    AssetFilter filter;
    filter.setText(text);
    return filter;
}

} // namespace

TEST(AssetFilterTest, AcceptsEverythingAtFirst)
{
    EXPECT_TRUE(AssetFilter().accepts(chair()));
}

TEST(AssetFilterTest, FindsPartsOfNamesTagsAndTypesInAnyCase)
{
    EXPECT_TRUE(withText("hAI").accepts(chair()));
    EXPECT_TRUE(withText("OAK").accepts(chair()));
    EXPECT_TRUE(withText("geom").accepts(chair()));
    EXPECT_FALSE(withText("table").accepts(chair()));
}

TEST(AssetFilterTest, WantsAllWordsInAnyOrder)
{
    EXPECT_TRUE(withText("  oak   chair ").accepts(chair()));
    EXPECT_FALSE(withText("oak table").accepts(chair()));
}

TEST(AssetFilterTest, FindsUmlautsInBothTheirForms)
{
    AssetEntry entry = chair();
    entry.searched = AssetFilter::folded(QString::fromUtf8("Schra\u0308nke")); // a and a combining mark

    EXPECT_TRUE(withText(QString::fromUtf8("SCHR\u00C4NKE")).accepts(entry));
}

TEST(AssetFilterTest, KeepsCategoriesFoldersAndTagsApart)
{
    AssetFilter filter;
    filter.category = Material;
    EXPECT_FALSE(filter.accepts(chair()));

    filter = AssetFilter();
    filter.folder = "/library/Seat"; // only the beginning of the name
    EXPECT_FALSE(filter.accepts(chair()));
    filter.folder = "/library";
    EXPECT_TRUE(filter.accepts(chair()));

    filter.tags = QStringList{"oak", "new"};
    EXPECT_FALSE(filter.accepts(chair()));
    filter.tags = QStringList{"oak"};
    EXPECT_TRUE(filter.accepts(chair()));
}

TEST(AssetFilterTest, ShowsFavouritesOrWhatWasUsed)
{
    AssetFilter filter;
    AssetEntry entry = chair();
    filter.special = AssetFilter::Special::Favourites;
    EXPECT_FALSE(filter.accepts(entry));
    entry.isFavourite = true;
    EXPECT_TRUE(filter.accepts(entry));

    filter.special = AssetFilter::Special::Recent;
    EXPECT_FALSE(filter.accepts(entry));
    entry.recentRank = 1;
    EXPECT_TRUE(filter.accepts(entry));
}

TEST(AssetFilterTest, KnowsWhatLiesInAFolder)
{
    EXPECT_TRUE(AssetFilter::isIn("/a", "/a"));
    EXPECT_TRUE(AssetFilter::isIn("/a/b", "/a"));
    EXPECT_TRUE(AssetFilter::isIn("/a", "/"));
    EXPECT_FALSE(AssetFilter::isIn("/ab", "/a"));
    EXPECT_FALSE(AssetFilter::isIn("/", "/a"));
}

TEST(AssetFilterTest, IsNarrowerWhileSomebodyTypes)
{
    EXPECT_TRUE(withText("e").isNarrowerThan(withText("")));
    EXPECT_TRUE(withText("Red").isNarrowerThan(withText("re")));
    EXPECT_TRUE(withText("red m").isNarrowerThan(withText("red ")));
    EXPECT_TRUE(withText("metal red").isNarrowerThan(withText("red meta")));
    EXPECT_FALSE(withText("re").isNarrowerThan(withText("red")));
    EXPECT_FALSE(withText("").isNarrowerThan(withText("e")));
    EXPECT_FALSE(withText(QString::fromUtf8("e\u0301")).isNarrowerThan(withText("e")))
        << "the accent makes another letter of it";
    EXPECT_FALSE(withText("red").isNarrowerThan(withText("red metal")));
}

TEST(AssetFilterTest, IsNotNarrowerWhereMoreThanTheTextDiffers)
{
    const AssetFilter all;
    AssetFilter category;
    category.category = Geometry;
    AssetFilter folder;
    folder.folder = QStringLiteral("/a");
    AssetFilter special;
    special.special = AssetFilter::Special::Recent;
    AssetFilter tags;
    tags.tags = AssetTags(QStringList{"metal"});

    for (const AssetFilter &filter : {category, folder, special, tags}) {
        EXPECT_FALSE(filter.isNarrowerThan(all));
        EXPECT_FALSE(all.isNarrowerThan(filter));
        EXPECT_TRUE(filter.isNarrowerThan(filter));
    }
}
