// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxLocalUrlManager.h"
#include "Kernel/kxModalQuestion.h"
#include "LibraryFixture.h"
#include "Support/CapturedOutput.h"

#include <QCoreApplication>
#include <QTranslator>

#include <gmock/gmock.h>

namespace fs = std::filesystem;
using testing::UnorderedElementsAre;

namespace {

const std::string First = "10000000-0000-4000-8000-000000000001";
const std::string Second = "20000000-0000-4000-8000-000000000002";

class DirectoryMoverTest : public LibraryFixture
{
protected:
    DirectoryMoverTest()
    {
        kxModalQuestion::setAnswerer([this](const kxModalQuestion::Question &question) {
            ++questions;
            asked = question.title + "/" + question.text;
            return answer;
        });
    }
    ~DirectoryMoverTest() override { kxModalQuestion::setAnswerer({}); }

    void writeMaterial(const std::string &directory, const std::string &uuid) const
    {
        writeAsset(directory, "<category>Materials</category><uuid>" + uuid +
                                  "</uuid><name>x</name><material><type>UBRDFMaterial</type></material>");
    }

    void writeAssetOf(const std::string &category, const std::string &directory) const
    {
        writeAsset(directory, "<category>" + category + "</category><uuid>" + First + "</uuid><name>x</name>");
    }

    std::vector<std::string> entries(const std::string &directory) const
    {
        std::vector<std::string> names;
        for (const fs::directory_entry &entry : fs::directory_iterator(_folder.file(directory)))
            names.push_back(entry.path().filename().string());
        return names;
    }

    void linkTo(const std::string &destination, const std::string &name) const
    {
        fs::create_directory_symlink(_folder.file(destination), _folder.file(name));
    }

    bool holds(const std::string &directory, const std::string &uuid) const
    {
        return manager.containsItem(url(directory), Material, uuid);
    }

    bool move(const std::string &source, const std::string &target)
    {
        return manager.move(url(source), url(target), result, false);
    }

    const kxLocalUrlManager &manager = *kxLocalUrlManager::the();
    QUrl result;
    QMessageBox::StandardButton answer = QMessageBox::Yes;
    QString asked;
    int questions = 0;
};

/// Notes how a merge lists the folder "from", and what it renames.
class NotingManager final : public kxLocalUrlManager
{
public:
    std::vector<QUrl> subDirectories(const QUrl &url) override
    {
        note("subDirectories", url, url.fileName() == QLatin1String("from"));
        return kxLocalUrlManager::subDirectories(url);
    }
    std::vector<QUrl> files(const QUrl &url, const QStringList &filters, QDir::SortFlags sort) override
    {
        note("files", url, url.fileName() == QLatin1String("from") && filters.isEmpty() && sort == QDir::NoSort);
        return kxLocalUrlManager::files(url, filters, sort);
    }
    using kxLocalUrlManager::rename;
    bool rename(const QUrl &from, const QUrl &to) const override
    {
        note("rename", from, true);
        return kxLocalUrlManager::rename(from, to);
    }

    mutable std::vector<std::string> notes;

private:
    void note(const char *operation, const QUrl &url, bool isWanted) const
    {
        if (isWanted)
            notes.push_back(operation + (" " + url.fileName().toStdString()));
    }
};

} // namespace

TEST_F(DirectoryMoverTest, MovesWhatIsWrittenWithASlashAtItsEnd)
{
    writeFile("a/file", "x");
    _folder.makeFolder("target");

    EXPECT_TRUE(manager.move(url("a/"), url("target/"), result, false));

    EXPECT_EQ(result, url("target/a"));
    EXPECT_THAT(entries("target"), UnorderedElementsAre("a"));
}

TEST_F(DirectoryMoverTest, MovesFoldersWithNamesOfEveryKind)
{
    const std::vector<std::string> names{"緑", "Gr\u00FCn", "Gru\u0308n", "a. ", "50% #1", std::string(255, 'n')};
    _folder.makeFolder("target");
    for (const std::string &name : names)
        writeFile("from/" + name + "/file", "x");

    for (const std::string &name : names) {
        EXPECT_TRUE(move("from/" + name, "target")) << name;
        EXPECT_EQ(result.toLocalFile().toStdString(), _folder.file("target/" + name));
    }

    EXPECT_THAT(entries("target"), testing::UnorderedElementsAreArray(names));
    EXPECT_EQ(questions, 0) << "the same name in another Unicode form is another name";
}

