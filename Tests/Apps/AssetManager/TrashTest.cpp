// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/Trash.h"

#include "Support/TemporaryFolder.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

class TrashTest : public testing::Test
{
protected:
    QString library() const { return QString::fromStdString(folder.string()); }
    /// The place in the trash where it went.
    QString put(const char *name) const
    {
        const QString path = QString::fromStdString(folder.makeFolder(name));
        const QString place = Trash(library()).makePlaceFor(path).value();
        EXPECT_TRUE(QDir().rename(path, place));
        return place;
    }

    kxtest::TemporaryFolder folder;
};

TEST_F(TrashTest, RemembersWhereThingsWere)
{
    const QString place = put("Wood/MAT_Oak");

    const auto entries = Trash(library()).entries();

    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].path, place);
    EXPECT_EQ(entries[0].origin, library() + "/Wood");
    EXPECT_TRUE(Trash::isTrash(place));
    EXPECT_FALSE(Trash::isTrash(library() + "/Wood/MAT_Oak"));
}

TEST_F(TrashTest, KeepsThingsOfOneNameApart)
{
    const QString first = put("A/Same");
    const QString second = put("B/Same");

    EXPECT_NE(first, second);
    EXPECT_EQ(Trash(library()).entries().size(), 2U);
}

TEST_F(TrashTest, KnowsTheOriginAlsoAfterTheLibraryMoved)
{
    put("L/Wood/MAT_Oak");
    const QString moved = library() + "/elsewhere";
    ASSERT_TRUE(QDir().rename(library() + "/.kx-trash", library() + "/kept"));
    ASSERT_TRUE(QDir().mkpath(moved));
    ASSERT_TRUE(QDir().rename(library() + "/kept", moved + "/.kx-trash"));

    ASSERT_EQ(Trash(moved).entries().size(), 1U);
    EXPECT_EQ(Trash(moved).entries()[0].origin, moved + "/L/Wood");
}

TEST_F(TrashTest, IsEmptyAfterwards)
{
    put("MAT_Oak");

    EXPECT_TRUE(Trash(library()).empty());

    EXPECT_TRUE(Trash(library()).entries().empty());
    EXPECT_TRUE(Trash(library()).empty()); // a second time, too
}

TEST_F(TrashTest, HasNoPlaceInALibraryThatIsNotThere)
{
    const auto place = Trash("/proc/no-such-library").makePlaceFor("/proc/no-such-library/MAT_X");

    ASSERT_FALSE(place);
    EXPECT_EQ(place.reason(), "\"MAT_X\" could not be deleted. Its folder is not there any more.");
}

} // namespace
