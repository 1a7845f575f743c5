// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxLocalUrlManager.h"

#include "Assets/kxAssetItemFactory.h"
#include "Kernel/kxController.h"
#include "Kernel/kxControllerNotifier.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxModalQuestion.h"
#include "LibraryFixture.h"
#include "PlainItem.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "Support/CapturedOutput.h"
#include "Support/FileSizeLimit.h"

#include <QDomDocument>
#include <QFileIconProvider>
#include <QImage>
#include <QPixmap>

#include <gtest/gtest.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace {

const std::string First = "10000000-0000-4000-8000-000000000001";
const std::string Second = "20000000-0000-4000-8000-000000000002";

std::string content(const std::string &uuid)
{
    return "<category>Materials</category><uuid>" + uuid +
           "</uuid><name>Red</name><material><type>UBRDFMaterial</type></material>";
}

class kxLocalUrlManagerTest : public LibraryFixture
{
protected:
    ~kxLocalUrlManagerTest() override { kxModalQuestion::setAnswerer({}); }

    std::vector<std::string> names(const std::vector<QUrl> &urls) const
    {
        std::vector<std::string> result;
        result.reserve(urls.size());
        for (const QUrl &each : urls)
            result.push_back(each.fileName().toStdString());
        return result;
    }
    void answerWith(QMessageBox::StandardButton button)
    {
        kxModalQuestion::setAnswerer([this, button](const kxModalQuestion::Question &question) {
            questions.push_back(question);
            return button;
        });
    }
    bool has(const std::string &name) const { return fs::exists(fs::symlink_status(_folder.file(name))); }

    kxLocalUrlManager &manager = *kxLocalUrlManager::the();
    std::vector<kxModalQuestion::Question> questions;
};

using Names = std::vector<std::string>;

} // namespace

TEST_F(kxLocalUrlManagerTest, IsOne)
{
    EXPECT_EQ(kxLocalUrlManager::the(), kxLocalUrlManager::the());
}

TEST_F(kxLocalUrlManagerTest, AcceptsFileUrlsWhetherTheyExistOrNot)
{
    EXPECT_TRUE(manager.accepts(QUrl("file:///no/such/thing")));
    EXPECT_FALSE(manager.accepts(QUrl("http://example.org/a")));
    EXPECT_FALSE(manager.accepts(QUrl()));
}

TEST_F(kxLocalUrlManagerTest, TellsFilesFromDirectories)
{
    writeFile("sub/file.txt", "x");

    EXPECT_TRUE(manager.isDirectory(url("sub")));
    EXPECT_FALSE(manager.isFile(url("sub")));
    EXPECT_TRUE(manager.isFile(url("sub/file.txt")));
    EXPECT_TRUE(manager.exists(url("sub/file.txt")));
    EXPECT_FALSE(manager.exists(url("none")));
    EXPECT_EQ(manager.fileName(url("sub/file.txt")), "file.txt");
    EXPECT_TRUE(manager.fileName(url("sub")).isNull());
    EXPECT_TRUE(manager.fileName(url("none")).isNull());
    EXPECT_EQ(manager.directoryName(url("sub")), "sub");
    EXPECT_EQ(manager.uiString(url("sub")), QString::fromStdString(_folder.file("sub")));
}

TEST_F(kxLocalUrlManagerTest, FindsTheDirectoryAndTheParent)
{
    writeFile("sub/file.txt", "x");

    EXPECT_EQ(manager.getDirectoryUrl(url("sub")), url("sub"));
    EXPECT_EQ(manager.getDirectoryUrl(url("sub/file.txt")), url("sub"));
    EXPECT_EQ(manager.getParentDirectoryUrl(url("sub/file.txt")), url("sub"));
    EXPECT_EQ(manager.getParentDirectoryUrl(url("sub")), url());
    EXPECT_TRUE(manager.isSameDirectory(url("sub"), url("sub/")));
    EXPECT_FALSE(manager.isSameDirectory(url("sub"), url()));
}

TEST_F(kxLocalUrlManagerTest, TakesTheDirectoryThatWouldHoldWhatIsNotThere)
{
    writeFile("from/a/file", "x");

    EXPECT_EQ(manager.getDirectoryUrl(url("none")), url());
    EXPECT_EQ(manager.getDirectoryUrl(url("none/nor this")), url("none"));
    EXPECT_EQ(manager.extendByDirectory(url("none"), "x"), url("x"));
    QUrl result;
    EXPECT_TRUE(manager.move(url("from/a"), url("none"), result, false));
    EXPECT_EQ(result, url("a"));
    EXPECT_EQ(readFile("a/file"), "x");
    EXPECT_FALSE(manager.move(url("a"), url("none"), result, false)) << "onto itself";
    EXPECT_EQ(result, url("a"));
}

