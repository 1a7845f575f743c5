// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxLocalUrlManager.h"
#include "LibraryFixture.h"
#include "Support/CapturedOutput.h"

#include <QDomDocument>

#include <sys/inotify.h>
#include <unistd.h>

#include <array>

namespace {

std::string repeated(const std::string &text, int times)
{
    std::string result;
    for (int i = 0; i < times; ++i)
        result += text;
    return result;
}

std::string nested(int levels)
{
    return repeated("<x>", levels) + repeated("</x>", levels);
}

/// Little-endian, with the mark that says so.
std::string utf16(const QString &text)
{
    const auto *bytes = reinterpret_cast<const char *>(text.utf16());
    return "\xFF\xFE" + std::string(bytes, static_cast<std::size_t>(text.size()) * 2);
}

/// Counts how often a file is opened.
class OpenCount
{
public:
    explicit OpenCount(const std::string &path) : _notifier(::inotify_init1(IN_NONBLOCK))
    {
        EXPECT_GE(::inotify_add_watch(_notifier, path.c_str(), IN_OPEN | IN_CLOSE), 0);
    }
    ~OpenCount() { ::close(_notifier); }
    OpenCount(const OpenCount &) = delete;
    OpenCount &operator=(const OpenCount &) = delete;

    int opened() const
    {
        // Those of closing keep two of opening from becoming one.
        std::array<inotify_event, 64> events{};
        const ssize_t bytes = ::read(_notifier, events.data(), sizeof events);
        int count = 0;
        for (ssize_t i = 0; i < bytes / static_cast<ssize_t>(sizeof(inotify_event)); ++i)
            count += (events[static_cast<std::size_t>(i)].mask & IN_OPEN) != 0 ? 1 : 0;
        return count;
    }

private:
    int _notifier;
};

class MetadataReaderTest : public LibraryFixture
{
protected:
    /// What reading this file says on standard output; "" for success.
    std::string complaint(const std::string &content)
    {
        writeFile("meta.xml", content);
        kxtest::CapturedOutput output;
        const bool isRead = kxLocalUrlManager::the()->loadDocumentFromFile(url("meta.xml"), document);
        std::string lines = output.text();
        EXPECT_EQ(isRead, lines.empty());
        return lines;
    }

    QString text() const { return document.documentElement().text(); }

    QDomDocument document;
};

constexpr const char *TooDeep = "could not set xml content, error the elements are nested too deep at 1, 1\n";
constexpr const char *TooBig = "could not set xml content, error the file is too big at 1, 1\n";

} // namespace

TEST_F(MetadataReaderTest, ReadsTheEncodingsThatXmlKnows)
{
    EXPECT_EQ(complaint("<item>Gr\xC3\xBCn</item>"), "");
    EXPECT_EQ(text(), QString::fromUtf8("Grün"));
    EXPECT_EQ(complaint("<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><item>Gr\xFCn</item>"), "");
    EXPECT_EQ(text(), QString::fromUtf8("Grün"));
    EXPECT_EQ(complaint(utf16(QString::fromUtf8("<item>Grün</item>"))), "");
    EXPECT_EQ(text(), QString::fromUtf8("Grün"));
}

TEST_F(MetadataReaderTest, ReadsAsManyElementsAsThereAreSideBySide)
{
    EXPECT_EQ(complaint("<item>" + repeated("<uuid>x</uuid>", 1000) + "</item>"), "");

    EXPECT_EQ(document.documentElement().childNodes().size(), 1000);
}

TEST_F(MetadataReaderTest, SaysWhatIsWrongInALongFileAsInAShortOne)
{
    EXPECT_EQ(complaint("<item>\n<a></item>"), "could not set xml content, error tag mismatch at 2, 10\n");
    EXPECT_EQ(complaint("<item>" + repeated("<b/>", 1000) + "\n<a></item>"),
              "could not set xml content, error tag mismatch at 2, 10\n");
    EXPECT_EQ(complaint(""), "could not set xml content, error unexpected end of file at 1, 1\n");
}

