// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxMaterialAssetItem.h"

#include "Assets/kxAssetItemDocument.h"
#include "ChangeListener.h"
#include "EditWatch.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxRaytracingManager.h"
#include "Kernel/kxRaytracingUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxVersion.h"
#include "MaterialFixture.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/TagAttachment.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "Support/CapturedOutput.h"

#include <QTextStream>

#include <memory>
#include <type_traits>

namespace {

constexpr const char *Uuid = "0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d";

class kxMaterialAssetItemTest : public MaterialFixture
{
protected:
    static void photometric(bool isInForce) { kxRaytracingManager::getRaytracingUtils().setPhotometric(isInForce); }

    static kxMaterialAssetItem itemOf(const osg::MaterialPtr &material, const std::string &uuid = Uuid)
    {
        kxMaterialAssetItem item;
        item.initFrom(material, uuid, true);
        return item;
    }

    /// What the material is described as, its root alone.
    static std::string described(const kxMaterialAssetItem &item)
    {
        kxAssetItemDocument document;
        EXPECT_TRUE(item.writeMetaData(document));
        const QDomElement root = document.getQDomDocument().documentElement();
        QString text;
        QTextStream stream(&text);
        root.firstChildElement("material").save(stream, 0);
        return text.remove('\n').toStdString();
    }
};

} // namespace

TEST_F(kxMaterialAssetItemTest, NumbersThePhotometricStates)
{
    EXPECT_EQ(static_cast<int>(Unknown), -1);
    EXPECT_EQ(static_cast<int>(NonPhotometric), 0);
    EXPECT_EQ(static_cast<int>(Photometric), 1);
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<kxAssetPhotometricState>, int>));
}

TEST_F(kxMaterialAssetItemTest, BeginsAsAMaterialWithoutOne)
{
    kxMaterialAssetItem item;

    EXPECT_EQ(item.category(), Material);
    EXPECT_EQ(item.name(), "unnamed");
    EXPECT_FALSE(item.getMaterial());
    EXPECT_EQ(item.materialType(), nullptr);
    EXPECT_EQ(item.materialTypeName(), "");
    EXPECT_TRUE(item.subMaterialUUIDs().empty());
    EXPECT_EQ(item.switchChoice(), -1);
    EXPECT_EQ(item.getPhotometricState(), Unknown);
    EXPECT_EQ(item.getExpectedPhotometricState(), Unknown);
    EXPECT_FALSE(item.getOsgImage());
    EXPECT_EQ(item.data(4, 0), QVariant(QString("")));
}

TEST_F(kxMaterialAssetItemTest, IsDraggedAsAMaterial)
{
    EXPECT_EQ(kxMaterialAssetItem().mimeType(), "application/sarn-material-asset");
}

TEST_F(kxMaterialAssetItemTest, StandsForTheMaterialItWasMadeOf)
{
    const Owned material = makeSurface("Lack größer");

    kxMaterialAssetItem item = itemOf(material);

    EXPECT_EQ(item.getMaterial(), material.get());
    EXPECT_EQ(item.materialType(), &osg::UBRDFMaterial::getClassType());
    EXPECT_EQ(item.materialTypeName(), "UBRDFMaterial");
    EXPECT_EQ(item.name(), "Lack größer");
    EXPECT_EQ(item.uuid(), Uuid);
    EXPECT_EQ(item.category(), Material);
    EXPECT_EQ(item.switchChoice(), -1);
}

TEST_F(kxMaterialAssetItemTest, TakesTheUuidFromTheAttachmentOnRequest)
{
    const Owned material = makeSurface("x");
    makeAsset(material, "attached");
    kxMaterialAssetItem item;

    item.initFrom(material, "", true);
    EXPECT_EQ(item.uuid(), "attached");
    item.initFrom(material, "given", true);
    EXPECT_EQ(item.uuid(), "given");
    item.initFrom(material, "given", false);
    EXPECT_EQ(item.uuid().size(), 36U);
}