TEST_F(kxLocalUrlManagerTest, AnswersAbsolutePlacesForRelativeOnes)
{
    writeFile("sub/file", "x");
    const QString former = QDir::currentPath();
    QDir::setCurrent(QString::fromStdString(_folder.string()));
    const QUrl relative = QUrl::fromLocalFile("sub");

    EXPECT_EQ(manager.files(relative, {}, QDir::NoSort), (std::vector<QUrl>{url("sub/file")}));
    EXPECT_EQ(manager.files(relative, {}, QDir::Name), (std::vector<QUrl>{url("sub/file")}));
    EXPECT_EQ(manager.subDirectories(QUrl::fromLocalFile(".")), (std::vector<QUrl>{url("sub")}));
    EXPECT_EQ(manager.getParentDirectoryUrl(relative), url());
    EXPECT_EQ(manager.makeDirectory(relative, "a"), url("sub/a"));
    EXPECT_EQ(manager.makePath(relative, "b/c"), url("sub/b/c"));
    EXPECT_EQ(manager.makeUniqueDirectory(relative, "a", nullptr), url("sub/a0"));
    QDir::setCurrent(former);
}

TEST_F(kxLocalUrlManagerTest, ShowsTheIconsOfTheSystem)
{
    writeFile("sub/file.txt", "x");
    const auto iconOf = [](const QIcon &icon) { return icon.pixmap(16).toImage(); };
    const QFileIconProvider system;

    const QImage folder = iconOf(manager.icon(url("sub")));
    const QImage file = iconOf(manager.icon(url("sub/file.txt")));

    EXPECT_FALSE(folder.isNull());
    EXPECT_EQ(folder, iconOf(system.icon(QFileInfo(url("sub").toLocalFile()))));
    EXPECT_EQ(file, iconOf(system.icon(QFileInfo(url("sub/file.txt").toLocalFile()))));
    EXPECT_NE(folder, file);
}

TEST_F(kxLocalUrlManagerTest, ListsDirectoriesByNameWithoutLinks)
{
    for (const char *name : {"b", "A", "c"})
        _folder.makeFolder(name);
    writeFile("file", "x");
    fs::create_directory_symlink(_folder.file("b"), _folder.file("link"));

    EXPECT_EQ(names(manager.subDirectories(url())), (Names{"A", "b", "c"}));
    EXPECT_EQ(manager.subDirectoryCount(url()), 3);
    EXPECT_EQ(manager.subDirectoryCount(url("none")), 0);
}

TEST_F(kxLocalUrlManagerTest, ListsFilesByFilterWithoutLinksAndDirectories)
{
    writeFile("a.xml", "x");
    writeFile("b.xml", "x");
    writeFile("c.osb", "x");
    _folder.makeFolder("d.xml");
    fs::create_symlink(_folder.file("a.xml"), _folder.file("e.xml"));

    EXPECT_EQ(names(manager.files(url(), {"*.xml"}, QDir::Name)), (Names{"a.xml", "b.xml"}));
    EXPECT_EQ(names(manager.files(url(), {}, QDir::Name)), (Names{"a.xml", "b.xml", "c.osb"}));
    EXPECT_TRUE(manager.files(url(), {"*.png"}, QDir::NoSort).empty());
}

TEST_F(kxLocalUrlManagerTest, ExtendsByNamesAsTheyAre)
{
    _folder.makeFolder("sub");
    writeFile("sub/file.txt", "x");

    EXPECT_EQ(manager.extendByDirectory(url("sub"), "50% #1 ü").toLocalFile().toStdString(),
              _folder.file("sub/50% #1 ü"));
    EXPECT_EQ(manager.extendByDirectory(url("sub/file.txt"), "x").toLocalFile().toStdString(), _folder.file("sub/x"));
    EXPECT_EQ(manager.extendByDirectory(url("sub/"), "x"), url("sub/x")) << "one slash is enough";
    EXPECT_EQ(manager.extendByDirectory(QUrl("file:///"), "x"), QUrl("file:///x"));
}

TEST_F(kxLocalUrlManagerTest, NumbersTakenNames)
{
    for (const char *name : {"MAT_Red", "MAT_Blue2", "MAT_Blue3", "7"})
        _folder.makeFolder(name);
    fs::create_symlink(_folder.file("nowhere"), _folder.file("MAT_Red0"));

    EXPECT_EQ(manager.getUniqueDirectoryName(url(), "MAT_Green"), "MAT_Green");
    EXPECT_EQ(manager.getUniqueDirectoryName(url(), "MAT_Red"), "MAT_Red1") << "a dangling link takes the name too";
    EXPECT_EQ(manager.getUniqueDirectoryName(url(), "MAT_Blue2"), "MAT_Blue4");
    EXPECT_EQ(manager.getUniqueDirectoryName(url(), "7"), "70") << "digits alone are no number";
}

