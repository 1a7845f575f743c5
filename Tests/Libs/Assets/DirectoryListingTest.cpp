// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/DirectoryListing.h"

#include "LibraryFixture.h"

#include <QDir>

#include <gmock/gmock.h>

#include <sys/socket.h>
#include <sys/stat.h>

#include <algorithm>

namespace fs = std::filesystem;

namespace {

std::vector<QString> sorted(std::vector<QString> names)
{
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<QString> sorted(const QStringList &names)
{
    return sorted(std::vector<QString>(names.begin(), names.end()));
}

/// Entries of every kind, with awkward names.
class DirectoryListingTest : public LibraryFixture
{
protected:
    DirectoryListingTest() : path(QString::fromStdString(_folder.string()))
    {
        for (const char *name :
             {"b.xml", "A.XML", "c.osb", "d.xml.bak", "xml", ".hidden.xml", "a[1].xml", "line\nbreak.xml",
              "\xE7\xB7\x91.xml", "Gr\xC3\xBCn.Xml", "Gru\xCC\x88n.xml", "\xFF.xml", "50% #1.xml"})
            writeFile(name, "x");
        for (const char *name : {"folder", "B folder", "a folder", "dir.xml", ".hidden folder", "Ü", "\xFE"})
            _folder.makeFolder(name);
        fs::create_symlink(_folder.file("b.xml"), _folder.file("link.xml"));
        fs::create_directory_symlink(_folder.file("folder"), _folder.file("link folder"));
        fs::create_symlink(_folder.file("nowhere"), _folder.file("dangling.xml"));
        ::mkfifo(_folder.file("pipe.xml").c_str(), 0600);
    }

    const QString path;
};

} // namespace

TEST_F(DirectoryListingTest, ListsTheFilesThatQtDoes)
{
    for (const QStringList &filters :
         {QStringList{}, QStringList{"*.xml"}, QStringList{"*.XML", "*.osb"}, QStringList{"*"}, QStringList{"?.xml"},
          QStringList{"b.xml"}, QStringList{"*x*"}, QStringList{"*.[xo]*"}, QStringList{"a[1].xml"}, QStringList{""},
          QStringList{"gr\u00FCn.xml"}, QStringList{"*.none"}})
        EXPECT_EQ(sorted(kxAssetsInternal::filesIn(path, filters)),
                  sorted(QDir(path).entryList(filters, QDir::Files | QDir::NoSymLinks)))
            << filters.join(' ').toStdString();
}

TEST_F(DirectoryListingTest, ListsTheDirectoriesThatQtDoesInItsOrder)
{
    const QStringList expected = QDir(path).entryList(QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot);

    EXPECT_EQ(kxAssetsInternal::directoriesIn(path), std::vector<QString>(expected.begin(), expected.end()));
    EXPECT_EQ(kxAssetsInternal::countDirectoriesIn(path), expected.size());
    EXPECT_EQ(expected.size(), 5);
}

TEST_F(DirectoryListingTest, ListsNothingWhereThereIsNoDirectory)
{
    for (const QString &place : {path + "/b.xml", path + "/missing", QString()}) {
        EXPECT_TRUE(kxAssetsInternal::filesIn(place, {}).empty());
        EXPECT_TRUE(kxAssetsInternal::directoriesIn(place).empty());
        EXPECT_EQ(kxAssetsInternal::countDirectoriesIn(place), 0);
    }
}

TEST_F(DirectoryListingTest, FollowsALinkThatIsAskedFor)
{
    writeFile("folder/file", "x");

    EXPECT_EQ(kxAssetsInternal::filesIn(path + "/link folder", {}), (std::vector<QString>{"file"}));
}
