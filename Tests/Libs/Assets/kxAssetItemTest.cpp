// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItem.h"

#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxEnvironmentMaterialAssetItem.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxGeometrySceneplateCommon.h"
#include "Assets/kxLocalUrlManager.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxPreviewImageLoader.h"
#include "Assets/kxSceneplateAssetItem.h"
#include "Kernel/kxVersion.h"
#include "LibraryFixture.h"
#include "PlainItem.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/SceneListener.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QLocale>
#include <QPixmap>
#include <QPointer>
#include <QTimer>
#include <QTranslator>

#include <boost/uuid/uuid_io.hpp>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <set>
#include <vector>

namespace {

constexpr const char *Uuid = "0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d";

class kxAssetItemTest : public LibraryFixture
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

    const osg::FCRef<osg::Material> _material = osg::MaterialPtr(osg::UBRDFMaterial::create());
};

/// Answers for itself where subclasses may, and says something else than its fields.
class PosingItem : public PlainItem
{
public:
    PosingItem() : PlainItem(Geometry, Uuid) { setName("field"); }

    std::string uuid() override { return "posed"; }
    std::string name() override { return "Posed"; }
    kxAssetCategoryType category() override { return Sceneplate; }
    QUrl directoryUrl() override { return posedUrl; }
    std::uint32_t checksum() const override { return 7; }
    QDateTime lastModified() override { return QDateTime(QDate(2021, 3, 4), QTime(5, 6)); }

    QUrl posedUrl;
};

/// A back-end whose directories hold two payloads, and which notes how it is asked for them.
class TwoPayloads : public kxLocalUrlManager
{
public:
    bool accepts(const QUrl &place) const override { return place.scheme() == "two"; }
    std::vector<QUrl> files(const QUrl &, const QStringList &nameFilters, QDir::SortFlags sort) override
    {
        filters = nameFilters;
        order = sort;
        return {QUrl("two:/b.osb"), QUrl("two:/a.osb")};
    }
    std::uint32_t checksum(const QUrl &file) const override { return file == QUrl("two:/b.osb") ? 22 : 11; }

    QStringList filters;
    QDir::SortFlags order;
};

QImage redImage()
{
    QImage image(4, 2, QImage::Format_ARGB32);
    image.fill(Qt::red);
    return image;
}

void setUuid(const osg::AttachmentContainerPtr &container, const std::string &uuid)
{
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::createAssetAttachment(container);
    osg::CPEditor edit(attachment, osg::AssetAttachment::UuidFieldMask);
    attachment->setUuid(uuid);
}

/// Notes which fields of an asset attachment change, edit by edit.
class AttachmentListener : public osg::SceneListener
{
public:
    AttachmentListener() { osg::FieldContainerFactory::the().addListener(*this); }
    ~AttachmentListener() override { osg::FieldContainerFactory::the().removeListener(*this); }

    void containerChanged(osg::FieldContainer &container, osg::FieldMask fields) override
    {
        if (container.getType().isDerivedFrom(osg::AssetAttachment::getClassType()))
            changes.push_back(fields);
    }

    std::vector<osg::FieldMask> changes;
};

} // namespace

TEST_F(kxAssetItemTest, BeginsUnnamedAndWithoutCategory)
{
    PlainItem item;

    EXPECT_EQ(item.name(), "unnamed");
    EXPECT_EQ(item.category(), Undefined);
    EXPECT_EQ(item.uuid(), "");
    EXPECT_TRUE(item.directoryUrl().isEmpty());
    EXPECT_TRUE(item.previewImage().isNull());
    EXPECT_FALSE(item.lastModified().isValid());
    EXPECT_EQ(item.getTag(), "unnamed");
}

