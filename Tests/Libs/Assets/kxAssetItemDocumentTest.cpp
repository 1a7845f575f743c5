// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItemDocument.h"

#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerType.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "Support/CapturedOutput.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

constexpr const char *Uuid = "0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d";

// What each of them asks is whether code of any class may call it.
template <class T>
concept OffersItemValue = requires(T &document)
{
    document.getItemValue("");
};
template <class T>
concept OffersValue = requires(T &document)
{
    document.getValue("", "");
};
template <class T>
concept OffersMaterialValue = requires(T &document)
{
    document.getMaterialValue("");
};
template <class T>
concept OffersElements = requires(T &document)
{
    document.getOrCreateElement("");
};
template <class T>
concept OffersSettingValues = requires(T &document)
{
    document.setValue("", "", "");
};
template <class T>
concept OffersSettingMaterialValues = requires(T &document)
{
    document.setMaterialValue("", "");
};
template <class T>
concept OffersSettingSceneplateValues = requires(T &document)
{
    document.setSceneplateValue("", "");
};
template <class T>
concept OffersSettingItemValues = requires(T &document)
{
    document.setItemValue("", "");
};

kxAssetItemDocument parsed(const char *text)
{
    QDomDocument document("document");
    EXPECT_TRUE(document.setContent(QByteArray(text)));
    return kxAssetItemDocument(document);
}

/// A document whose root holds \a content.
kxAssetItemDocument withContent(const std::string &content)
{
    return parsed(("<item>" + content + "</item>").c_str());
}

kxAssetItemDocument withMaterial(const std::string &content)
{
    return withContent("<material>" + content + "</material>");
}

kxAssetItemDocument withoutRoot()
{
    return kxAssetItemDocument(QDomDocument("document"));
}

QString textOf(const kxAssetItemDocument &document)
{
    return document.getQDomDocument().toString(0);
}

osg::FCRef<osg::Material> makeMaterial()
{
    return osg::MaterialPtr(osg::UBRDFMaterial::create());
}

osg::FCRef<osg::Material> makeAsset(const std::string &uuid)
{
    osg::FCRef<osg::Material> material = makeMaterial();
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::createAssetAttachment(material);
    osg::CPEditor edit(attachment, osg::AssetAttachment::UuidFieldMask);
    attachment->setUuid(uuid);
    return material;
}

using Materials = osg::MField<osg::MaterialPtr>;

} // namespace