TEST_F(kxMaterialAssetItemTest, IsOnlyResetByWhatIsNoMaterial)
{
    const Owned material = makeSurface("x");
    const osg::FCRef<osg::NodeCore> noMaterial = osg::NodeCorePtr(osg::Group::create());
    kxMaterialAssetItem item = itemOf(material);
    item.setExpectedPhotometricState(Photometric);
    _host.previewRequests.clear();

    item.initFrom(noMaterial, "given", true);

    EXPECT_EQ(item.uuid(), "");
    EXPECT_EQ(item.name(), "unnamed");
    EXPECT_EQ(item.category(), Material);
    EXPECT_FALSE(item.getMaterial());
    EXPECT_EQ(item.materialType(), nullptr);
    EXPECT_EQ(item.getExpectedPhotometricState(), Unknown);
    EXPECT_EQ(material->getRefCount(), 1);
    EXPECT_EQ(noMaterial->getRefCount(), 1);

    item = itemOf(material);
    _host.previewRequests.clear();
    item.initFrom(nullptr, "given", true);
    EXPECT_EQ(item.uuid(), "");
    EXPECT_TRUE(_host.previewRequests.empty());
}

TEST_F(kxMaterialAssetItemTest, ResetsItsWholeDescription)
{
    const Owned part = makeSurface("p");
    makeAsset(part, "u1");
    const Owned choices = makeSwitch("s", {part}, 0);
    setTags(choices, {"a"});
    kxMaterialAssetItem item = itemOf(choices);
    kxAssetItemDocument document;
    ASSERT_TRUE(item.writeMetaData(document));
    document.setHasPhotometricProperties(true);
    ASSERT_TRUE(item.readMetaData(document));
    ASSERT_EQ(item.subMaterialUUIDs().size(), 1U);

    item.initFrom(nullptr, "given", true);

    EXPECT_TRUE(item.subMaterialUUIDs().empty());
    EXPECT_EQ(item.switchChoice(), -1);
    EXPECT_EQ(item.data(4, 0), QVariant(QString("")));
    EXPECT_EQ(item.getPhotometricState(), Unknown);
    EXPECT_EQ(item.materialTypeName(), "");
}

TEST_F(kxMaterialAssetItemTest, ReadsThePartsOfEachMaterialItIsMadeOfAnew)
{
    const Owned part = makeSurface("p");
    makeAsset(part, "u1");
    const Owned passes = makeMultiPass("m", {part});
    kxMaterialAssetItem item = itemOf(passes);

    item.initFrom(passes, Uuid, true);

    EXPECT_EQ(item.subMaterialUUIDs(), std::vector<std::string>{"u1"});
}

TEST_F(kxMaterialAssetItemTest, ReadsTheTagsOfItsMaterialAndPrintsThem)
{
    const Owned material = makeSurface("x");
    setTags(material, {"wood", "Geometry Asset: Chair", "Öl", "\"Red\"", "Scene"});
    kxMaterialAssetItem item;
    kxtest::CapturedOutput output;

    item.initFrom(material, Uuid, true);

    EXPECT_EQ(output.text(), "item tag 0: Red\nitem tag 1: wood\nitem tag 2: Öl\n");
    EXPECT_EQ(item.data(4, 0), QVariant(QString::fromUtf8("Red, wood, Öl")));
}

TEST_F(kxMaterialAssetItemTest, PrintsNoTagsWithoutAny)
{
    const Owned material = makeSurface("x");
    kxtest::CapturedOutput output;
    const auto item = std::make_unique<kxMaterialAssetItem>();

    item->initFrom(material, Uuid, true);
    setTags(material, {});
    item->initFrom(material, Uuid, true);

    EXPECT_EQ(output.text(), "");
}

TEST_F(kxMaterialAssetItemTest, ReadsTheUuidsOfSubMaterials)
{
    const Owned asset = makeSurface("a");
    makeAsset(asset, "u1");
    const Owned plain = makeSurface("b");

    const kxMaterialAssetItem item = itemOf(makeMultiPass("m", {asset, plain, asset}));

    EXPECT_EQ(item.subMaterialUUIDs(), (std::vector<std::string>{"u1", "", "u1"}));
    EXPECT_EQ(item.switchChoice(), -1);
}

TEST_F(kxMaterialAssetItemTest, ReadsTheChoiceOfASwitch)
{
    const kxMaterialAssetItem item = itemOf(makeSwitch("s", {makeSurface("a"), makeSurface("b")}, 1));

    EXPECT_EQ(item.switchChoice(), 1);
    EXPECT_EQ(item.subMaterialUUIDs(), (std::vector<std::string>{"", ""}));
}