TEST_F(DirectoryMoverTest, ReportsTheNewPlaceAlsoWhenNothingIsMoved)
{
    _folder.makeFolder("target");

    EXPECT_FALSE(move("missing", "target"));

    EXPECT_EQ(result, url("target/missing"));
}

TEST_F(DirectoryMoverTest, CannotMoveWhatIsNotThere)
{
    _folder.makeFolder("target");
    kxtest::CapturedOutput output;

    EXPECT_FALSE(move("missing", "target"));

    EXPECT_EQ(output.text(), "move " + url("missing").toString().toStdString() + " to " +
                                 url("target").toString().toStdString() + "\n");
    EXPECT_EQ(questions, 0);
    EXPECT_THAT(entries("target"), testing::IsEmpty());
}

TEST_F(DirectoryMoverTest, HasNothingToMergeOfWhatIsNotThere)
{
    writeFile("target/missing/file", "x");

    EXPECT_TRUE(move("missing", "target")) << "nothing failed";
    EXPECT_EQ(questions, 1) << "only the target is looked at";
    EXPECT_TRUE(manager.merge(url("missing"), url("target")));

    EXPECT_THAT(entries("target"), UnorderedElementsAre("missing"));
    EXPECT_EQ(readFile("target/missing/file"), "x");
}

TEST_F(DirectoryMoverTest, RefusesPlacesThatAreCalledSomethingElse)
{
    writeFile("a/b/file", "x");
    _folder.makeFolder("target");
    kxtest::CapturedOutput output;

    EXPECT_FALSE(move("a/b/..", "target"));
    EXPECT_FALSE(move("a/.", "target"));
    EXPECT_FALSE(manager.move(QUrl(), url("target"), result, true));

    EXPECT_EQ(output.text(), "");
    EXPECT_EQ(questions, 0);
    EXPECT_EQ(readFile("a/b/file"), "x");
}

TEST_F(DirectoryMoverTest, MovesALinkAndNotWhatItLeadsTo)
{
    writeFile("precious/file", "x");
    _folder.makeFolder("target");
    linkTo("precious", "link");

    EXPECT_TRUE(move("link", "target"));

    EXPECT_TRUE(fs::is_symlink(_folder.file("target/link")));
    EXPECT_FALSE(_folder.contains("link"));
    EXPECT_EQ(readFile("precious/file"), "x");
}

TEST_F(DirectoryMoverTest, DoesNotMergeAFolderWithALinkToItself)
{
    writeMaterial("target/a/MAT_Red", First);
    _folder.makeFolder("links");
    linkTo("target/a", "links/a");
    kxtest::CapturedOutput output;

    EXPECT_FALSE(move("links/a", "target")) << "the same place through a link";
    EXPECT_FALSE(move("target/a", "links")) << "and the other way round";

    EXPECT_EQ(output.text(), "");
    EXPECT_EQ(questions, 0);
    EXPECT_THAT(entries("target/a"), UnorderedElementsAre("MAT_Red"));
}

TEST_F(DirectoryMoverTest, DoesNotMoveAFolderBelowItselfThroughALink)
{
    writeFile("a/sub/file", "x");
    linkTo("a/sub", "link");

    EXPECT_FALSE(move("a", "link"));

    EXPECT_EQ(questions, 0);
    EXPECT_EQ(readFile("a/sub/file"), "x");
}

TEST_F(DirectoryMoverTest, MergesNothingIntoAFileOrADanglingLink)
{
    writeMaterial("a/MAT_Red", First);
    writeMaterial("b/MAT_Red", Second);
    writeFile("target/a", "a file");
    fs::create_symlink(_folder.file("nowhere"), _folder.file("target/b"));

    EXPECT_FALSE(move("a", "target"));
    EXPECT_FALSE(move("b", "target"));

    EXPECT_EQ(questions, 2);
    EXPECT_TRUE(holds("a/MAT_Red", First));
    EXPECT_TRUE(holds("b/MAT_Red", Second));
    EXPECT_EQ(readFile("target/a"), "a file");
    EXPECT_TRUE(fs::is_symlink(_folder.file("target/b")));
}