TEST_F(kxAssetItemTest, CopiesAllItsFields)
{
    PlainItem item(Geometry, Uuid);
    item.setName("Chair");
    item.setDirectoryUrl(url("GEO_Chair"));
    item.setPreviewImage(redImage());
    item.setLastModified(QDateTime(QDate(2020, 2, 29), QTime(12, 30)));

    PlainItem copy(item);
    PlainItem assigned;
    assigned = item;

    for (PlainItem *other : {&copy, &assigned}) {
        EXPECT_EQ(other->uuid(), Uuid);
        EXPECT_EQ(other->category(), Geometry);
        EXPECT_EQ(other->name(), "Chair");
        EXPECT_EQ(other->directoryUrl(), url("GEO_Chair"));
        EXPECT_EQ(other->previewImage(), redImage());
        EXPECT_EQ(other->lastModified(), QDateTime(QDate(2020, 2, 29), QTime(12, 30)));
    }
}

template <class Item> class kxAssetItemCopyTest : public testing::Test
{};

using Subclasses = testing::Types<kxMaterialAssetItem, kxEnvironmentMaterialAssetItem, kxGeometryAssetItem,
                                  kxSceneplateAssetItem, kxEnvironmentNodeAssetItem>;
TYPED_TEST_SUITE(kxAssetItemCopyTest, Subclasses);

TYPED_TEST(kxAssetItemCopyTest, CopiesWhatTheBaseHolds)
{
    kxAssetItemDocument document;
    document.setAssetType(Geometry);
    document.setAssetUUID(Uuid);
    document.setAssetName("Chair");
    TypeParam item;
    item.readMetaData(document);
    item.setDirectoryUrl(QUrl("file:///lib/GEO_Chair"));
    item.setPreviewImage(redImage());
    item.setLastModified(QDateTime(QDate(2020, 2, 29), QTime(12, 30)));

    TypeParam copy(item);
    TypeParam assigned;
    assigned = item;

    for (kxAssetItem *other : {static_cast<kxAssetItem *>(&copy), static_cast<kxAssetItem *>(&assigned)}) {
        EXPECT_EQ(other->uuid(), Uuid);
        EXPECT_EQ(other->category(), Geometry);
        EXPECT_EQ(other->name(), "Chair");
        EXPECT_EQ(other->directoryUrl(), QUrl("file:///lib/GEO_Chair"));
        EXPECT_EQ(other->previewImage(), redImage());
        EXPECT_EQ(other->lastModified(), QDateTime(QDate(2020, 2, 29), QTime(12, 30)));
    }
}

TEST_F(kxAssetItemTest, KnowsItsCategory)
{
    const PlainItem item(Geometry);

    EXPECT_TRUE(item.hasCategory(Geometry));
    EXPECT_FALSE(item.hasCategory(Undefined));
    EXPECT_FALSE(item.hasCategory(Material));
}

TEST_F(kxAssetItemTest, TellsItsCategoryFromItsFieldAlone)
{
    EXPECT_TRUE(PosingItem().hasCategory(Geometry));
    EXPECT_FALSE(PosingItem().hasCategory(Sceneplate));
}

TEST_F(kxAssetItemTest, TagsWithTheNameThatASubclassAnswers)
{
    EXPECT_EQ(PosingItem().getTag(), "Geometry Asset: Posed");
}

TEST_F(kxAssetItemTest, TagsWithPrefixAndName)
{
    PlainItem geometry(Geometry);
    geometry.setName("Chair");
    PlainItem material(Material);
    material.setName("Größe");

    EXPECT_EQ(geometry.getTag(), "Geometry Asset: Chair");
    EXPECT_EQ(material.getTag(), "Größe");
}

TEST_F(kxAssetItemTest, PaintsNoOverlay)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::green);
    const QImage before = pixmap.toImage();

    PlainItem(Material).addOverlayIcon(pixmap);

    EXPECT_EQ(pixmap.toImage(), before);
}

TEST_F(kxAssetItemTest, SharesOnePreviewLoader)
{
    kxPreviewImageLoader *loader = kxAssetItem::getPreviewImageLoader();
    {
        const PlainItem item;
    }

    ASSERT_NE(loader, nullptr);
    EXPECT_EQ(kxAssetItem::getPreviewImageLoader(), loader);
    EXPECT_EQ(loader->parent(), nullptr);
}

