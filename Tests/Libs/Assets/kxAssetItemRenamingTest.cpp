// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItem.h"

#include "Assets/kxLocalUrlManager.h"
#include "Kernel/kxLogRecorder.h"
#include "LibraryFixture.h"
#include "PlainItem.h"
#include "Support/FileSizeLimit.h"

#include <QDomDocument>

#include <filesystem>
#include <set>
#include <vector>

namespace {

constexpr const char *Uuid = "0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d";

/// Holds one metadata document, and notes what is written back instead of writing it.
class OnePlace : public kxLocalUrlManager
{
public:
    /// Back-ends stay registered, so there is one for all tests; it begins anew with each call.
    static OnePlace &startAnew()
    {
        static OnePlace place;
        registerManager(&place);
        place.metadata = "<item><name>Old</name></item>";
        place.isReadable = true;
        place.isWritable = true;
        place.saved.clear();
        return place;
    }

    bool accepts(const QUrl &place) const override { return place.scheme() == "one"; }
    bool loadDocumentFromDir(const QUrl &directory, QDomDocument &document, QUrl &file) const override
    {
        document.setContent(metadata);
        file = QUrl(directory.toString() + "/read.xml");
        return isReadable;
    }
    bool saveDocumentToFile(const QUrl &file, const QDomDocument &document) const override
    {
        saved.push_back(file.toString().toStdString() + " " + document.toByteArray(-1).trimmed().toStdString());
        return isWritable;
    }

    QByteArray metadata;
    bool isReadable = true;
    bool isWritable = true;
    mutable std::vector<std::string> saved; ///< "file content"
};

class kxAssetItemRenamingTest : public LibraryFixture
{
protected:
    /// A material item's metadata with this name element or elements.
    QUrl writeNamed(const std::string &names) const
    {
        return writeAsset("MAT_x", "<category>Materials</category><uuid>" + std::string(Uuid) + "</uuid>" + names);
    }

    static PlainItem itemIn(const QUrl &directory, const std::string &name = "Old")
    {
        PlainItem item(Material, Uuid);
        item.setName(name);
        item.setDirectoryUrl(directory);
        return item;
    }

    /// The texts of the metadata's name elements.
    std::vector<std::string> storedNames() const
    {
        QDomDocument document("document");
        EXPECT_TRUE(document.setContent(QByteArray::fromStdString(readFile("MAT_x/asset.xml"))));
        std::vector<std::string> names;
        const QDomNodeList elements = document.documentElement().elementsByTagName("name");
        names.reserve(static_cast<std::size_t>(elements.size()));
        for (int i = 0; i < elements.size(); ++i)
            names.push_back(elements.at(i).toElement().text().toStdString());
        return names;
    }

    std::set<std::string> filesIn(const std::string &directory) const
    {
        std::set<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator(_folder.file(directory)))
            names.insert(entry.path().filename().string());
        return names;
    }

    OnePlace &_place = OnePlace::startAnew();
};

} // namespace

TEST_F(kxAssetItemRenamingTest, RenamesInTheMetadataAndInMemory)
{
    PlainItem item = itemIn(writeNamed("<name>Old</name>"));

    EXPECT_TRUE(item.changeName(QString::fromUtf8("Neu & schön 木")));

    EXPECT_EQ(item.name(), "Neu & schön 木");
    EXPECT_EQ(storedNames(), std::vector<std::string>{"Neu & schön 木"});
    EXPECT_EQ(item.directoryUrl(), url("MAT_x"));
}

TEST_F(kxAssetItemRenamingTest, LeavesTheFileAloneWhenTheNameIsTheSame)
{
    PlainItem item = itemIn(writeNamed("<name>Stored</name>"), "Same");

    EXPECT_TRUE(item.changeName("Same"));
    EXPECT_TRUE(itemIn(QUrl(), "Same").changeName("Same"));

    EXPECT_EQ(storedNames(), std::vector<std::string>{"Stored"});
}

TEST_F(kxAssetItemRenamingTest, RenamesBetweenTheTwoFormsOfAnUmlaut)
{
    PlainItem item = itemIn(writeNamed("<name>u</name>"), "\xC3\xBC");

    EXPECT_TRUE(item.changeName(QString::fromUtf8("u\xCC\x88")));

    EXPECT_EQ(item.name(), "u\xCC\x88");
    EXPECT_EQ(storedNames(), std::vector<std::string>{"u\xCC\x88"});
}

TEST_F(kxAssetItemRenamingTest, RenamesTheFirstOfTwoNamesOnly)
{
    PlainItem item = itemIn(writeNamed("<name>Old</name><name>Other</name>"));

    EXPECT_TRUE(item.changeName("New"));

    EXPECT_EQ(storedNames(), (std::vector<std::string>{"New", "Other"}));
}

TEST_F(kxAssetItemRenamingTest, FillsAnEmptyNameAndGoesOnToTheNext)
{
    PlainItem item = itemIn(writeNamed("<name></name><name>Old</name><name>Last</name>"));

    EXPECT_TRUE(item.changeName("New"));

    EXPECT_EQ(storedNames(), (std::vector<std::string>{"New", "New", "Last"}));
}