TEST_F(DirectoryMoverTest, MergesPlainFoldersAtAnyDepthWithoutAskingAgain)
{
    writeFile("a/1/2/3/new", "1");
    writeMaterial("a/1/2/MAT_Red", First);
    writeMaterial("target/a/1/2/MAT_Red", Second);
    writeFile("target/a/1/2/3/old", "2");

    EXPECT_TRUE(move("a", "target"));

    EXPECT_EQ(questions, 1);
    EXPECT_FALSE(_folder.contains("a"));
    EXPECT_THAT(entries("target/a/1/2/3"), UnorderedElementsAre("new", "old"));
    EXPECT_TRUE(holds("target/a/1/2/MAT_Red", Second));
    EXPECT_TRUE(holds("target/a/1/2/MAT_Red0", First));
}

TEST_F(DirectoryMoverTest, SaysEachMoveOfAMerge)
{
    writeFile("a/folder/file", "x");
    writeMaterial("a/MAT_Red", First);
    _folder.makeFolder("target/a");
    const std::string beginning = "move " + url("a").toString().toStdString();
    const std::string target = url("target").toString().toStdString();
    kxtest::CapturedOutput output;

    EXPECT_TRUE(move("a", "target"));

    EXPECT_EQ(output.text(), beginning + " to " + target + "\n" + beginning + "/folder to " + target + "/a\n")
        << "assets are renamed, which says nothing";
}

TEST_F(DirectoryMoverTest, NeverMergesAnAssetIntoAFolderOfItsName)
{
    writeMaterial("from/MAT_Red", First);
    writeFile("to/MAT_Red/notes", "x");

    EXPECT_TRUE(manager.merge(url("from"), url("to")));

    EXPECT_TRUE(holds("to/MAT_Red0", First));
    EXPECT_THAT(entries("to/MAT_Red"), UnorderedElementsAre("notes"));
}

TEST_F(DirectoryMoverTest, NeverMergesAnAssetOfAnyCategory)
{
    for (const std::string category : {"Environments", "Geometries", "Sceneplates"}) {
        writeAssetOf(category, "from/" + category);
        writeFile("to/" + category + "/notes", "x");
    }

    EXPECT_TRUE(manager.merge(url("from"), url("to")));

    EXPECT_THAT(entries("to"), UnorderedElementsAre("Environments", "Environments0", "Geometries", "Geometries0",
                                                    "Sceneplates", "Sceneplates0"));
}

TEST_F(DirectoryMoverTest, NumbersAssetsOnFromTheNumberTheyHave)
{
    writeMaterial("from/MAT_Red7", First);
    writeMaterial("to/MAT_Red7", Second);

    EXPECT_TRUE(manager.merge(url("from"), url("to")));

    EXPECT_TRUE(holds("to/MAT_Red8", First));
}

TEST_F(DirectoryMoverTest, LeavesHiddenFilesAndLinksWithTheFolderTheyAreIn)
{
    writeFile("from/.hidden", "x");
    writeFile("from/.folder/file", "x");
    writeFile("from/file", "x");
    writeFile("precious/file", "x");
    linkTo("precious", "from/link");
    _folder.makeFolder("to");

    EXPECT_TRUE(manager.merge(url("from"), url("to")));

    EXPECT_THAT(entries("to"), UnorderedElementsAre("file"));
    EXPECT_THAT(entries("from"), UnorderedElementsAre(".hidden", ".folder", "link"));
    EXPECT_EQ(readFile("precious/file"), "x");
}

TEST_F(DirectoryMoverTest, KeepsAFileWhoseNameALinkHasTaken)
{
    writeFile("from/file", "x");
    _folder.makeFolder("to");
    fs::create_symlink(_folder.file("nowhere"), _folder.file("to/file"));

    EXPECT_FALSE(manager.merge(url("from"), url("to")));

    EXPECT_EQ(readFile("from/file"), "x");
    EXPECT_TRUE(fs::is_symlink(_folder.file("to/file")));
}

TEST_F(DirectoryMoverTest, MergesNothingIntoWhatIsNoOtherFolder)
{
    writeMaterial("from/MAT_Red", First);
    writeFile("file", "x");

    EXPECT_FALSE(manager.merge(url("from"), url("missing")));
    EXPECT_FALSE(manager.merge(url("from"), url("file")));
    EXPECT_FALSE(manager.merge(url("from"), QUrl()));
    EXPECT_FALSE(manager.merge(QUrl(), url("from")));

    EXPECT_THAT(entries(""), UnorderedElementsAre("from", "file"));
    EXPECT_THAT(entries("from"), UnorderedElementsAre("MAT_Red"));
}

