// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/KeptVersion.h"

#include "Support/FileSizeLimit.h"
#include "Support/TemporaryFolder.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <memory>

namespace {

class KeptVersionTest : public testing::Test
{
protected:
    QString path(const QString &name) const { return QString::fromStdString(folder.string()) + '/' + name; }
    Trash trash() const { return Trash(QString::fromStdString(folder.string())); }
    void write(const QString &name, const QByteArray &text) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("nothing");
    }
    KeptVersion kept(const QString &name) const
    {
        KeptVersion version(trash());
        EXPECT_EQ(version.keep(path(name)), "");
        return version;
    }
    /// Of all files that are kept.
    int keptFiles() const
    {
        int count = 0;
        for (QDirIterator files(path(".kx-trash"), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
             files.hasNext(); files.next())
            ++count;
        return count;
    }

    kxtest::TemporaryFolder folder;
};

TEST_F(KeptVersionTest, ExchangesADirectoryWithWhatTookItsPlaceAsOftenAsAsked)
{
    write("Oak/a.txt", "old");
    write("Oak/sub/b.txt", "deep");
    KeptVersion version = kept("Oak");
    QDir(path("Oak")).removeRecursively();
    write("Oak/a.txt", "new");

    EXPECT_EQ(version.exchange(), "");
    EXPECT_EQ(read("Oak/a.txt"), "old");
    EXPECT_EQ(read("Oak/sub/b.txt"), "deep");
    EXPECT_EQ(version.exchange(), "");
    EXPECT_EQ(read("Oak/a.txt"), "new");
    EXPECT_FALSE(QFileInfo::exists(path("Oak/sub")));
    EXPECT_EQ(version.exchange(), "");
    EXPECT_EQ(read("Oak/a.txt"), "old");
}

TEST_F(KeptVersionTest, PutsBothBackToTheirOwnPlaces)
{
    write("Oak/a.txt", "old");
    KeptVersion version = kept("Oak");
    QDir(path("Oak")).removeRecursively();
    write("Elm/a.txt", "new");
    version.setPlaceOfNewer(path("Elm"));

    EXPECT_EQ(version.exchange(), "");
    EXPECT_EQ(read("Oak/a.txt"), "old");
    EXPECT_FALSE(QFileInfo::exists(path("Elm")));
    EXPECT_EQ(version.place(), path("Oak"));
    EXPECT_EQ(version.exchange(), "");
    EXPECT_EQ(read("Elm/a.txt"), "new");
    EXPECT_FALSE(QFileInfo::exists(path("Oak")));
}

TEST_F(KeptVersionTest, TakesAwayWhatWasNotThereBefore)
{
    write("Oak/other.txt", "other");
    KeptVersion version = kept("Oak/a.png");
    write("Oak/a.png", "new");

    EXPECT_EQ(version.exchange(), "");
    EXPECT_EQ(read("Oak/a.png"), "nothing");
    EXPECT_EQ(version.exchange(), "");
    EXPECT_EQ(read("Oak/a.png"), "new");
    EXPECT_EQ(read("Oak/other.txt"), "other");
}

TEST_F(KeptVersionTest, SeesWhetherSomethingWasReplaced)
{
    write("Oak/a.txt", "old");
    const KeptVersion directory = kept("Oak");
    const KeptVersion file = kept("Oak/a.txt");
    const KeptVersion missing = kept("Oak/b.txt");

    EXPECT_FALSE(directory.isReplacedAt(path("Oak")));
    EXPECT_FALSE(file.isReplacedAt(path("Oak/a.txt")));
    EXPECT_FALSE(missing.isReplacedAt(path("Oak/b.txt")));
    EXPECT_TRUE(directory.isReplacedAt(path("Elm")));
    write("Oak/a.txt", "newer");
    EXPECT_TRUE(directory.isReplacedAt(path("Oak")));
    EXPECT_TRUE(file.isReplacedAt(path("Oak/a.txt")));
}

TEST_F(KeptVersionTest, LeavesWhatTookThePlaceMeanwhile)
{
    write("Oak/a.txt", "old");
    KeptVersion version = kept("Oak");
    QDir().rename(path("Oak"), path("Elm"));
    version.setPlaceOfNewer(path("Elm"));
    write("Oak/a.txt", "of somebody else");

    EXPECT_EQ(version.exchange(), "\"Oak\" could not be put back: something else is at its place now.");

    EXPECT_EQ(read("Oak/a.txt"), "of somebody else");
    EXPECT_EQ(read("Elm/a.txt"), "old");
    EXPECT_EQ(keptFiles(), 1);
}

TEST_F(KeptVersionTest, PutsTheNewerBackWhereTheFormerFindsNoPlace)
{
    write("Wood/Oak/a.txt", "old");
    KeptVersion version = kept("Wood/Oak");
    QDir().rename(path("Wood/Oak"), path("Elm"));
    QDir(path("Wood")).removeRecursively();
    version.setPlaceOfNewer(path("Elm"));

    EXPECT_EQ(version.exchange(), "\"Oak\" could not be moved. Its folder is not there any more.");

    EXPECT_EQ(read("Elm/a.txt"), "old");
    EXPECT_EQ(version.place(), path("Elm"));
    EXPECT_EQ(keptFiles(), 1);
}

TEST_F(KeptVersionTest, SaysThatTheFormerVersionIsGone)
{
    write("Oak/a.txt", "old");
    KeptVersion version = kept("Oak");
    write("Oak/a.txt", "new");
    ASSERT_TRUE(trash().empty());

    EXPECT_EQ(version.exchange(),
              "The former version of \"Oak\" is not there any more: the deleted assets were removed for good.");

    EXPECT_EQ(read("Oak/a.txt"), "new");
}

TEST_F(KeptVersionTest, KeepsNothingWhereTheDiskIsFull)
{
    write("Oak/a.txt", "old");
    {
        const kxtest::FileSizeLimit full(0, kxtest::FileSizeLimit::Fails);
        KeptVersion version(trash());
        EXPECT_EQ(version.keep(path("Oak")),
                  "\"Oak\" was left as it is: the disk is too full to keep its present version.");
    }

    EXPECT_EQ(keptFiles(), 0);
    EXPECT_EQ(read("Oak/a.txt"), "old");
}

TEST_F(KeptVersionTest, IsNoDeletedAssetAndGoesWithTheObject)
{
    write("Oak/a.txt", "old");
    {
        auto first = std::make_unique<KeptVersion>(kept("Oak"));
        const KeptVersion second = std::move(*first);
        first.reset();

        EXPECT_TRUE(trash().entries().empty());
        EXPECT_EQ(keptFiles(), 1);
    }

    EXPECT_EQ(keptFiles(), 0);
    EXPECT_TRUE(QDir(path(".kx-trash")).isEmpty());
    EXPECT_EQ(read("Oak/a.txt"), "old");
}

} // namespace