TEST_F(kxMaterialAssetItemTest, PutsEnvironmentMaterialsIntoTheirCategory)
{
    EXPECT_EQ(itemOf(makeSky("Sky")).category(), Environment);
    // A switch of environments is no environment material.
    const Owned choices = named(osg::UEnvironmentSwitchMaterial::create(), "s");
    EXPECT_EQ(itemOf(choices).category(), Material);
}

TEST_F(kxMaterialAssetItemTest, KnowsWhetherLightIsPhotometric)
{
    const Owned glowing = makeSurface("x");
    setGlow(glowing, {1, 1, 1, 0.25F});

    photometric(false);
    EXPECT_EQ(itemOf(glowing).getPhotometricState(), NonPhotometric);
    photometric(true);
    EXPECT_EQ(itemOf(glowing).getPhotometricState(), Photometric);
}

TEST_F(kxMaterialAssetItemTest, KnowsNoPhotometricStateWithoutLight)
{
    photometric(true);
    const Owned dark = makeSurface("x");
    setGlow(dark, {1, 1, 1, 0});

    EXPECT_EQ(itemOf(dark).getPhotometricState(), Unknown);
    EXPECT_EQ(itemOf(makeSky("Sky")).getPhotometricState(), Unknown);
    EXPECT_EQ(described(itemOf(dark)).find("photometric"), std::string::npos);
}

TEST_F(kxMaterialAssetItemTest, CountsAnyIntensityButZero)
{
    const Owned glowing = makeSurface("x");
    setGlow(glowing, {0, 0, 0, -1e-30F});

    EXPECT_EQ(itemOf(glowing).getPhotometricState(), NonPhotometric);
}

TEST_F(kxMaterialAssetItemTest, HoldsOneReferenceUntilItIsGone)
{
    const Owned material = makeSurface("x");
    ASSERT_EQ(material->getRefCount(), 1);
    {
        const kxMaterialAssetItem item = itemOf(material);
        EXPECT_EQ(material->getRefCount(), 2);
    }
    EXPECT_EQ(material->getRefCount(), 1);
}

TEST_F(kxMaterialAssetItemTest, SaysHowManyReferencesThereAreWhenItGoes)
{
    const Owned material = makeSurface("x");
    auto item = std::make_unique<kxMaterialAssetItem>();
    item->initFrom(material, Uuid, true);
    kxtest::CapturedOutput output;

    item.reset();

    EXPECT_EQ(output.text(), "[~kxMaterialAssetItem] mat ref count = 2\n");
}

TEST_F(kxMaterialAssetItemTest, SaysNothingWhenItGoesWithoutAMaterial)
{
    kxtest::CapturedOutput output;
    {
        const kxMaterialAssetItem item;
    }
    EXPECT_EQ(output.text(), "");
}

TEST_F(kxMaterialAssetItemTest, ReleasesItsReferenceOnceHoweverOftenItIsAsked)
{
    const Owned material = makeSurface("x");
    {
        kxMaterialAssetItem item = itemOf(material);
        item.invalidateMaterial();
        EXPECT_EQ(material->getRefCount(), 1);
        EXPECT_EQ(item.getMaterial(), material.get()) << "the id is kept";
        item.invalidateMaterial();
        item.readMetaData(kxAssetItemDocument());
        EXPECT_EQ(material->getRefCount(), 1);
        EXPECT_FALSE(item.getMaterial());
    }
    EXPECT_EQ(material->getRefCount(), 1);
}

TEST_F(kxMaterialAssetItemTest, ReleasesNothingMoreAfterInvalidation)
{
    const Owned material = makeSurface("x");
    auto item = std::make_unique<kxMaterialAssetItem>();
    item->initFrom(material, Uuid, true);
    item->invalidateMaterial();
    kxtest::CapturedOutput output;

    item.reset();

    EXPECT_EQ(output.text(), "[~kxMaterialAssetItem] mat ref count = 1\n");
    EXPECT_EQ(material->getRefCount(), 1);
}

TEST_F(kxMaterialAssetItemTest, KeepsAReferenceForEachCopy)
{
    const Owned material = makeSurface("x");
    const kxMaterialAssetItem original = itemOf(material);
    {
        kxMaterialAssetItem copy(original);
        kxMaterialAssetItem assigned;
        assigned = copy;
        EXPECT_EQ(material->getRefCount(), 4);
        EXPECT_EQ(assigned.getMaterial(), material.get());
        copy.invalidateMaterial();
        EXPECT_EQ(material->getRefCount(), 3);
    }
    EXPECT_EQ(material->getRefCount(), 2);
}