TEST_F(DirectoryMoverTest, NumbersAssetsAnewWhereAFolderIsMergedWithItself)
{
    writeMaterial("from/MAT_Red", First);
    writeMaterial("from/deeper/MAT_Blue", Second);
    writeFile("from/file", "x");
    kxtest::CapturedOutput output;

    EXPECT_FALSE(manager.merge(url("from"), url("from"))) << "plain folders and files are there already";

    EXPECT_EQ(output.text(), "");
    EXPECT_THAT(entries("from"), UnorderedElementsAre("MAT_Red0", "deeper", "file"));
    EXPECT_TRUE(holds("from/MAT_Red0", First));
    EXPECT_TRUE(holds("from/deeper/MAT_Blue", Second));
    EXPECT_EQ(readFile("from/file"), "x");
}

TEST_F(DirectoryMoverTest, NumbersAssetsAnewWhereAFolderIsMergedWithALinkToIt)
{
    writeMaterial("from/MAT_Red", First);
    linkTo("from", "link");

    EXPECT_TRUE(manager.merge(url("from"), url("link")));
    EXPECT_TRUE(manager.merge(url("link"), url("from")));

    EXPECT_THAT(entries(""), UnorderedElementsAre("from", "link"));
    EXPECT_THAT(entries("from"), UnorderedElementsAre("MAT_Red1"));
    EXPECT_TRUE(holds("from/MAT_Red1", First));
}

TEST_F(DirectoryMoverTest, RemovesAnEmptyFolderThatIsMergedWithItself)
{
    _folder.makeFolder("from");

    EXPECT_TRUE(manager.merge(url("from"), url("from")));

    EXPECT_FALSE(_folder.contains("from"));
}

TEST_F(DirectoryMoverTest, GoesOnAfterAFolderThatCannotBeMoved)
{
    writeFile("from/a/file", "1");
    writeFile("from/b/file", "2");
    writeFile("from/c", "3");
    writeFile("to/a", "no folder");

    EXPECT_FALSE(manager.merge(url("from"), url("to")));

    EXPECT_EQ(readFile("from/a/file"), "1");
    EXPECT_EQ(readFile("to/b/file"), "2");
    EXPECT_EQ(readFile("to/c"), "3");
}

TEST_F(DirectoryMoverTest, ListsAllThatItMergesBeforeItMovesAny)
{
    writeFile("from/a folder/file", "1");
    writeMaterial("from/MAT_Red", First);
    writeFile("from/z file", "2");
    _folder.makeFolder("to");
    const NotingManager noting;

    EXPECT_TRUE(noting.merge(url("from"), url("to")));

    EXPECT_THAT(noting.notes, testing::ElementsAre("subDirectories from", "files from", "rename a folder",
                                                   "rename MAT_Red", "rename z file"));
}

TEST_F(DirectoryMoverTest, MergesOnNoAnswerButYes)
{
    writeFile("a/new", "1");
    writeFile("target/a/old", "2");

    for (const auto other : {QMessageBox::No, QMessageBox::Cancel, QMessageBox::NoButton}) {
        answer = other;
        EXPECT_FALSE(move("a", "target"));
        EXPECT_EQ(result, url("target/a"));
    }

    EXPECT_THAT(entries("a"), UnorderedElementsAre("new"));
    EXPECT_THAT(entries("target/a"), UnorderedElementsAre("old"));
}

TEST_F(DirectoryMoverTest, AsksInTheContextOfTheBackEnd)
{
    struct ContextTranslator : QTranslator
    {
        QString translate(const char *context, const char *text, const char *, int) const override
        {
            return QString(context) + ":" + text;
        }
        bool isEmpty() const override { return false; }
    } translator;
    writeFile("a/new", "1");
    writeFile("target/a/old", "2");

    QCoreApplication::installTranslator(&translator);
    move("a", "target");
    QCoreApplication::removeTranslator(&translator);

    EXPECT_EQ(asked, "kxLocalUrlManager:Asset Manager/kxLocalUrlManager:The target already contains a folder named "
                     "'a'.\nMerge folders?");
}