TEST_F(kxLocalUrlManagerTest, MakesAUniqueDirectory)
{
    EXPECT_EQ(manager.makeUniqueDirectory(url(), "MAT_Red", nullptr), url("MAT_Red"));
    EXPECT_EQ(manager.makeUniqueDirectory(url(), "MAT_Red", nullptr), url("MAT_Red0"));
    EXPECT_EQ(manager.makeUniqueDirectory(url(), "MAT_Red", nullptr), url("MAT_Red1"));
    EXPECT_TRUE(has("MAT_Red1"));
    EXPECT_EQ(manager.makeUniqueDirectory(url(), "MAT_Red1", nullptr), url("MAT_Red2"));
    EXPECT_EQ(manager.makeUniqueDirectory(url(), "MAT_Blue7", nullptr), url("MAT_Blue7"));
    EXPECT_EQ(manager.makeUniqueDirectory(url(), "MAT_Blue7", nullptr), url("MAT_Blue8"));
}

TEST_F(kxLocalUrlManagerTest, FindsTheDirectoryThatHoldsTheAssetAlready)
{
    writeAsset("MAT_Red", content(First));
    writeAsset("MAT_Red0", content(Second));
    PlainItem item(Material, Second);

    kxtest::CapturedOutput output;
    EXPECT_EQ(manager.makeUniqueDirectory(url(), "MAT_Red", &item), url("MAT_Red0"));

    EXPECT_EQ(output.text(), "[makeUniqueDirectory] - contains item with same uuid\n");
    EXPECT_FALSE(has("MAT_Red1"));
}

TEST_F(kxLocalUrlManagerTest, AnswersTheParentWhenNoDirectoryCanBeMade)
{
    writeFile("file", "x");

    EXPECT_EQ(manager.makeUniqueDirectory(url("file"), "MAT_Red", nullptr), url("file"));
}

TEST_F(kxLocalUrlManagerTest, MakesDirectoriesAndPaths)
{
    EXPECT_EQ(manager.makeDirectory(url("new/parent"), "child"), url("new/parent/child"));
    EXPECT_TRUE(manager.makeDirectory(url("new/parent"), "child").isEmpty()) << "it exists already";
    EXPECT_EQ(manager.makePath(url("new"), "a/b"), url("new/a/b"));
    EXPECT_EQ(manager.makePath(url("new"), "a/b"), url("new/a/b"));
    EXPECT_EQ(manager.makePath(url("new"), ""), url("new"));
    writeFile("file", "x");
    EXPECT_TRUE(manager.makeDirectory(url("file"), "child").isEmpty());
    EXPECT_TRUE(manager.makePath(url("file"), "a").isEmpty());
}

TEST_F(kxLocalUrlManagerTest, RenamesOnlyToFreeNames)
{
    _folder.makeFolder("a");
    _folder.makeFolder("b");
    fs::create_symlink(_folder.file("nowhere"), _folder.file("dangling"));

    EXPECT_FALSE(manager.rename(url("a"), url("b")));
    EXPECT_FALSE(manager.rename(url("a"), url("dangling")));
    EXPECT_TRUE(manager.rename(url("a"), url("c")));
    EXPECT_TRUE(has("c"));
    EXPECT_EQ(manager.rename(url("c"), "c", "d"), url("d"));
    EXPECT_EQ(manager.rename(url("d"), "d", "b"), url("d"));
    EXPECT_TRUE(has("d"));
}

TEST_F(kxLocalUrlManagerTest, RenamesBesideThePlaceThatItIsTold)
{
    _folder.makeFolder("sub/old");
    const QUrl beside = url("sub/whatever");

    EXPECT_EQ(manager.rename(beside, "missing", "new"), beside);
    EXPECT_EQ(manager.rename(beside, "old", "new 50%"), url("sub/new 50%"));
    EXPECT_TRUE(has("sub/new 50%"));
}

TEST_F(kxLocalUrlManagerTest, MovesAFolderAndSaysSo)
{
    writeFile("a/file", "x");
    _folder.makeFolder("target");
    answerWith(QMessageBox::No);

    QUrl result;
    kxtest::CapturedOutput output;
    EXPECT_TRUE(manager.move(url("a"), url("target"), result, false));

    EXPECT_EQ(output.text(),
              "move " + url("a").toString().toStdString() + " to " + url("target").toString().toStdString() + "\n");
    EXPECT_EQ(result, url("target/a"));
    EXPECT_EQ(readFile("target/a/file"), "x");
    EXPECT_TRUE(questions.empty());
}