TEST_F(kxMaterialAssetItemTest, ReadsAMaterialThatIsGoneAsNull)
{
    Owned material = makeSurface("x");
    const auto id = material.get().getFieldContainerId();
    kxMaterialAssetItem item = itemOf(material);
    item.invalidateMaterial();

    material.reset();

    EXPECT_FALSE(osg::FieldContainerFactory::the().isAlive(id));
    EXPECT_FALSE(item.getMaterial());
    EXPECT_FALSE(item.getOsgImage());
}

TEST_F(kxMaterialAssetItemTest, KeepsTheMaterialAliveWhenItIsMadeOfItsOwn)
{
    kxMaterialAssetItem item = itemOf(makeSurface("x"));
    const osg::MaterialPtr material = item.getMaterial();

    item.initFrom(material, "again", true);

    EXPECT_EQ(item.getMaterial(), material);
    EXPECT_EQ(material->getRefCount(), 1);
    EXPECT_EQ(item.name(), "x");
}

TEST_F(kxMaterialAssetItemTest, TakesOffTheTagsOfPlacedAssets)
{
    const Owned material = makeSurface("x");
    setTags(material, {"Geometry Asset: Chair", "wood", "Scene", "Environment Asset: ", "Sceneplate Asset: Logo",
                       "geometry Asset: x", "my Geometry Asset: y", "Material Asset: z"});

    kxMaterialAssetItem::removeSpecialAssetTagsFrom(material);

    EXPECT_EQ(tagsOf(material), (std::vector<std::string>{"wood", "Scene", "geometry Asset: x", "my Geometry Asset: y",
                                                          "Material Asset: z"}));
}

TEST_F(kxMaterialAssetItemTest, TakesAllTagsOffInOneEdit)
{
    const Owned material = makeSurface("x");
    setTags(material, {"Geometry Asset: Chair", "Environment Asset: Sky", "wood"});
    std::vector<osg::FieldMask> edits;
    const ChangeListener listener(osg::TagAttachment::getClassType(),
                                  [&edits](osg::FieldMask fields) { edits.push_back(fields); });
    EditWatch watch;

    kxMaterialAssetItem::removeSpecialAssetTagsFrom(material);

    EXPECT_EQ(edits, std::vector{osg::TagAttachment::MaterialsFieldMask});
    EXPECT_EQ(watch.take(), std::vector<std::string>{"TagAttachment Materials"}) << "it names no other field";
}

TEST_F(kxMaterialAssetItemTest, TakesNoTagsOffWhatHasNone)
{
    const Owned material = makeSurface("x");

    kxMaterialAssetItem::removeSpecialAssetTagsFrom(material);
    kxMaterialAssetItem::removeSpecialAssetTagsFrom(nullptr);

    EXPECT_FALSE(osg::findAttachment<osg::TagAttachment>(material));
}

TEST_F(kxMaterialAssetItemTest, FindsTheSceneMaterialAndComparesIt)
{
    const Owned material = makeSurface("x");
    kxMaterialAssetItem item = itemOf(material);
    item.setDirectoryUrl(url("MAT_x"));
    osg::MaterialPtr found = material;
    EXPECT_FALSE(kxMaterialAssetItem::findMaterialAndCompareChecksum(&item, found));
    EXPECT_FALSE(found) << "it is not in the scene";

    kxScenegraph::addToMaterialPool(material);
    makeAsset(material, Uuid);
    EXPECT_TRUE(kxMaterialAssetItem::findMaterialAndCompareChecksum(&item, found));
    EXPECT_EQ(found, material.get());

    writeFile("MAT_x/x.osb", "123456789");
    found = nullptr;
    EXPECT_FALSE(kxMaterialAssetItem::findMaterialAndCompareChecksum(&item, found));
    EXPECT_EQ(found, material.get()) << "handed out although it differs";
}

TEST_F(kxMaterialAssetItemTest, ShowsTypeTagsAndTheColumnsOfTheBase)
{
    const Owned material = makeSurface("Name");
    setTags(material, {"b", "a"});
    kxMaterialAssetItem item = itemOf(material);
    item.setDirectoryUrl(url("lib/MAT_x"));

    for (const int role : {0, 3}) {
        EXPECT_EQ(item.data(0, role), QVariant("Name"));
        EXPECT_EQ(item.data(1, role), QVariant("Surface"));
        EXPECT_EQ(item.data(2, role), QVariant(QString("")));
        EXPECT_EQ(item.data(3, role), QVariant(QString::fromStdString(_folder.file("lib"))));
        EXPECT_EQ(item.data(4, role), QVariant("a, b"));
        EXPECT_FALSE(item.data(5, role).isValid());
    }
}