TEST_F(kxAssetItemTest, KeepsTheSharedPreviewLoaderWhateverBecomesOfItems)
{
    const QPointer<kxPreviewImageLoader> loader = kxAssetItem::getPreviewImageLoader();
    {
        const PlainItem item;
        PlainItem copy(item);
        copy = item;
        copy.reset();
    }
    kxAssetItemFactory::the().deleteAllItems();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    EXPECT_TRUE(loader);
}

TEST_F(kxAssetItemTest, LeavesTheSharedPreviewLoaderToAProcessThatEnds)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    EXPECT_EXIT(
        {
            QObject::connect(kxAssetItem::getPreviewImageLoader(), &QObject::destroyed, [] { std::_Exit(1); });
            QCoreApplication::instance()->~QCoreApplication(); // as at the end of main()
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(kxAssetItemTest, MakesTheSharedPreviewLoaderWithTheFirstItem)
{
    // Other tests of this process have asked for the loader, so this looks at a fresh one.
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    // There is no preview: reading it at once would say so.
    EXPECT_EXIT(std::_Exit(itemIn(url("missing")).loadPreviewImage(true) ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST_F(kxAssetItemTest, TranslatesInTheContextOfItsClass)
{
    struct ContextTranslator : QTranslator
    {
        QString translate(const char *context, const char *, const char *, int) const override { return context; }
        bool isEmpty() const override { return false; }
    } translator;
    QCoreApplication::installTranslator(&translator);

    const QStringList contexts = {kxAssetItem::tr("x"),
                                  kxMaterialAssetItem::tr("x"),
                                  kxEnvironmentMaterialAssetItem::tr("x"),
                                  kxEnvironmentNodeAssetItem::tr("x"),
                                  kxGeometrySceneplateCommon::tr("x"),
                                  kxGeometryAssetItem::tr("x"),
                                  kxSceneplateAssetItem::tr("x")};
    QCoreApplication::removeTranslator(&translator);

    EXPECT_EQ(contexts, (QStringList{"kxAssetItem", "kxMaterialAssetItem", "kxEnvironmentMaterialAssetItem",
                                     "kxEnvironmentNodeAssetItem", "kxGeometrySceneplateCommon", "kxGeometryAssetItem",
                                     "kxSceneplateAssetItem"}));
}

TEST_F(kxAssetItemTest, ReadsItsIdentityAfterAReset)
{
    PlainItem item(Material, "old");
    item.setDirectoryUrl(url("x"));
    item.setPreviewImage(redImage());
    item.setLastModified(QDateTime(QDate(2020, 2, 29), QTime(12, 30)));
    kxAssetItemDocument document;
    document.setAssetType(Sceneplate);
    document.setAssetUUID(Uuid);
    document.setAssetName("木");

    EXPECT_TRUE(item.readMetaData(document));

    EXPECT_EQ(item.category(), Sceneplate);
    EXPECT_EQ(item.uuid(), Uuid);
    EXPECT_EQ(item.name(), "木");
    EXPECT_TRUE(item.directoryUrl().isEmpty());
    EXPECT_TRUE(item.previewImage().isNull());
    EXPECT_EQ(item.lastModified(), QDateTime(QDate(2020, 2, 29), QTime(12, 30)));
}

TEST_F(kxAssetItemTest, ReadsADocumentThatSaysNothing)
{
    PlainItem item(Material, Uuid);

    EXPECT_TRUE(item.readMetaData(kxAssetItemDocument()));

    EXPECT_EQ(item.category(), Undefined);
    EXPECT_EQ(item.uuid(), "");
    EXPECT_EQ(item.name(), "");
}

TEST_F(kxAssetItemTest, ResetsThroughTheSubclassBeforeReading)
{
    struct ResettingItem : PlainItem
    {
        void reset() override
        {
            ++resets;
            namesBefore.push_back(name());
            PlainItem::reset();
        }
        int resets = 0;
        std::vector<std::string> namesBefore;
    } item;
    item.setName("Before");

    item.readMetaData(kxAssetItemDocument());

    EXPECT_EQ(item.resets, 1);
    EXPECT_EQ(item.namesBefore, std::vector<std::string>{"Before"});
}

TEST_F(kxAssetItemTest, WritesCategoryUuidNameAndVersionInThisOrder)
{
    PlainItem item(Geometry, Uuid);
    item.setName("Tisch & Stuhl");
    kxAssetItemDocument document;

    EXPECT_TRUE(item.writeMetaData(document));

    EXPECT_EQ(document.getQDomDocument().toString(0).toStdString(),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE SARNAsset>\n<item>\n"
              "<category>Geometries</category>\n<uuid>0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d</uuid>\n"
              "<name>Tisch &amp; Stuhl</name>\n<sarnVersion>" +
                  std::string(kxGetVersionString()) + "</sarnVersion>\n</item>\n");
}

TEST_F(kxAssetItemTest, WritesWhatSubclassesAnswer)
{
    struct OtherItem : PlainItem
    {
        std::string uuid() override { return "other uuid"; }
        std::string name() override { return "other name"; }
        kxAssetCategoryType category() override { return Environment; }
    };
    kxAssetItemDocument document;

    OtherItem().writeMetaData(document);

    EXPECT_EQ(document.getAssetUUID(), "other uuid");
    EXPECT_EQ(document.getAssetName(), "other name");
    EXPECT_EQ(document.getAssetType(), Environment);
}

TEST_F(kxAssetItemTest, ForgetsAllButTheTimeWhenReset)
{
    PlainItem item(Geometry, Uuid);
    item.setName("Chair");
    item.setDirectoryUrl(url("GEO_Chair"));
    item.setPreviewImage(redImage());
    item.setLastModified(QDateTime(QDate(2020, 2, 29), QTime(12, 30)));

    item.reset();

    EXPECT_EQ(item.category(), Undefined);
    EXPECT_EQ(item.uuid(), "");
    EXPECT_EQ(item.name(), "unnamed");
    EXPECT_TRUE(item.previewImage().isNull());
    EXPECT_TRUE(item.directoryUrl().isEmpty());
    EXPECT_EQ(item.lastModified(), QDateTime(QDate(2020, 2, 29), QTime(12, 30)));
}

TEST_F(kxAssetItemTest, GeneratesRandomUuidsOfVersionFour)
{
    std::set<std::string> seen;
    for (int i = 0; i < 500; ++i) {
        const std::string uuid = PlainItem::generateUUID();
        ASSERT_EQ(uuid.size(), 36U);
        for (const std::size_t hyphen : {8U, 13U, 18U, 23U})
            EXPECT_EQ(uuid[hyphen], '-') << uuid;
        EXPECT_EQ(uuid[14], '4') << uuid;
        EXPECT_NE(std::string("89ab").find(uuid[19]), std::string::npos) << uuid;
        EXPECT_EQ(uuid.find_first_not_of("0123456789abcdef-"), std::string::npos) << uuid;
        EXPECT_EQ(std::count(uuid.begin(), uuid.end(), '-'), 4) << uuid;
        seen.insert(uuid);
    }
    EXPECT_EQ(seen.size(), 500U);
}

TEST_F(kxAssetItemTest, ParsesUuidsInEitherCase)
{
    const auto lower = PlainItem::getUUIDFromString("0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d");
    const auto upper = PlainItem::getUUIDFromString("0A1B2C3D-4E5F-4A6B-8C7D-9E0F1A2B3C4D");

    const std::vector<int> bytes(lower.begin(), lower.end());
    EXPECT_EQ(bytes, (std::vector<int>{0x0a, 0x1b, 0x2c, 0x3d, 0x4e, 0x5f, 0x4a, 0x6b, 0x8c, 0x7d, 0x9e, 0x0f, 0x1a,
                                       0x2b, 0x3c, 0x4d}));
    EXPECT_EQ(upper, lower);
}

TEST_F(kxAssetItemTest, ParsesItsOwnUuidsBack)
{
    const std::string uuid = PlainItem::generateUUID();

    EXPECT_EQ(boost::uuids::to_string(PlainItem::getUUIDFromString(uuid)), uuid);
}

TEST_F(kxAssetItemTest, ParsesAnythingElseAsNil)
{
    for (const char *text : {"", "no uuid", "0a1b2c3d-4e5f-4a6b-8c7d", "zz1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d"})
        EXPECT_TRUE(PlainItem::getUUIDFromString(text).is_nil()) << text;
}

TEST_F(kxAssetItemTest, TakesTheAttachmentsUuidWhenNoneIsGiven)
{
    PlainItem item;
    setUuid(_material, Uuid);

    item.initUUID(_material, "", true);

    EXPECT_EQ(item.uuid(), Uuid);
}

TEST_F(kxAssetItemTest, PrefersTheGivenUuidToTheAttachments)
{
    PlainItem item;
    setUuid(_material, Uuid);

    item.initUUID(_material, "given", true);

    EXPECT_EQ(item.uuid(), "given");
}

TEST_F(kxAssetItemTest, TakesTheGivenUuidWithoutAnAttachment)
{
    PlainItem item;

    item.initUUID(_material, "given", true);

    EXPECT_EQ(item.uuid(), "given");
}

TEST_F(kxAssetItemTest, MakesAUuidWhenThereIsNone)
{
    PlainItem item(Material, "before");

    item.initUUID(_material, "", true);
    const std::string withoutAttachment = item.uuid();
    EXPECT_FALSE(osg::AssetAttachment::getAssetAttachment(_material)) << "asking for one makes none";
    setUuid(_material, "");
    item.initUUID(_material, "", true);
    const std::string withEmptyAttachment = item.uuid();

    EXPECT_EQ(withoutAttachment.size(), 36U);
    EXPECT_EQ(withEmptyAttachment.size(), 36U);
    EXPECT_NE(withEmptyAttachment, withoutAttachment);
}

TEST_F(kxAssetItemTest, AlwaysMakesAUuidUnlessTheAttachmentMayBeUsed)
{
    PlainItem item;
    setUuid(_material, Uuid);

    item.initUUID(_material, "given", false);
    const std::string withContainer = item.uuid();
    item.initUUID(nullptr, "given", true);
    const std::string withoutContainer = item.uuid();

    EXPECT_EQ(withContainer.size(), 36U);
    EXPECT_NE(withContainer, Uuid);
    EXPECT_EQ(withoutContainer.size(), 36U);
    EXPECT_NE(withoutContainer, withContainer) << "the former one is forgotten";
}

TEST_F(kxAssetItemTest, StampsNothingOntoNull)
{
    EXPECT_FALSE(PlainItem().updateAssetAttachment(nullptr));
}

TEST_F(kxAssetItemTest, StampsItselfOntoAnObject)
{
    writeFile("MAT_a b#ü/payload.osb", "123456789");
    PlainItem item(Material, Uuid);
    item.setDirectoryUrl(url("MAT_a b#ü"));

    const osg::AssetAttachmentPtr attachment = item.updateAssetAttachment(_material);

    ASSERT_TRUE(attachment);
    EXPECT_EQ(attachment, osg::AssetAttachment::getAssetAttachment(_material));
    EXPECT_EQ(attachment->getUuid(), Uuid);
    EXPECT_EQ(attachment->getCategory(), "Materials");
    EXPECT_EQ(attachment->getUrl(), "file://" + _folder.string() + "/MAT_a b%23ü");
    EXPECT_EQ(attachment->getChecksum(), 0xCBF43926U);
    EXPECT_FALSE(attachment->getUserEdited());
}

TEST_F(kxAssetItemTest, StampsFieldByFieldInOrder)
{
    using Attachment = osg::AssetAttachment;
    writeFile("MAT_x/payload.osb", "123456789");
    const PlainItem prepared = itemIn(url("MAT_x"));
    PlainItem item(prepared);
    const osg::AssetAttachmentPtr attachment = Attachment::createAssetAttachment(_material);
    {
        osg::CPEditor edit(attachment, Attachment::UserEditedFieldMask);
        attachment->setUserEdited(true);
    }
    const AttachmentListener listener;

    EXPECT_EQ(item.updateAssetAttachment(_material), attachment);

    EXPECT_EQ(listener.changes, (std::vector<osg::FieldMask>{Attachment::UuidFieldMask, Attachment::CategoryFieldMask,
                                                             Attachment::UrlFieldMask, Attachment::ChecksumFieldMask,
                                                             Attachment::UserEditedFieldMask}));
    EXPECT_FALSE(attachment->getUserEdited());
}

TEST_F(kxAssetItemTest, StampsThePlaceAndChecksumThatASubclassAnswers)
{
    PosingItem item;
    item.posedUrl = QUrl("file:///lib/SCP_x");

    const osg::AssetAttachmentPtr attachment = item.updateAssetAttachment(_material);

    ASSERT_TRUE(attachment);
    EXPECT_EQ(attachment->getUrl(), "file:///lib/SCP_x");
    EXPECT_EQ(attachment->getChecksum(), 7U);
    EXPECT_TRUE(item.hasSameChecksum(_material));
}

TEST_F(kxAssetItemTest, HasTheChecksumOfItsPayload)
{
    writeFile("MAT_x/payload.osb", "123456789");
    writeFile("MAT_x/payload.png", "other");

    EXPECT_EQ(itemIn(url("MAT_x")).checksum(), 0xCBF43926U);
}

TEST_F(kxAssetItemTest, HasTheChecksumOfTheFirstPayloadAsTheBackEndListsThem)
{
    static TwoPayloads place;
    kxUrlManager::registerManager(&place);
    place.order = QDir::Name;

    EXPECT_EQ(itemIn(QUrl("two:/x")).checksum(), 22U);

    EXPECT_EQ(place.filters, QStringList("*.osb"));
    EXPECT_EQ(place.order, QDir::SortFlags(QDir::NoSort));
}

TEST_F(kxAssetItemTest, HasNoChecksumWithoutPayloadOrBackEnd)
{
    writeFile("MAT_x/payload.png", "123456789");

    EXPECT_EQ(itemIn(url("MAT_x")).checksum(), 0U);
    EXPECT_EQ(itemIn(url("missing")).checksum(), 0U);
    EXPECT_EQ(itemIn(QUrl("nobody://x/y")).checksum(), 0U);
    EXPECT_EQ(PlainItem().checksum(), 0U);
}

TEST_F(kxAssetItemTest, ComparesTheStoredChecksumWithTheAttachments)
{
    writeFile("MAT_x/payload.osb", "123456789");
    PlainItem item = itemIn(url("MAT_x"));
    item.updateAssetAttachment(_material);
    EXPECT_TRUE(item.hasSameChecksum(_material));

    writeFile("MAT_x/payload.osb", "123456780");
    EXPECT_FALSE(item.hasSameChecksum(_material));
}

TEST_F(kxAssetItemTest, ComparesNoChecksumOfWhatIsNoAsset)
{
    const PlainItem item = itemIn(url("missing"));

    EXPECT_FALSE(item.hasSameChecksum(nullptr));
    EXPECT_FALSE(item.hasSameChecksum(_material));

    // An attachment without a checksum is the same as an asset without a payload.
    setUuid(_material, Uuid);
    EXPECT_TRUE(item.hasSameChecksum(_material));
}

TEST_F(kxAssetItemTest, ShowsItsColumns)
{
    writeAsset("lib/MAT_x", "");
    PlainItem item = itemIn(url("lib/MAT_x"), "Größe");
    const QDateTime time(QDate(2020, 2, 29), QTime(12, 30));
    item.setLastModified(time);

    for (const int role : {0, 2, 3}) {
        EXPECT_EQ(item.data(0, role), QVariant(QString::fromUtf8("Größe")));
        EXPECT_EQ(item.data(2, role), QVariant(QLocale().toString(time, QLocale::ShortFormat)));
        EXPECT_EQ(item.data(3, role), QVariant(QString::fromStdString(_folder.file("lib"))));
        EXPECT_FALSE(item.data(1, role).isValid());
        EXPECT_FALSE(item.data(4, role).isValid());
        EXPECT_FALSE(item.data(-1, role).isValid());
    }
}

TEST_F(kxAssetItemTest, ShowsTheShortDateOfTheDefaultLocale)
{
    PlainItem item;
    item.setLastModified(QDateTime(QDate(2020, 2, 29), QTime(12, 30)));
    const QLocale former;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));

    const QVariant text = item.data(2, 0);
    QLocale::setDefault(former);

    EXPECT_EQ(text, QVariant("29.02.20 12:30"));
}

TEST_F(kxAssetItemTest, ShowsAnEmptyTextWithoutATime)
{
    EXPECT_EQ(PlainItem().data(2, 0), QVariant(QString("")));
}

TEST_F(kxAssetItemTest, ShowsNothingForOtherRoles)
{
    PlainItem item = itemIn(url("MAT_x"));

    for (const int role : {1, 4, 6, -1, 0x100})
        for (int column = 0; column < 5; ++column)
            EXPECT_FALSE(item.data(column, role).isValid()) << column << " " << role;
}

TEST_F(kxAssetItemTest, ShowsNoPlaceWithoutABackEnd)
{
    EXPECT_FALSE(itemIn(QUrl("nobody://x/y")).data(3, 0).isValid());
    EXPECT_FALSE(PlainItem().data(3, 0).isValid());
}

TEST_F(kxAssetItemTest, SortsDatesByTimeAndTheRestByText)
{
    PlainItem item = itemIn(url("lib/MAT_x"), "Name");
    const QDateTime time(QDate(2020, 2, 29), QTime(12, 30));
    item.setLastModified(time);

    EXPECT_EQ(item.sortData(2), QVariant(time));
    EXPECT_EQ(item.sortData(0), QVariant("Name"));
    EXPECT_EQ(item.sortData(3), QVariant(QString::fromStdString(_folder.file("lib"))));
    EXPECT_FALSE(item.sortData(1).isValid());
    EXPECT_EQ(PlainItem().sortData(2), QVariant(QDateTime()));
}

TEST_F(kxAssetItemTest, SortsByWhatTheSubclassDisplays)
{
    struct TypedItem : PlainItem
    {
        QVariant data(int column, int role) override { return QString("%1/%2").arg(column).arg(role); }
    };

    EXPECT_EQ(TypedItem().sortData(1), QVariant("1/0"));
}

TEST_F(kxAssetItemTest, ShowsTheTimeThatASubclassAnswersAndSortsByItsOwn)
{
    PosingItem item;
    const QDateTime time(QDate(2020, 2, 29), QTime(12, 30));
    item.setLastModified(time);

    EXPECT_EQ(item.data(2, 0), QVariant(QLocale().toString(item.lastModified(), QLocale::ShortFormat)));
    EXPECT_EQ(item.sortData(2), QVariant(time));
}

TEST_F(kxAssetItemTest, KnowsTheFolderThatHoldsItsDirectory)
{
    EXPECT_EQ(itemIn(url("lib/MAT_x")).parentDirectoryUrl(), url("lib"));
    EXPECT_EQ(itemIn(QUrl("nobody://x/y")).parentDirectoryUrl(), QUrl());
    EXPECT_EQ(PlainItem().parentDirectoryUrl(), QUrl());
}

TEST_F(kxAssetItemTest, HasAValidPlaceWhereItsAssetIs)
{
    const QUrl directory = writeAsset("GEO_x", "<category>Geometries</category><uuid>" + std::string(Uuid) + "</uuid>");
    PlainItem item(Geometry, Uuid);
    item.setDirectoryUrl(directory);
    PlainItem otherCategory(Sceneplate, Uuid);
    otherCategory.setDirectoryUrl(directory);
    PlainItem otherUuid(Geometry, "other");
    otherUuid.setDirectoryUrl(directory);

    EXPECT_TRUE(item.hasValidSaveLocation());
    EXPECT_FALSE(otherCategory.hasValidSaveLocation());
    EXPECT_FALSE(otherUuid.hasValidSaveLocation());
    EXPECT_FALSE(itemIn(url("missing")).hasValidSaveLocation());
    EXPECT_FALSE(PlainItem(Geometry, Uuid).hasValidSaveLocation());
}

TEST_F(kxAssetItemTest, LooksForItsPlaceByWhatASubclassAnswers)
{
    PosingItem item;
    item.posedUrl = writeAsset("lib/SCP_x", "<category>Sceneplates</category><uuid>posed</uuid>");

    EXPECT_EQ(item.parentDirectoryUrl(), url("lib"));
    EXPECT_TRUE(item.hasValidSaveLocation());
}

TEST_F(kxAssetItemTest, NeedsNoLoadingForAPreviewItHas)
{
    PlainItem item;
    item.setPreviewImage(redImage());

    EXPECT_TRUE(item.loadPreviewImage(false));
    EXPECT_TRUE(item.loadPreviewImage(true));
    EXPECT_EQ(item.previewImage(), redImage());
}

TEST_F(kxAssetItemTest, LoadsNoPreviewFromNowhere)
{
    for (const bool asynchronous : {false, true}) {
        EXPECT_FALSE(PlainItem().loadPreviewImage(asynchronous));
        EXPECT_FALSE(itemIn(QUrl("nobody://x")).loadPreviewImage(asynchronous));
    }
    EXPECT_FALSE(itemIn(url("missing")).loadPreviewImage(false));
}

TEST_F(kxAssetItemTest, LoadsItsPreviewAtOnce)
{
    PlainItem item = itemIn(writeNamed(""));
    ASSERT_TRUE(redImage().save(QString::fromStdString(_folder.file("MAT_x/asset.png"))));

    EXPECT_TRUE(item.loadPreviewImage(false));

    EXPECT_EQ(item.previewImage().size(), QSize(4, 2));
    EXPECT_EQ(item.previewImage().pixelColor(3, 1), QColor(Qt::red));
}

TEST_F(kxAssetItemTest, HasItsPreviewAnnouncedByTheSharedLoader)
{
    PlainItem item = itemIn(writeNamed(""));
    ASSERT_TRUE(redImage().save(QString::fromStdString(_folder.file("MAT_x/asset.png"))));
    QEventLoop waiting;
    QUrl directory;
    std::unique_ptr<QImage> preview;
    QObject::connect(kxAssetItem::getPreviewImageLoader(), &kxPreviewImageLoader::previewLoaded, &waiting,
                     [&](const QUrl &loaded, QImage *image) {
                         directory = loaded;
                         preview.reset(image);
                         waiting.quit();
                     });
    QTimer::singleShot(10000, &waiting, &QEventLoop::quit);

    EXPECT_TRUE(item.loadPreviewImage(true));
    EXPECT_TRUE(item.previewImage().isNull()) << "whoever receives it hands it over";
    waiting.exec();

    EXPECT_EQ(directory, url("MAT_x"));
    ASSERT_TRUE(preview);
    EXPECT_EQ(preview->size(), QSize(4, 2));
}