TEST_F(kxLocalUrlManagerTest, DoesNotMoveAFolderOntoOrIntoItself)
{
    writeFile("a/sub/file", "x");
    fs::create_directory_symlink(_folder.string(), _folder.file("link"));
    answerWith(QMessageBox::Yes);

    QUrl result;
    kxtest::CapturedOutput output;
    EXPECT_FALSE(manager.move(url("a"), url(), result, false));
    EXPECT_EQ(result, url("a"));
    EXPECT_FALSE(manager.move(url("a/"), url("a/.."), result, false)) << "another spelling";
    EXPECT_FALSE(manager.move(url("a"), url("link"), result, true)) << "through a link";
    EXPECT_FALSE(manager.move(url("a"), url("a/sub"), result, true)) << "into itself";
    EXPECT_FALSE(manager.move(url("a"), url("a"), result, true));

    EXPECT_EQ(output.text(), "");
    EXPECT_TRUE(questions.empty());
    EXPECT_EQ(readFile("a/sub/file"), "x");
}

TEST_F(kxLocalUrlManagerTest, AsksBeforeItMerges)
{
    writeFile("a/new", "1");
    writeFile("target/a/old", "2");
    answerWith(QMessageBox::No);

    QUrl result;
    EXPECT_FALSE(manager.move(url("a"), url("target"), result, false));

    ASSERT_EQ(questions.size(), 1U);
    EXPECT_EQ(questions[0].icon, QMessageBox::Warning);
    EXPECT_EQ(questions[0].parent, nullptr);
    EXPECT_EQ(questions[0].title, "Asset Manager");
    EXPECT_EQ(questions[0].text, "The target already contains a folder named 'a'.\nMerge folders?");
    EXPECT_EQ(questions[0].buttons, QMessageBox::Yes | QMessageBox::No);
    EXPECT_EQ(questions[0].defaultButton, QMessageBox::Yes);
    EXPECT_TRUE(has("a/new"));
}

TEST_F(kxLocalUrlManagerTest, MergesWhenAllowedOrTold)
{
    writeFile("a/new", "1");
    writeFile("b/a/newer", "3");
    writeFile("target/a/old", "2");
    answerWith(QMessageBox::Yes);

    QUrl result;
    EXPECT_TRUE(manager.move(url("a"), url("target"), result, false));
    EXPECT_TRUE(manager.move(url("b/a"), url("target"), result, true));

    EXPECT_EQ(questions.size(), 1U);
    EXPECT_FALSE(has("a"));
    for (const char *name : {"target/a/new", "target/a/old", "target/a/newer"})
        EXPECT_TRUE(has(name)) << name;
}

TEST_F(kxLocalUrlManagerTest, KeepsBothAssetsOfOneNameWhenMerging)
{
    writeAsset("from/MAT_Red", content(First));
    writeAsset("to/MAT_Red", content(Second));
    writeFile("from/folder/file", "1");
    writeFile("to/folder/other", "2");

    EXPECT_TRUE(manager.merge(url("from"), url("to")));

    EXPECT_TRUE(manager.containsItem(url("to/MAT_Red"), Material, Second));
    EXPECT_TRUE(manager.containsItem(url("to/MAT_Red0"), Material, First));
    EXPECT_EQ(readFile("to/folder/file"), "1");
    EXPECT_FALSE(has("from"));
}

TEST_F(kxLocalUrlManagerTest, GoesOnMergingAfterAFailure)
{
    writeFile("from/taken", "new");
    writeFile("from/free", "1");
    writeFile("from/folder/file", "2");
    writeFile("to/taken", "old");

    EXPECT_FALSE(manager.merge(url("from"), url("to")));

    EXPECT_EQ(readFile("to/taken"), "old");
    EXPECT_EQ(readFile("from/taken"), "new");
    EXPECT_EQ(readFile("to/free"), "1");
    EXPECT_EQ(readFile("to/folder/file"), "2");
}

TEST_F(kxLocalUrlManagerTest, RemovesADirectoryWithItsItems)
{
    writeAsset("lib/MAT_A", content(First));
    writeAsset("other/MAT_B", content(Second));
    manager.collectItems(url(), Undefined, nullptr);

    EXPECT_TRUE(manager.removeDirectory(url("lib")));

    EXPECT_FALSE(has("lib"));
    EXPECT_EQ(kxAssetItemFactory::the().findItem(First), nullptr);
    EXPECT_NE(kxAssetItemFactory::the().findItem(Second), nullptr);
}

TEST_F(kxLocalUrlManagerTest, HasNothingToRemoveWhereNothingIs)
{
    writeAsset("MAT_A", content(First));
    manager.collectItems(url(), Undefined, nullptr);

    EXPECT_TRUE(manager.removeDirectory(url("none")));
    EXPECT_NE(kxAssetItemFactory::the().findItem(First), nullptr);
    EXPECT_FALSE(manager.removeDirectory(QUrl()));
}