TEST(kxAssetItemDocumentTest, BeginsAsABareFrame)
{
    const kxAssetItemDocument document;

    EXPECT_EQ(textOf(document), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE SARNAsset>\n<item/>\n");
    EXPECT_EQ(document.getQDomDocument().doctype().name(), "SARNAsset");
    EXPECT_TRUE(document.getQDomDocument().doctype().publicId().isEmpty());
    EXPECT_TRUE(document.getQDomDocument().doctype().systemId().isEmpty());
}

TEST(kxAssetItemDocumentTest, KeepsToItselfWhatItsAccessorsAreMadeOf)
{
    EXPECT_FALSE(OffersItemValue<kxAssetItemDocument>);
    EXPECT_FALSE(OffersValue<kxAssetItemDocument>);
    EXPECT_FALSE(OffersMaterialValue<kxAssetItemDocument>);
    EXPECT_FALSE(OffersElements<kxAssetItemDocument>);
    EXPECT_FALSE(OffersSettingValues<kxAssetItemDocument>);
    EXPECT_FALSE(OffersSettingMaterialValues<kxAssetItemDocument>);
    EXPECT_FALSE(OffersSettingSceneplateValues<kxAssetItemDocument>);

    // What is public is seen.
    EXPECT_TRUE(OffersSettingItemValues<kxAssetItemDocument>);
}

TEST(kxAssetItemDocumentTest, ShowsTheDocumentItWrapsAndNoCopy)
{
    const kxAssetItemDocument document;

    EXPECT_TRUE((std::is_same_v<decltype(document.getQDomDocument()), const QDomDocument &>));
    EXPECT_EQ(&document.getQDomDocument(), &document.getQDomDocument());
}

TEST(kxAssetItemDocumentTest, SharesItsTreeWithCopies)
{
    kxAssetItemDocument original;
    const kxAssetItemDocument copy(original);
    kxAssetItemDocument assigned;
    assigned = original;

    original.setAssetName("Chair");

    EXPECT_EQ(copy.getAssetName(), "Chair");
    EXPECT_EQ(assigned.getAssetName(), "Chair");
}

TEST(kxAssetItemDocumentTest, SharesItsTreeWithWhatItWasMovedTo)
{
    // Like the tree itself, which has only copies.
    kxAssetItemDocument original;
    const kxAssetItemDocument moved(static_cast<kxAssetItemDocument &&>(original));
    kxAssetItemDocument assigned;
    assigned = static_cast<kxAssetItemDocument &&>(original);

    original.setAssetName("Chair");

    EXPECT_EQ(moved.getAssetName(), "Chair");
    EXPECT_EQ(assigned.getAssetName(), "Chair");
}

TEST(kxAssetItemDocumentTest, MovesItsTree)
{
    kxAssetItemDocument original;
    original.setAssetName("Chair");

    kxAssetItemDocument moved(std::move(original));
    kxAssetItemDocument assigned;
    assigned = std::move(moved);

    EXPECT_EQ(assigned.getAssetName(), "Chair");
}

TEST(kxAssetItemDocumentTest, SharesTheTreeItWraps)
{
    QDomDocument tree("document");
    ASSERT_TRUE(tree.setContent(QByteArray("<item/>")));
    kxAssetItemDocument document(tree);

    document.setAssetName("Chair");

    EXPECT_EQ(tree.documentElement().firstChildElement("name").text(), "Chair");
}

TEST(kxAssetItemDocumentTest, WritesItemValuesInTheOrderOfTheCalls)
{
    kxAssetItemDocument document;

    document.setAssetName("Chair");
    document.setAssetUUID(Uuid);
    document.setAssetType(Geometry);
    document.setItemValue("sarnVersion", "0.1.0");

    EXPECT_EQ(textOf(document), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE SARNAsset>\n<item>\n"
                                "<name>Chair</name>\n<uuid>0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d</uuid>\n"
                                "<category>Geometries</category>\n<sarnVersion>0.1.0</sarnVersion>\n</item>\n");
}

TEST(kxAssetItemDocumentTest, WritesAllMaterialValuesIntoOneGroup)
{
    kxAssetItemDocument document;

    document.setMaterialType(osg::SwitchMaterial::getClassType());
    document.setMaterialTags("b, a");
    document.setSwitchMaterialChoice(3);
    document.setMaterialBRDFEnvironmentName("Sky");
    document.setHasPhotometricProperties(true);

    EXPECT_EQ(textOf(document), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE SARNAsset>\n<item>\n<material>\n"
                                "<type>SwitchMaterial</type>\n<tags>a, b</tags>\n<choice>3</choice>\n"
                                "<environment>Sky</environment>\n<photometric>1</photometric>\n</material>\n</item>\n");
}

TEST(kxAssetItemDocumentTest, WritesTheSceneplateGroup)
{
    kxAssetItemDocument document;

    document.setSceneplateType(kxSceneplateTypes::Backplate);

    EXPECT_EQ(textOf(document), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE SARNAsset>\n<item>\n"
                                "<sceneplate>\n<type>2</type>\n</sceneplate>\n</item>\n");
}

TEST(kxAssetItemDocumentTest, WritesNumbersInBaseTen)
{
    kxAssetItemDocument document;

    document.setSwitchMaterialChoice(12);
    document.setSceneplateType(static_cast<kxSceneplateTypes::NodeType>(16));

    const QDomElement root = document.getQDomDocument().documentElement();
    EXPECT_EQ(root.firstChildElement("material").text(), "12");
    EXPECT_EQ(root.firstChildElement("sceneplate").text(), "16");
}

TEST(kxAssetItemDocumentTest, ReadsBackWhatItWrote)
{
    kxAssetItemDocument document;
    document.setAssetType(Environment);
    document.setAssetUUID(Uuid);
    document.setAssetName("Abendröte 夕焼け \"<&>\"");
    document.setMaterialBRDFEnvironmentName("Ünder");
    document.setSwitchMaterialChoice(2);
    document.setHasPhotometricProperties(false);
    document.setMaterialType(osg::UBRDFMaterial::getClassType());
    document.setSceneplateType(kxSceneplateTypes::Switch);

    const kxAssetItemDocument read = parsed(textOf(document).toUtf8().constData());

    EXPECT_EQ(read.getAssetType(), Environment);
    EXPECT_EQ(read.getAssetUUID(), Uuid);
    EXPECT_EQ(read.getAssetName(), "Abendröte 夕焼け \"<&>\"");
    EXPECT_EQ(read.getMaterialBRDFEnvironmentName(), "Ünder");
    EXPECT_EQ(read.getSwitchMaterialChoice(), 2);
    EXPECT_EQ(read.hasPhotometricProperties(), 0);
    EXPECT_EQ(read.getMaterialType(), &osg::UBRDFMaterial::getClassType());
    EXPECT_EQ(read.getSceneplateType(), kxSceneplateTypes::Switch);
}

TEST(kxAssetItemDocumentTest, ReadsInWhateverOrderAndUnderWhateverRoot)
{
    const kxAssetItemDocument document =
        parsed("<anything><other>1</other><name>Chair</name><sceneplate><x/><type>8</type></sceneplate>"
               "<category>Sceneplates</category></anything>");

    EXPECT_EQ(document.getAssetName(), "Chair");
    EXPECT_EQ(document.getAssetType(), Sceneplate);
    EXPECT_EQ(document.getSceneplateType(), kxSceneplateTypes::Switch);
}

TEST(kxAssetItemDocumentTest, KeepsTheFirstOfTwoItemValues)
{
    kxAssetItemDocument document;

    document.setAssetName("First");
    document.setAssetName("Second");

    EXPECT_EQ(document.getAssetName(), "First");
    EXPECT_EQ(document.getQDomDocument().documentElement().elementsByTagName("name").count(), 2);
}

TEST(kxAssetItemDocumentTest, KeepsTheFirstOfTwoGroupValues)
{
    kxAssetItemDocument document;

    document.setSwitchMaterialChoice(1);
    document.setSwitchMaterialChoice(2);

    EXPECT_EQ(document.getSwitchMaterialChoice(), 1);
    EXPECT_EQ(document.getQDomDocument().documentElement().elementsByTagName("choice").count(), 2);
    EXPECT_EQ(document.getQDomDocument().documentElement().elementsByTagName("material").count(), 1);
}

TEST(kxAssetItemDocumentTest, LooksIntoTheFirstGroupOnly)
{
    const kxAssetItemDocument document =
        withContent("<material><tags>a</tags></material><material><choice>4</choice></material>");

    EXPECT_EQ(document.getSwitchMaterialChoice(), -1);
}

TEST(kxAssetItemDocumentTest, WritesIntoTheFirstOfTwoGroups)
{
    kxAssetItemDocument document = withContent("<material/><material/>");

    document.setSwitchMaterialChoice(4);

    EXPECT_EQ(document.getSwitchMaterialChoice(), 4);
}

TEST(kxAssetItemDocumentTest, LooksForGroupsAndTheirValuesOneLevelDeepOnly)
{
    EXPECT_EQ(withContent("<x><material><choice>4</choice></material></x>").getSwitchMaterialChoice(), -1);
    EXPECT_EQ(withMaterial("<x><choice>4</choice></x>").getSwitchMaterialChoice(), -1);
}

TEST(kxAssetItemDocumentTest, ReadsNoAttributes)
{
    const kxAssetItemDocument document =
        parsed("<item name='a' uuid='b' category='Materials'><material choice='1'/></item>");

    EXPECT_EQ(document.getAssetName(), "");
    EXPECT_EQ(document.getAssetUUID(), "");
    EXPECT_EQ(document.getAssetType(), Undefined);
    EXPECT_EQ(document.getSwitchMaterialChoice(), -1);
}

TEST(kxAssetItemDocumentTest, ReadsItemValuesFromChildrenOfTheRootOnly)
{
    const kxAssetItemDocument document = withContent("<group><name>Inner</name></group><Name>Case</Name>");

    EXPECT_EQ(document.getAssetName(), "");
}

TEST(kxAssetItemDocumentTest, ReadsNothingFromAnEmptyFrame)
{
    const kxAssetItemDocument document;

    EXPECT_EQ(document.getAssetUUID(), "");
    EXPECT_EQ(document.getAssetName(), "");
    EXPECT_EQ(document.getAssetType(), Undefined);
    EXPECT_EQ(document.getMaterialType(), nullptr);
    EXPECT_TRUE(document.getMaterialTags().isEmpty());
    EXPECT_EQ(document.getSwitchMaterialChoice(), -1);
    EXPECT_EQ(document.hasPhotometricProperties(), -1);
    EXPECT_EQ(document.getMaterialBRDFEnvironmentName(), "");
    EXPECT_TRUE(document.getSubMaterialUUIDs().empty());
    EXPECT_EQ(document.getSceneplateType(), kxSceneplateTypes::Group);
}

TEST(kxAssetItemDocumentTest, ReadsAndWritesNothingWithoutARoot)
{
    kxAssetItemDocument document = withoutRoot();

    document.setAssetName("Chair");
    document.setSwitchMaterialChoice(1);
    document.setSceneplateType(kxSceneplateTypes::Frontplate);

    EXPECT_EQ(document.getAssetName(), "");
    EXPECT_EQ(document.getSwitchMaterialChoice(), -1);
    EXPECT_TRUE(document.getSubMaterialUUIDs().empty());
    EXPECT_TRUE(document.getQDomDocument().documentElement().isNull());
}

TEST(kxAssetItemDocumentTest, CopesWithANullDocument)
{
    kxAssetItemDocument document{QDomDocument()};

    document.setAssetName("Chair");

    EXPECT_EQ(document.getAssetName(), "");
    EXPECT_TRUE(document.getSubMaterialUUIDs().empty());
    EXPECT_FALSE(document.hasValidAssetMetaData());
}

TEST(kxAssetItemDocumentTest, KeepsUuidsAsTheyAre)
{
    kxAssetItemDocument document;

    document.setAssetUUID("Ü-0A1B");

    EXPECT_EQ(document.getAssetUUID(), "Ü-0A1B");
}

TEST(kxAssetItemDocumentTest, ComparesUuidsByteForByte)
{
    kxAssetItemDocument document;
    document.setAssetUUID(Uuid);

    EXPECT_TRUE(document.hasAssetUUID(Uuid));
    EXPECT_FALSE(document.hasAssetUUID("0A1B2C3D-4e5f-4a6b-8c7d-9e0f1a2b3c4d"));
    EXPECT_FALSE(document.hasAssetUUID(""));
    EXPECT_TRUE(kxAssetItemDocument().hasAssetUUID(""));
}

TEST(kxAssetItemDocumentTest, ComparesCategories)
{
    kxAssetItemDocument document;
    document.setAssetType(Geometry);

    EXPECT_TRUE(document.hasAssetType(Geometry));
    EXPECT_FALSE(document.hasAssetType(Material));
    EXPECT_TRUE(withContent("<category>geometries</category>").hasAssetType(Undefined));
}

TEST(kxAssetItemDocumentTest, WritesAnEmptyCategoryForUndefined)
{
    kxAssetItemDocument document;

    document.setAssetType(Undefined);

    const QDomElement category = document.getQDomDocument().documentElement().firstChildElement("category");
    EXPECT_TRUE(category.firstChild().isText()) << "of no characters";
    EXPECT_EQ(category.text(), "");
    EXPECT_EQ(document.getQDomDocument().documentElement().elementsByTagName("category").count(), 1);
    EXPECT_EQ(document.getAssetType(), Undefined);
}

TEST(kxAssetItemDocumentTest, FindsMaterialTypesByName)
{
    EXPECT_EQ(withMaterial("<type>UBRDFMaterial</type>").getMaterialType(), &osg::UBRDFMaterial::getClassType());
    EXPECT_EQ(withMaterial("<type>Node</type>").getMaterialType(), &osg::Node::getClassType()) << "of whatever kind";
    EXPECT_EQ(withMaterial("<type>NoSuchMaterial</type>").getMaterialType(), nullptr);
    EXPECT_EQ(withMaterial("<type></type>").getMaterialType(), nullptr);
    EXPECT_EQ(withMaterial("").getMaterialType(), nullptr);
    EXPECT_EQ(withContent("<type>UBRDFMaterial</type>").getMaterialType(), nullptr);
}

TEST(kxAssetItemDocumentTest, ReadsTheChoiceOfASwitch)
{
    EXPECT_EQ(withMaterial("<choice>12</choice>").getSwitchMaterialChoice(), 12);
    EXPECT_EQ(withMaterial("<choice>0</choice>").getSwitchMaterialChoice(), 0);
    EXPECT_EQ(withMaterial("<choice>-5</choice>").getSwitchMaterialChoice(), -5);
    EXPECT_EQ(withMaterial("<choice></choice>").getSwitchMaterialChoice(), -1);
    EXPECT_EQ(withMaterial("<choice>two</choice>").getSwitchMaterialChoice(), -1);
    EXPECT_EQ(withMaterial("<choice>0x10</choice>").getSwitchMaterialChoice(), -1);
    EXPECT_EQ(withMaterial("<choice>99999999999</choice>").getSwitchMaterialChoice(), -1);
}

TEST(kxAssetItemDocumentTest, ReadsThePhotometricState)
{
    EXPECT_EQ(withMaterial("<photometric>1</photometric>").hasPhotometricProperties(), 1);
    EXPECT_EQ(withMaterial("<photometric>0</photometric>").hasPhotometricProperties(), 0);
    for (const char *text : {"2", "-1", "yes", "true", "", "1.0"})
        EXPECT_EQ(withMaterial(std::string("<photometric>") + text + "</photometric>").hasPhotometricProperties(), -1)
            << text;
    EXPECT_EQ(withMaterial("").hasPhotometricProperties(), -1);
}

TEST(kxAssetItemDocumentTest, ReadsTheSceneplateType)
{
    EXPECT_EQ(withContent("<sceneplate><type>1</type></sceneplate>").getSceneplateType(), 1);
    EXPECT_EQ(withContent("<sceneplate><type>8</type></sceneplate>").getSceneplateType(), 8);
    EXPECT_EQ(withContent("<sceneplate/>").getSceneplateType(), 4);
    EXPECT_EQ(withContent("<sceneplate><type/></sceneplate>").getSceneplateType(), 4);
    EXPECT_EQ(withContent("<sceneplate><type>front</type></sceneplate>").getSceneplateType(), 0);
}

TEST(kxAssetItemDocumentTest, UnquotesSplitsFiltersAndSortsTags)
{
    const QStringList tags = kxAssetItemDocument::tagListFrom("wood,oak, \"Red\", Scene, Geometry Asset: Chair");

    EXPECT_EQ(tags, (QStringList{"Red", "wood,oak"}));
}

TEST(kxAssetItemDocumentTest, FindsNoTagsInEmptyTexts)
{
    EXPECT_TRUE(kxAssetItemDocument::tagListFrom(QString()).isEmpty());
    EXPECT_TRUE(kxAssetItemDocument::tagListFrom("").isEmpty());
    EXPECT_TRUE(kxAssetItemDocument::tagListFrom(", , , ").isEmpty());
    EXPECT_TRUE(kxAssetItemDocument::tagListFrom("\"\"").isEmpty());
}

TEST(kxAssetItemDocumentTest, RemovesTagsOfPlacedAssetsByExactPrefix)
{
    EXPECT_TRUE(
        kxAssetItemDocument::tagListFrom("Geometry Asset: a, Environment Asset: b, Sceneplate Asset: ").isEmpty());
    EXPECT_EQ(
        kxAssetItemDocument::tagListFrom("geometry Asset: a, Scenery, scene, my Geometry Asset: b, Material Asset: c"),
        (QStringList{"Material Asset: c", "Scenery", "geometry Asset: a", "my Geometry Asset: b", "scene"}));
}

TEST(kxAssetItemDocumentTest, LooksForPrefixesAfterTakingQuotesAway)
{
    EXPECT_TRUE(kxAssetItemDocument::tagListFrom("\"Geometry Asset: Chair\", Sc\"ene").isEmpty());
}

TEST(kxAssetItemDocumentTest, SplitsAfterTakingQuotesAway)
{
    EXPECT_EQ(kxAssetItemDocument::tagListFrom("\"b,\" a"), (QStringList{"a", "b"}));
}

TEST(kxAssetItemDocumentTest, KeepsBlanksCommasAndDuplicatesInTags)
{
    EXPECT_EQ(kxAssetItemDocument::tagListFrom(" a ,b, z,  c, z,"), (QStringList{" a ,b", " c", "z", "z,"}));
    EXPECT_EQ(kxAssetItemDocument::tagListFrom("a, a"), (QStringList{"a", "a"}));
}

TEST(kxAssetItemDocumentTest, SortsTagsByCode)
{
    EXPECT_EQ(kxAssetItemDocument::tagListFrom(QString::fromUtf8("b, Ä, a, B, 木")),
              (QStringList{"B", "a", "b", QString::fromUtf8("Ä"), QString::fromUtf8("木")}));
}

TEST(kxAssetItemDocumentTest, NormalisesTagsWhenWritingAndWhenReading)
{
    kxAssetItemDocument document;

    document.setMaterialTags("wood, \"Red\", Scene");

    EXPECT_EQ(document.getQDomDocument().documentElement().firstChildElement("material").text(), "Red, wood");
    EXPECT_EQ(document.getMaterialTags(), (QStringList{"Red", "wood"}));
    EXPECT_EQ(withMaterial("<tags>b, Scene, \"a\"</tags>").getMaterialTags(), (QStringList{"a", "b"}));
}

TEST(kxAssetItemDocumentTest, KeepsTagsOfAnyScript)
{
    kxAssetItemDocument document;

    document.setMaterialTags("木, Größe");

    EXPECT_EQ(document.getMaterialTags(), (QStringList{QString::fromUtf8("Größe"), QString::fromUtf8("木")}));
}

TEST(kxAssetItemDocumentTest, WritesTheUuidsOfSubMaterials)
{
    kxAssetItemDocument document;
    const auto first = makeAsset("u1");
    const auto second = makeAsset("u2");

    EXPECT_TRUE(document.setSubMaterialAssets(Materials{second, osg::MaterialPtr(), first, second}));

    EXPECT_EQ(document.getSubMaterialUUIDs(), (std::vector<std::string>{"u2", "u1", "u2"}));
    EXPECT_EQ(textOf(document), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE SARNAsset>\n<item>\n<material>\n"
                                "<subMaterials>\n<uuid>u2</uuid>\n<uuid>u1</uuid>\n<uuid>u2</uuid>\n</subMaterials>\n"
                                "</material>\n</item>\n");
}

TEST(kxAssetItemDocumentTest, WritesNothingForNoSubMaterials)
{
    kxAssetItemDocument document;

    EXPECT_TRUE(document.setSubMaterialAssets(Materials{}));

    EXPECT_TRUE(document.getQDomDocument().documentElement().firstChild().isNull());
    EXPECT_TRUE(withoutRoot().setSubMaterialAssets(Materials{}));
}

TEST(kxAssetItemDocumentTest, WritesAnEmptyListForNullSubMaterials)
{
    kxAssetItemDocument document;

    EXPECT_TRUE(document.setSubMaterialAssets(Materials{osg::MaterialPtr()}));

    EXPECT_EQ(document.getQDomDocument().documentElement().elementsByTagName("subMaterials").count(), 1);
    EXPECT_TRUE(document.getSubMaterialUUIDs().empty());
}

TEST(kxAssetItemDocumentTest, StopsAtASubMaterialThatIsNoAsset)
{
    kxAssetItemDocument document;
    const auto asset = makeAsset("u1");
    const auto plain = makeMaterial();
    kxtest::CapturedOutput output;

    const bool isWritten = document.setSubMaterialAssets(Materials{asset, plain, asset});

    EXPECT_EQ(output.text(), "Meta data: Sub material is no asset.\n");
    EXPECT_FALSE(isWritten);
    EXPECT_EQ(document.getSubMaterialUUIDs(), std::vector<std::string>{"u1"});
}

TEST(kxAssetItemDocumentTest, AppendsASecondListOfSubMaterials)
{
    kxAssetItemDocument document;
    const auto first = makeAsset("u1");
    const auto second = makeAsset("u2");

    EXPECT_TRUE(document.setSubMaterialAssets(Materials{first}));
    EXPECT_TRUE(document.setSubMaterialAssets(Materials{second}));

    EXPECT_EQ(document.getSubMaterialUUIDs(), std::vector<std::string>{"u1"});
    EXPECT_EQ(document.getQDomDocument().documentElement().elementsByTagName("subMaterials").count(), 2);
}

TEST(kxAssetItemDocumentTest, WritesNoSubMaterialsWithoutARoot)
{
    const auto asset = makeAsset("u1");

    EXPECT_FALSE(withoutRoot().setSubMaterialAssets(Materials{asset}));
}

TEST(kxAssetItemDocumentTest, FindsSubMaterialsAnywhereBelowTheRoot)
{
    const kxAssetItemDocument document = withContent(
        "<a><b><subMaterials><uuid>u1</uuid><x>no</x><uuid/><uuid>u1</uuid><UUID>no</UUID></subMaterials></b></a>"
        "<material><subMaterials><uuid>later</uuid></subMaterials></material>");

    EXPECT_EQ(document.getSubMaterialUUIDs(), (std::vector<std::string>{"u1", "", "u1"}));
}

TEST(kxAssetItemDocumentTest, FindsNoSubMaterialsInTheRootItself)
{
    EXPECT_TRUE(parsed("<subMaterials><uuid>u1</uuid></subMaterials>").getSubMaterialUUIDs().empty());
}

TEST(kxAssetItemDocumentTest, IsInvalidWithoutARootAndSaysNothing)
{
    kxtest::CapturedOutput output;

    const bool isValid = withoutRoot().hasValidAssetMetaData();

    EXPECT_EQ(output.text(), "");
    EXPECT_FALSE(isValid);
}

TEST(kxAssetItemDocumentTest, MissesTheUuidBeforeTheCategory)
{
    kxtest::CapturedOutput output;

    const bool isBareValid = kxAssetItemDocument().hasValidAssetMetaData();
    const bool isEmptyValid = withContent("<uuid/><category>Geometries</category>").hasValidAssetMetaData();

    EXPECT_EQ(output.text(), "[hasValidAssetMetaData] invalid uuid \n[hasValidAssetMetaData] invalid uuid \n");
    EXPECT_FALSE(isBareValid);
    EXPECT_FALSE(isEmptyValid);
}

TEST(kxAssetItemDocumentTest, IsInvalidWithAnUnknownCategory)
{
    kxtest::CapturedOutput output;

    const bool isValid = withContent("<uuid>u</uuid><category>materials</category>").hasValidAssetMetaData();

    EXPECT_EQ(output.text(), "[hasValidAssetMetaData] invalid category \n");
    EXPECT_FALSE(isValid);
}

TEST(kxAssetItemDocumentTest, NeedsAMaterialTypeForMaterialsOnlyAndSaysNothing)
{
    const std::string material = "<uuid>u</uuid><category>Materials</category>";
    kxtest::CapturedOutput output;

    const bool isPlainValid = withContent(material).hasValidAssetMetaData();
    const bool isUnknownValid =
        withContent(material + "<material><type>NoSuchType</type></material>").hasValidAssetMetaData();
    const bool isTypedValid =
        withContent(material + "<material><type>UBRDFMaterial</type></material>").hasValidAssetMetaData();

    EXPECT_EQ(output.text(), "");
    EXPECT_FALSE(isPlainValid);
    EXPECT_FALSE(isUnknownValid);
    EXPECT_TRUE(isTypedValid);
}

TEST(kxAssetItemDocumentTest, AcceptsTheOtherCategoriesAsTheyAre)
{
    for (const char *category : {"Environments", "Geometries", "Sceneplates"})
        EXPECT_TRUE(
            withContent(std::string("<uuid>u</uuid><category>") + category + "</category>").hasValidAssetMetaData())
            << category;
    EXPECT_TRUE(
        withContent("<uuid>u</uuid><category>Environments</category><material><type>NoSuchType</type></material>")
            .hasValidAssetMetaData());
}