TEST_F(kxAssetItemRenamingTest, AppendsToANameThatBeginsWithSomethingElse)
{
    PlainItem item = itemIn(writeNamed("<name><b>bold</b>Old</name>"));

    EXPECT_TRUE(item.changeName("New"));

    EXPECT_EQ(storedNames(), std::vector<std::string>{"boldOldNew"});
}

TEST_F(kxAssetItemRenamingTest, ReplacesTheFirstTextOnly)
{
    PlainItem item = itemIn(writeNamed("<name>Old<b>bold</b></name>"));

    EXPECT_TRUE(item.changeName("New"));

    EXPECT_EQ(storedNames(), std::vector<std::string>{"Newbold"});
}

TEST_F(kxAssetItemRenamingTest, RenamesInMemoryWhenTheMetadataHasNoName)
{
    PlainItem item = itemIn(writeNamed(""));

    EXPECT_TRUE(item.changeName("New"));

    EXPECT_EQ(item.name(), "New");
    EXPECT_EQ(storedNames(), std::vector<std::string>{});
}

TEST_F(kxAssetItemRenamingTest, LeavesNamesElsewhereInTheDocumentAlone)
{
    PlainItem item = itemIn(writeNamed("<material><name>Inner</name></material><name>Old</name>"));

    EXPECT_TRUE(item.changeName("New"));

    EXPECT_EQ(storedNames(), (std::vector<std::string>{"Inner", "New"}));
}

TEST_F(kxAssetItemRenamingTest, KeepsItsNameWithoutBackEndOrMetadata)
{
    PlainItem nowhere = itemIn(QUrl("nobody://x"));
    PlainItem empty = itemIn(url("missing"));

    EXPECT_FALSE(nowhere.changeName("New"));
    EXPECT_FALSE(empty.changeName("New"));

    EXPECT_EQ(nowhere.name(), "Old");
    EXPECT_EQ(empty.name(), "Old");
}

TEST_F(kxAssetItemRenamingTest, KeepsItsNameWhenTheMetadataIsEmpty)
{
    PlainItem item = itemIn(QUrl("one:/x"));
    _place.metadata.clear();

    EXPECT_FALSE(item.changeName("New"));

    EXPECT_EQ(item.name(), "Old");
    EXPECT_TRUE(_place.saved.empty());
}

TEST_F(kxAssetItemRenamingTest, KeepsItsNameWhenTheMetadataCannotBeRead)
{
    // The back-end's answer counts, and not what it left in the document.
    PlainItem item = itemIn(QUrl("one:/x"));
    _place.isReadable = false;

    EXPECT_FALSE(item.changeName("New"));

    EXPECT_EQ(item.name(), "Old");
    EXPECT_TRUE(_place.saved.empty());
}

TEST_F(kxAssetItemRenamingTest, WritesTheMetadataBackToWhereItWasRead)
{
    PlainItem item = itemIn(QUrl("one:/x"));
    _place.metadata = "<item><other/><name>Old</name></item>";

    EXPECT_TRUE(item.changeName("New"));

    EXPECT_EQ(_place.saved, std::vector<std::string>{"one:/x/read.xml <item><other/><name>New</name></item>"});
}

TEST_F(kxAssetItemRenamingTest, WritesTheMetadataBackUnchangedWhenItHasNoName)
{
    PlainItem item = itemIn(QUrl("one:/x"));
    _place.metadata = "<item><other/></item>";

    EXPECT_TRUE(item.changeName("New"));

    EXPECT_EQ(_place.saved, std::vector<std::string>{"one:/x/read.xml <item><other/></item>"});
}

TEST_F(kxAssetItemRenamingTest, KeepsItsNameWhenMetadataWithoutOneCannotBeWritten)
{
    PlainItem item = itemIn(QUrl("one:/x"));
    _place.metadata = "<item><other/></item>";
    _place.isWritable = false;

    EXPECT_FALSE(item.changeName("New"));

    EXPECT_EQ(item.name(), "Old");
}

TEST_F(kxAssetItemRenamingTest, LeavesTheOtherFilesOfTheAssetAlone)
{
    PlainItem item = itemIn(writeNamed("<name>Old</name>"));
    writeFile("MAT_x/Old.osb", "payload");
    writeFile("MAT_x/Old.png", "preview");

    EXPECT_TRUE(item.changeName("New"));

    EXPECT_EQ(filesIn("MAT_x"), (std::set<std::string>{"Old.osb", "Old.png", "asset.xml"}));
    EXPECT_EQ(readFile("MAT_x/Old.osb"), "payload");
    EXPECT_EQ(readFile("MAT_x/Old.png"), "preview");
}

TEST_F(kxAssetItemRenamingTest, KeepsItsNameWhenTheMetadataCannotBeWritten)
{
    PlainItem item = itemIn(writeNamed("<name>Old</name>"));
    const std::string before = readFile("MAT_x/asset.xml");
    const kxLogRecorder log;
    bool isRenamed = true;
    {
        const kxtest::FileSizeLimit none(0, kxtest::FileSizeLimit::Fails);
        isRenamed = item.changeName("New");
    }

    EXPECT_FALSE(isRenamed);
    EXPECT_EQ(item.name(), "Old");
    EXPECT_EQ(readFile("MAT_x/asset.xml"), before);
    EXPECT_EQ(log.lines(kxLogLevel::Error).size(), 1U);
}