TEST_F(kxLocalUrlManagerTest, RemovesLinksAndNotWhatTheyLeadTo)
{
    writeFile("precious/file", "x");
    writeFile("doomed/.hidden", "x");
    writeFile("doomed/sub/file", "x");
    fs::create_directory_symlink(_folder.file("precious"), _folder.file("doomed/link"));
    fs::create_symlink(_folder.file("nowhere"), _folder.file("doomed/dangling"));
    fs::create_directory_symlink(_folder.file("precious"), _folder.file("direct"));

    EXPECT_TRUE(kxLocalUrlManager::removeRecursively(QDir(QString::fromStdString(_folder.file("doomed")))));
    EXPECT_TRUE(manager.removeDirectory(url("direct")));

    EXPECT_FALSE(has("doomed"));
    EXPECT_FALSE(has("direct"));
    EXPECT_EQ(readFile("precious/file"), "x");
}

TEST_F(kxLocalUrlManagerTest, ReadsDocumentsByTheirSuffix)
{
    writeFile("meta.XML", "<item><name>x</name></item>");
    writeFile("meta.txt", "<item/>");

    QDomDocument document;
    kxtest::CapturedOutput output;
    EXPECT_TRUE(manager.loadDocumentFromFile(url("meta.XML"), document));
    EXPECT_EQ(document.documentElement().tagName(), "item");
    EXPECT_FALSE(manager.loadDocumentFromFile(url("meta.txt"), document));
    EXPECT_EQ(output.text(), "");
}

TEST_F(kxLocalUrlManagerTest, SaysWhatIsWrongWithADocument)
{
    writeFile("broken.xml", "<item>\n<name></item>");

    QDomDocument document;
    kxtest::CapturedOutput output;
    EXPECT_FALSE(manager.loadDocumentFromFile(url("none.xml"), document));
    EXPECT_FALSE(manager.loadDocumentFromFile(url("broken.xml"), document));

    EXPECT_EQ(output.text(), "could not open xml\ncould not set xml content, error tag mismatch at 2, 13\n");
}

TEST_F(kxLocalUrlManagerTest, RefusesDocumentsThatWouldOverflowTheStack)
{
    std::string deep;
    for (int i = 0; i < 25000; ++i)
        deep += "<a:b>";
    std::string closed = deep;
    for (int i = 0; i < 25000; ++i)
        closed += "</a:b>";
    writeFile("open.xml", deep);
    writeFile("closed.xml", closed);
    writeFile("big.xml", "<item>" + std::string(17 * 1024 * 1024, ' ') + "</item>");

    QDomDocument document;
    for (const char *name : {"open.xml", "closed.xml", "big.xml"}) {
        kxtest::CapturedOutput output;
        EXPECT_FALSE(manager.loadDocumentFromFile(url(name), document)) << name;
        EXPECT_EQ(output.text().rfind("could not set xml content, error ", 0), 0U) << name;
    }
}

TEST_F(kxLocalUrlManagerTest, WritesDocumentsThatReadBackEqual)
{
    QDomDocument document;
    document.setContent(QStringLiteral("<item><name>Grün 緑</name></item>"));

    EXPECT_TRUE(manager.saveDocumentToFile(url("ü 緑.xml"), document));
    QDomDocument back;
    EXPECT_TRUE(manager.loadDocumentFromFile(url("ü 緑.xml"), back));
    EXPECT_EQ(back.documentElement().firstChildElement("name").text(), QString::fromUtf8("Grün 緑"));
    EXPECT_NE(readFile("ü 緑.xml").find("<name>Grün 緑</name>"), std::string::npos) << "in UTF-8";
}

TEST_F(kxLocalUrlManagerTest, LeavesNothingOfTheDocumentThatItReplaces)
{
    QDomDocument document;
    document.setContent(QStringLiteral("<item/>"));
    writeFile("a.xml", std::string(5000, 'x'));

    EXPECT_TRUE(manager.saveDocumentToFile(url("a.xml"), document));

    EXPECT_EQ(readFile("a.xml").find("xxx"), std::string::npos);
}

TEST_F(kxLocalUrlManagerTest, LogsWhyADocumentWasNotWritten)
{
    QDomDocument document;
    document.setContent(QStringLiteral("<item/>"));
    writeFile("file", "x");

    kxLogRecorder log;
    EXPECT_FALSE(manager.saveDocumentToFile(url("file/a.xml"), document));

    EXPECT_EQ(log.lines(kxLogLevel::Error),
              (Names{"Can't write file '" + _folder.file("file/a.xml") + "', no writing permission!"}));
}