TEST_F(kxMaterialAssetItemTest, ShowsNothingForOtherRolesInAnyColumn)
{
    kxMaterialAssetItem item = itemOf(makeSurface("Name"));

    for (const int role : {1, 2, 4, -1})
        for (int column = 0; column < 5; ++column)
            EXPECT_FALSE(item.data(column, role).isValid()) << column << " " << role;
}

TEST_F(kxMaterialAssetItemTest, ShowsUnknownTypesAsTheyAre)
{
    EXPECT_EQ(kxMaterialAssetItem::UIMaterialTypeName("UBRDFMaterial"), "Surface");
    EXPECT_EQ(kxMaterialAssetItem::UIMaterialTypeName("Größe"), QString::fromUtf8("Größe"));
    EXPECT_EQ(kxMaterialAssetItem::UIMaterialTypeName(""), "");
}

TEST_F(kxMaterialAssetItemTest, ReadsItsDescription)
{
    kxAssetItemDocument document;
    document.setAssetType(Material);
    document.setAssetUUID(Uuid);
    document.setAssetName("Lack");
    document.setMaterialType(osg::SwitchMaterial::getClassType());
    document.setMaterialTags("b, a");
    document.setSwitchMaterialChoice(2);
    document.setMaterialBRDFEnvironmentName("Sky");
    document.setHasPhotometricProperties(true);
    const Owned part = makeSurface("p");
    makeAsset(part, "u1");
    document.setSubMaterialAssets(osg::MField<osg::MaterialPtr>{part});
    kxMaterialAssetItem item = itemOf(makeSurface("before"));

    EXPECT_TRUE(item.readMetaData(document));

    EXPECT_EQ(item.uuid(), Uuid);
    EXPECT_EQ(item.name(), "Lack");
    EXPECT_EQ(item.materialType(), &osg::SwitchMaterial::getClassType());
    EXPECT_EQ(item.data(4, 0), QVariant("a, b"));
    EXPECT_EQ(item.switchChoice(), 2);
    EXPECT_EQ(item.getPhotometricState(), Photometric);
    EXPECT_EQ(item.subMaterialUUIDs(), std::vector<std::string>{"u1"});
    EXPECT_FALSE(item.getMaterial());
}

TEST_F(kxMaterialAssetItemTest, ForgetsWhatTheNextDescriptionDoesNotSay)
{
    kxAssetItemDocument first;
    first.setMaterialType(osg::SwitchMaterial::getClassType());
    first.setMaterialTags("a");
    first.setSwitchMaterialChoice(2);
    first.setHasPhotometricProperties(false);
    kxMaterialAssetItem item;
    item.readMetaData(first);
    item.setExpectedPhotometricState(Photometric);

    EXPECT_TRUE(item.readMetaData(kxAssetItemDocument()));

    EXPECT_EQ(item.category(), Undefined);
    EXPECT_EQ(item.materialType(), nullptr);
    EXPECT_EQ(item.data(4, 0), QVariant(QString("")));
    EXPECT_EQ(item.switchChoice(), -1);
    EXPECT_EQ(item.getPhotometricState(), Unknown);
    EXPECT_EQ(item.getExpectedPhotometricState(), Unknown);
}

TEST_F(kxMaterialAssetItemTest, DescribesAPlainMaterial)
{
    kxMaterialAssetItem item = itemOf(makeSky("Sky"));
    kxAssetItemDocument document;

    EXPECT_TRUE(item.writeMetaData(document));

    EXPECT_EQ(document.getQDomDocument().toString(0).toStdString(),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE SARNAsset>\n<item>\n"
              "<category>Environments</category>\n<uuid>0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d</uuid>\n"
              "<name>Sky</name>\n<sarnVersion>" +
                  std::string(kxGetVersionString()) +
                  "</sarnVersion>\n<material>\n<type>USkyEnvironmentMaterial</type>\n</material>\n</item>\n");
}

