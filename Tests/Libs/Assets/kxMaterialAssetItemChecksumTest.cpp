// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxEnvironmentMaterialAssetItem.h"
#include "Assets/kxMaterialAssetItem.h"
#include "LibraryFixture.h"
#include "TestUrlManager.h"

#include <QDomDocument>

namespace {

class kxMaterialAssetItemChecksumTest : public LibraryFixture
{};

/// Lists the files that it was given, whatever it is asked for, and notes what that was.
class ListingManager : public TestUrlManager
{
public:
    bool accepts(const QUrl &url) const override { return url.scheme() == QLatin1String("listing"); }
    std::vector<QUrl> files(const QUrl &, const QStringList &nameFilters, QDir::SortFlags sort) override
    {
        filters = nameFilters;
        order = sort;
        return nameFilters.contains(QStringLiteral("*.xml")) ? described : listed;
    }
    bool loadDocumentFromFile(const QUrl &, QDomDocument &document) const override
    {
        documentName = document.doctype().name();
        return document.setContent(QByteArray("<item><material/></item>"));
    }

    std::vector<QUrl> listed;
    std::vector<QUrl> described;
    mutable QString documentName;
    QStringList filters;
    QDir::SortFlags order = QDir::Name;
};

/// One for the process, as it can never be taken out of the registry.
ListingManager &listing()
{
    static ListingManager manager;
    return manager;
}

} // namespace

TEST_F(kxMaterialAssetItemChecksumTest, HasTheChecksumOfItsPayload)
{
    writeAsset("MAT_x", "<material><type>UBRDFMaterial</type></material>");
    writeFile("MAT_x/x.osb", "123456789");
    kxMaterialAssetItem item;
    item.setDirectoryUrl(url("MAT_x"));

    EXPECT_EQ(item.checksum(), 0xCBF43926U);
}

TEST_F(kxMaterialAssetItemChecksumTest, HasTheChecksumOfItsDescriptionWithoutAPayload)
{
    writeAsset("MAT_x", "<name>x</name><material><type>SwitchMaterial</type><tags>Öl</tags></material>");
    kxMaterialAssetItem item;
    item.setDirectoryUrl(url("MAT_x"));

    // Of "  <material>\n    <type>SwitchMaterial</type>\n    <tags>Öl</tags>\n  </material>\n".
    EXPECT_EQ(item.checksum(), 0x1E2E7974U);
}

TEST_F(kxMaterialAssetItemChecksumTest, HasAChecksumThatDependsOnTheDescriptionOnly)
{
    kxMaterialAssetItem item;
    item.setDirectoryUrl(writeAsset("MAT_x", "<name>x</name><material><choice>1</choice></material>"));
    const std::uint32_t checksum = item.checksum();

    writeAsset("MAT_x", "<material>  <choice>1</choice></material><name>other</name><material/>");
    EXPECT_EQ(item.checksum(), checksum);
    writeAsset("MAT_x", "<name>x</name><material><choice>2</choice></material>");
    EXPECT_NE(item.checksum(), checksum);
}

TEST_F(kxMaterialAssetItemChecksumTest, HasNoChecksumWithoutPayloadAndDescription)
{
    kxMaterialAssetItem item;
    EXPECT_EQ(item.checksum(), 0U);
    item.setDirectoryUrl(QUrl("nobody://x"));
    EXPECT_EQ(item.checksum(), 0U);
    item.setDirectoryUrl(url("missing"));
    EXPECT_EQ(item.checksum(), 0U);

    item.setDirectoryUrl(writeAsset("MAT_x", "<name>x</name><group><material/></group>"));
    EXPECT_EQ(item.checksum(), 0U);
}

TEST_F(kxMaterialAssetItemChecksumTest, IsThatOfTheFirstPayloadInTheOrderOfTheBackEnd)
{
    kxUrlManager::registerManager(&listing());
    listing().write("/b.osb", "12345");
    listing().write("/a.osb", "1");
    listing().listed = {QUrl("listing:/b.osb"), QUrl("listing:/a.osb")};
    kxMaterialAssetItem item;
    item.setDirectoryUrl(QUrl("listing:/"));

    EXPECT_EQ(item.checksum(), 5U) << "the length, for this back-end";

    EXPECT_EQ(listing().filters, QStringList{"*.osb"});
    EXPECT_EQ(listing().order, QDir::NoSort);
}

TEST_F(kxMaterialAssetItemChecksumTest, HasItsDescriptionReadIntoADocumentOfThatName)
{
    kxUrlManager::registerManager(&listing());
    listing().listed.clear();
    listing().described = {QUrl("listing:/MAT_x/x.xml")};
    kxMaterialAssetItem item;
    item.setDirectoryUrl(QUrl("listing:/MAT_x"));

    EXPECT_NE(item.checksum(), 0U);

    EXPECT_EQ(listing().documentName, "document");
}