TEST_F(kxLocalUrlManagerTest, ReadsPicturesOfQtAndOfTheHost)
{
    QImage red(4, 2, QImage::Format_RGB32);
    red.fill(Qt::red);
    ASSERT_TRUE(red.save(QString::fromStdString(_folder.file("a.PNG")), "PNG"));
    const osg::FCRef<osg::Image> image(osg::Image::create());
    ASSERT_TRUE(image->read(_folder.file("a.PNG")));
    ASSERT_TRUE(image->write(_folder.file("b.vif")));

    for (const char *name : {"a.PNG", "b.vif"}) {
        QImage read;
        QPixmap pixmap;
        EXPECT_TRUE(manager.loadImageFromFile(url(name), &read)) << name;
        EXPECT_TRUE(manager.loadPixmapFromFile(url(name), pixmap)) << name;
        EXPECT_EQ(read.size(), QSize(4, 2)) << name;
        EXPECT_EQ(read.pixel(3, 1), 0xFFFF0000U) << name;
        EXPECT_EQ(pixmap.toImage().pixel(0, 0), 0xFFFF0000U) << name;
    }
}

TEST_F(kxLocalUrlManagerTest, LeavesPicturesAloneThatCannotBeRead)
{
    writeFile("broken.png", "not a picture");

    QImage image(3, 3, QImage::Format_RGB32);
    QPixmap pixmap;
    EXPECT_FALSE(manager.loadImageFromFile(url("broken.png"), &image));
    EXPECT_FALSE(manager.loadPixmapFromFile(url("broken.png"), pixmap));
}

TEST_F(kxLocalUrlManagerTest, ReadsTheNewestPreview)
{
    QImage picture(1, 1, QImage::Format_RGB32);
    picture.fill(Qt::red);
    writeFile("a/Red.osb", "x");
    ASSERT_TRUE(picture.save(QString::fromStdString(_folder.file("a/Red.png"))));
    picture.fill(Qt::blue);
    ASSERT_TRUE(picture.save(QString::fromStdString(_folder.file("a/blue.png"))));
    const osg::FCRef<osg::Image> image(osg::Image::create());
    ASSERT_TRUE(image->read(_folder.file("a/blue.png")));
    ASSERT_TRUE(image->write(_folder.file("a/Red.vif")));
    fs::last_write_time(_folder.file("a/Red.png"),
                        fs::last_write_time(_folder.file("a/Red.vif")) - std::chrono::hours(1));

    QImage read;
    EXPECT_TRUE(manager.loadImageFromDir(url("a"), &read));
    EXPECT_EQ(read.pixel(0, 0), 0xFF0000FFU);
}

TEST_F(kxLocalUrlManagerTest, ChecksumsOneFile)
{
    writeFile("a", "123456789");

    EXPECT_EQ(manager.checksum(url("a")), 0xCBF43926U);
}

TEST_F(kxLocalUrlManagerTest, CollectsFromDiskUnderNamesOfAllKinds)
{
    const Names folders{"50% #1", "trailing.", "kanji 緑", "nfc \u00FC", "nfd u\u0308", std::string(200, 'x')};
    for (std::size_t i = 0; i < folders.size(); ++i)
        writeAsset("lib/" + folders[i], content("4000000" + std::to_string(i) + "-0000-4000-8000-000000000000"));

    manager.collectItems(url("lib"), Material, nullptr);

    for (std::size_t i = 0; i < folders.size(); ++i) {
        kxAssetItem *item =
            kxAssetItemFactory::the().findItem("4000000" + std::to_string(i) + "-0000-4000-8000-000000000000");
        ASSERT_NE(item, nullptr) << folders[i];
        EXPECT_EQ(item->directoryUrl().toLocalFile().toStdString(), _folder.file("lib/" + folders[i]));
    }
}

TEST_F(kxLocalUrlManagerTest, SaysWhyANodeCannotBeLoaded)
{
    kxLogRecorder log;
    osg::NodePtr node;
    EXPECT_FALSE(manager.loadNodeFromFile(url("a.osb"), node));
    EXPECT_FALSE(manager.loadSceneplateFromFile(url("a.osb"), node));
    EXPECT_EQ(log.lines(kxLogLevel::Error).size(), 2U);
    EXPECT_FALSE(node);
}

TEST_F(kxLocalUrlManagerTest, FindsTheParentOfWhatIsWrittenWithASlashAtItsEnd)
{
    _folder.makeFolder("sub");

    EXPECT_EQ(manager.getParentDirectoryUrl(url("sub/")), url());
    EXPECT_EQ(manager.getParentDirectoryUrl(QUrl("file:///")), QUrl("file:///"));
    EXPECT_EQ(manager.directoryName(url("sub/")), "sub");
}