TEST_F(kxMaterialAssetItemTest, DescribesTypeTagsPartsAndChoiceInThisOrder)
{
    const Owned part = makeSurface("p");
    makeAsset(part, "u1");
    const Owned choices = makeSwitch("s", {part, part}, 1);
    setTags(choices, {"b", "Scene", "a"});

    EXPECT_EQ(described(itemOf(choices)),
              "<material><type>SwitchMaterial</type><tags>a, b</tags><subMaterials><uuid>u1</uuid><uuid>u1</uuid>"
              "</subMaterials><choice>1</choice></material>");
}

TEST_F(kxMaterialAssetItemTest, DescribesEnvironmentAndPhotometricStateOfASurface)
{
    const Owned surface = makeSurface("x");
    setGlow(surface, {1, 1, 1, 2});
    const Owned sky = makeSky("Abendröte");
    {
        osg::CPEditor edit(surface, osg::UBRDFMaterial::EnvironmentFieldMask);
        osg::dcast<osg::UBRDFMaterialPtr>(surface)->setEnvironment(sky);
    }

    photometric(false);
    EXPECT_EQ(described(itemOf(surface)), "<material><type>UBRDFMaterial</type><environment>Abendröte</environment>"
                                          "<photometric>0</photometric></material>");
    photometric(true);
    EXPECT_EQ(described(itemOf(surface)), "<material><type>UBRDFMaterial</type><environment>Abendröte</environment>"
                                          "<photometric>1</photometric></material>");
}

TEST_F(kxMaterialAssetItemTest, DescribesTheMaterialAsItIsNow)
{
    const Owned choices = makeSwitch("s", {makeSurface("a"), makeSurface("b")}, 1);
    const kxMaterialAssetItem item = itemOf(makeSwitch("s", {}, 0));
    const auto live = osg::dcast<osg::SwitchMaterialPtr>(item.getMaterial());
    setTags(live, {"later"});
    {
        osg::CPEditor edit(live, osg::SwitchMaterial::ChoiceFieldMask);
        live->setChoice(7);
    }

    EXPECT_EQ(described(item), "<material><type>SwitchMaterial</type><tags>later</tags><choice>7</choice></material>");
}

TEST_F(kxMaterialAssetItemTest, CannotDescribeItselfWithoutAMaterial)
{
    kxAssetItemDocument description;
    description.setMaterialType(osg::UBRDFMaterial::getClassType());
    kxMaterialAssetItem item;
    item.readMetaData(description);
    kxAssetItemDocument document;

    EXPECT_FALSE(item.writeMetaData(document));

    // The base has written its part by then.
    EXPECT_EQ(document.getAssetName(), "");
    EXPECT_EQ(document.getQDomDocument().documentElement().elementsByTagName("sarnVersion").count(), 1);
    EXPECT_EQ(document.getMaterialType(), nullptr);
}

TEST_F(kxMaterialAssetItemTest, CannotDescribePartsThatAreNoAssets)
{
    const kxMaterialAssetItem item = itemOf(makeMultiPass("m", {makeSurface("p")}));
    kxAssetItemDocument document;
    kxtest::CapturedOutput output;

    const bool isWritten = item.writeMetaData(document);

    EXPECT_EQ(output.text(), "Meta data: Sub material is no asset.\n");
    EXPECT_FALSE(isWritten);
}

TEST_F(kxMaterialAssetItemTest, SupportsEveryMaterialTypeButNone)
{
    EXPECT_FALSE(kxMaterialAssetItem::isSupportedMaterialType(nullptr));
    EXPECT_TRUE(kxMaterialAssetItem::isSupportedMaterialType(&osg::UBRDFMaterial::getClassType()));
    EXPECT_FALSE(kxMaterialAssetItem::isSupportedMaterial(nullptr));
    EXPECT_TRUE(kxMaterialAssetItem::isSupportedMaterial(makeSky("x")));
}

TEST_F(kxMaterialAssetItemTest, LogsWhatMayNotBeSaved)
{
    const kxLogRecorder log;

    EXPECT_TRUE(kxMaterialAssetItem::isSaveAllowed(makeSurface("x")));
    EXPECT_TRUE(log.lines().empty());
    EXPECT_FALSE(kxMaterialAssetItem::isSaveAllowed(nullptr));

    EXPECT_EQ(log.lines(kxLogLevel::Error),
              std::vector<std::string>{"[Asset Manager] Save is not supported for material type ."});
}