TEST_F(MetadataReaderTest, BoundsTheDepth)
{
    EXPECT_EQ(complaint(nested(256)), "");
    EXPECT_EQ(complaint(nested(257)), TooDeep);
    EXPECT_EQ(complaint(nested(25000)), TooDeep);
    EXPECT_EQ(complaint(repeated("<x>", 600000)), TooDeep) << "also when the elements never end";
}

TEST_F(MetadataReaderTest, BoundsTheDepthThatEntitiesBring)
{
    // What stands here is few tags and no deep nesting; what it stands for are 30,000 elements in each other.
    const std::string entity = "<!ENTITY e \"" + repeated("&#60;x>", 300) + "\">";
    const std::string content = "<!DOCTYPE a [" + entity + "]><item>" + repeated("&e;", 100) + "</item>";

    EXPECT_EQ(complaint(content), TooDeep);
}

TEST_F(MetadataReaderTest, BoundsTheDepthInEveryEncoding)
{
    EXPECT_EQ(complaint(utf16(QString("<x>").repeated(25000))), TooDeep);
    // In this encoding a tag begins with other bytes.
    EXPECT_EQ(complaint("<?xml version=\"1.0\" encoding=\"UTF-7\"?>" + repeated("+ADw-x>", 25000)), TooDeep);
}

TEST_F(MetadataReaderTest, BoundsTheSizeOfTheFileAndOfWhatItStandsFor)
{
    constexpr int Limit = 4 * 1024 * 1024;
    const std::string frame = "<item></item>";

    EXPECT_EQ(complaint("<item>" + std::string(Limit - frame.size(), ' ') + "</item>"), "");
    EXPECT_EQ(complaint("<item>" + std::string(Limit - frame.size() + 1, ' ') + "</item>"), TooBig);
    const std::string entity = "<!ENTITY e \"" + std::string(4000, 'x') + "\">";
    EXPECT_EQ(complaint("<!DOCTYPE a [" + entity + "]><item>" + repeated("&e;", 100000) + "</item>"), TooBig);
}

TEST_F(MetadataReaderTest, AcceptsHarmlessEntities)
{
    EXPECT_EQ(complaint("<!DOCTYPE a [<!ENTITY e \"red\">]><item>&e; &lt; &#8364;</item>"), "");

    EXPECT_EQ(text(), QString::fromUtf8("red < €"));
}

TEST_F(MetadataReaderTest, FollowsNoEntityOutOfTheFile)
{
    writeFile("secret", "secret");
    complaint("<!DOCTYPE a [<!ENTITY e SYSTEM \"file://" + _folder.file("secret") + "\">]><item>&e;</item>");

    EXPECT_FALSE(document.toString().contains(QStringLiteral(">secret<")));
}

TEST_F(MetadataReaderTest, OpensEachFileOnceInAScan)
{
    const std::string small =
        "<category>Materials</category><uuid>1</uuid><material><type>UBRDFMaterial</type></material>";
    const std::string large = "<category>Materials</category><uuid>2</uuid><material><type>SwitchMaterial</type>"
                              "<subMaterials>" +
                              repeated("<uuid>x</uuid>", 500) + "</subMaterials></material>";
    writeAsset("lib/MAT_Small", small);
    writeAsset("lib/deeper/MAT_Large", large);
    const OpenCount ofSmall(_folder.file("lib/MAT_Small/asset.xml"));
    const OpenCount ofLarge(_folder.file("lib/deeper/MAT_Large/asset.xml"));

    std::set<kxAssetItem *> items;
    kxLocalUrlManager::the()->collectItems(url("lib"), Material, items, nullptr, false);

    EXPECT_EQ(items.size(), 2U);
    EXPECT_EQ(ofSmall.opened(), 1);
    EXPECT_EQ(ofLarge.opened(), 1);
}