TEST_F(kxLocalUrlManagerTest, MakesNothingWithoutAPlace)
{
    const Names before = names(manager.subDirectories(QUrl::fromLocalFile(QDir::currentPath())));

    EXPECT_TRUE(manager.makeDirectory(QUrl(), "a").isEmpty());
    EXPECT_TRUE(manager.makePath(QUrl(), "a/b").isEmpty());
    EXPECT_TRUE(manager.makeUniqueDirectory(QUrl(), "a", nullptr).isEmpty());
    EXPECT_FALSE(manager.rename(QUrl(), url("a")));
    EXPECT_FALSE(manager.rename(url("a"), QUrl()));

    EXPECT_EQ(names(manager.subDirectories(QUrl::fromLocalFile(QDir::currentPath()))), before);
}

TEST_F(kxLocalUrlManagerTest, CountsOnFromAnyNumber)
{
    for (const char *name : {"MAT_A007", "MAT_B2147483647", "MAT_C2147483648", "MAT_D9", "MAT_D10"})
        _folder.makeFolder(name);

    EXPECT_EQ(manager.getUniqueDirectoryName(url(), "MAT_A007"), "MAT_A8");
    EXPECT_EQ(manager.getUniqueDirectoryName(url(), "MAT_B2147483647"), "MAT_B2147483648");
    EXPECT_EQ(manager.getUniqueDirectoryName(url(), "MAT_C2147483648"), "MAT_C21474836480");
    EXPECT_EQ(manager.getUniqueDirectoryName(url(), "MAT_D9"), "MAT_D11");
    EXPECT_EQ(manager.getUniqueDirectoryName(url(), ""), "");
}

TEST_F(kxLocalUrlManagerTest, TakesAFileForATakenName)
{
    writeFile("MAT_Red", "x");
    PlainItem item(Material, First);

    EXPECT_EQ(manager.makeUniqueDirectory(url(), "MAT_Red", &item), url("MAT_Red0"));
    EXPECT_EQ(manager.getUniqueDirectoryName(url(), "MAT_Red"), "MAT_Red1");
}

TEST_F(kxLocalUrlManagerTest, BelievesNoDirectoryWhoseMetadataCannotBeRead)
{
    writeAsset("MAT_Red", content(First));
    manager.collectItems(url(), Undefined, nullptr);
    kxAssetItem *item = kxAssetItemFactory::the().findItem(First);
    ASSERT_TRUE(item);
    writeFile("MAT_Red/asset.xml", "no metadata");

    EXPECT_EQ(manager.makeUniqueDirectory(url(), "MAT_Red", item), url("MAT_Red0"));
}

TEST_F(kxLocalUrlManagerTest, FindsNoDirectoryOfAnAssetOfAnotherCategory)
{
    writeAsset("MAT_Red", content(First));
    PlainItem item(Geometry, First);

    EXPECT_EQ(manager.makeUniqueDirectory(url(), "MAT_Red", &item), url("MAT_Red0"));
}

TEST_F(kxLocalUrlManagerTest, ListsFilesByTimeNewestFirst)
{
    const auto now = fs::file_time_type::clock::now();
    int age = 0;
    for (const char *name : {"b", "a", "c"}) {
        writeFile(name, "x");
        fs::last_write_time(_folder.file(name), now - std::chrono::hours(age++));
    }

    EXPECT_EQ(names(manager.files(url(), {}, QDir::Time)), (Names{"b", "a", "c"}));
}

TEST_F(kxLocalUrlManagerTest, MatchesNameFiltersInEitherCase)
{
    for (const char *name : {"A.XML", "b.xml", "c.xmlx", ".hidden.xml"})
        writeFile(name, "x");

    EXPECT_EQ(names(manager.files(url(), {"*.xml"}, QDir::Name)), (Names{"A.XML", "b.xml"}));
}

TEST_F(kxLocalUrlManagerTest, ListsInTheOrderOfTheFileSystemUnlessAskedForAnother)
{
    Names expected;
    for (int i = 0; i < 40; ++i)
        writeFile(std::to_string(i * 7919 % 1000), "x");
    for (const fs::directory_entry &entry : fs::directory_iterator(_folder.path()))
        expected.push_back(entry.path().filename().string());

    EXPECT_EQ(names(manager.files(url(), {}, QDir::NoSort)), expected);
}

TEST_F(kxLocalUrlManagerTest, AnswersFromTheFileSystem)
{
    writeFile("a/file.txt", "x");
    fs::last_write_time(_folder.file("a/file.txt"), fs::file_time_type::clock::now() - std::chrono::hours(48));

    EXPECT_LT(manager.lastModified(url("a/file.txt")), QDateTime::currentDateTime().addDays(-1));
    EXPECT_EQ(manager.owner(url("a/file.txt")), QFileInfo(QString::fromStdString(_folder.file("a"))).owner());
    EXPECT_FALSE(manager.lastModified(url("none")).isValid());
    EXPECT_EQ(manager.expand(url("a/$KX_NO_SUCH_VARIABLE")), url("a/$KX_NO_SUCH_VARIABLE"));
    qputenv("KX_TEST_VARIABLE", "expanded");
    EXPECT_EQ(manager.expand(url("a/$KX_TEST_VARIABLE")), url("a/expanded"));
}

TEST_F(kxLocalUrlManagerTest, SaysWhyAMaterialCannotBeLoaded)
{
    writeFile("broken.osb", "x");
    kxLogRecorder log;

    osg::MaterialPtr material;
    EXPECT_FALSE(manager.loadMaterialFromFile(url("broken.osb"), material));
    EXPECT_FALSE(manager.loadMaterialFromFile(url("none.osb"), material));

    EXPECT_FALSE(material);
    EXPECT_EQ(log.lines(kxLogLevel::Error).size(), 2U) << "one line each";
}

TEST_F(kxLocalUrlManagerTest, LoadsTheFirstMaterialOfAFile)
{
    const osg::FCRef<osg::Material> red(osg::UBRDFMaterial::create());
    const osg::FCRef<osg::Material> blue(osg::UBRDFMaterial::create());
    osg::setName(red.get(), "Red");
    osg::setName(blue.get(), "Blue");
    ASSERT_TRUE(osg::writeSceneFile(_folder.file("two.osb"), {red.get(), blue.get()}));
    const osg::FCRef<osg::Node> node(osg::makeNodeFor(osg::Group::create()));
    ASSERT_TRUE(osg::writeSceneFile(_folder.file("node.osb"), {node.get()}));

    osg::MaterialPtr material;
    ASSERT_TRUE(manager.loadMaterialFromFile(url("two.osb"), material));
    const auto loaded = osg::FCRef<osg::Material>::adopt(material);
    EXPECT_EQ(osg::getName(loaded.get()), "Red");
    EXPECT_EQ(loaded->getRefCount(), 1) << "the caller's";

    osg::MaterialPtr kept = loaded.get();
    EXPECT_FALSE(manager.loadMaterialFromFile(url("node.osb"), kept));
    EXPECT_EQ(kept, loaded.get()) << "left as it was";
}

TEST_F(kxLocalUrlManagerTest, ShowsProgressOnlyWhereThatIsWanted)
{
    const osg::FCRef<osg::Material> red(osg::UBRDFMaterial::create());
    ASSERT_TRUE(osg::writeSceneFile(_folder.file("red.osb"), {red.get()}));
    int shown = 0;
    const auto connection =
        QObject::connect(&kxController::notifier(), &kxControllerNotifier::fileLoadingStarted, [&shown] { ++shown; });
    const auto load = [this] {
        osg::MaterialPtr material;
        EXPECT_TRUE(manager.loadMaterialFromFile(url("red.osb"), material));
        const auto loaded = osg::FCRef<osg::Material>::adopt(material);
    };

    load();
    EXPECT_EQ(shown, 0);
    manager.setShowMaterialLoadProgress(true);
    load();
    EXPECT_EQ(shown, 1);
    manager.setShowMaterialLoadProgress(false);
    QObject::disconnect(connection);
}

TEST_F(kxLocalUrlManagerTest, WritesDocumentsThroughALinkAndKeepsIt)
{
    QDomDocument document;
    document.setContent(QStringLiteral("<item/>"));
    writeFile("real/a.xml", "old");
    fs::create_symlink(_folder.file("real/a.xml"), _folder.file("link.xml"));

    EXPECT_TRUE(manager.saveDocumentToFile(url("link.xml"), document));

    EXPECT_TRUE(fs::is_symlink(_folder.file("link.xml")));
    EXPECT_NE(readFile("real/a.xml").find("<item/>"), std::string::npos);
}

TEST_F(kxLocalUrlManagerTest, KeepsTheOldDocumentOnAFullDisk)
{
    QDomDocument document;
    document.setContent(QStringLiteral("<item><name>new</name></item>"));
    writeFile("a.xml", "old");
    kxLogRecorder log;
    {
        const kxtest::FileSizeLimit fullDisk(10, kxtest::FileSizeLimit::Fails);
        EXPECT_FALSE(manager.saveDocumentToFile(url("a.xml"), document));
    }

    EXPECT_EQ(log.lines(kxLogLevel::Error), (Names{"Failed to write file '" + _folder.file("a.xml") + "'."}));
    EXPECT_EQ(readFile("a.xml"), "old");
    EXPECT_EQ(names(manager.files(url(), {}, QDir::Name)), (Names{"a.xml"}));
}
