// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxMaterialAssetItem.h"
#include "ChangeListener.h"
#include "EditWatch.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "MaterialFixture.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/MultiPassMaterial.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/TagAttachment.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "Support/CapturedOutput.h"

#include <QDomDocument>
#include <QSignalSpy>

namespace {

using Item = kxMaterialAssetItem;

class kxMaterialAssetItemRebuildingTest : public MaterialFixture
{
protected:
    /// Stores a new surface of this name.
    std::string storeSurface(const std::string &name) const { return store(makeSurface(name)); }

    static kxAssetItemDocument documentOf(const std::string &type, const std::vector<std::string> &parts,
                                          const std::string &more = {})
    {
        std::string text = "<item><category>Materials</category><uuid>c</uuid><name>Käse</name><material><type>" +
                           type + "</type>" + more + "<subMaterials>";
        for (const std::string &part : parts)
            text += "<uuid>" + part + "</uuid>";
        QDomDocument document("document");
        EXPECT_TRUE(document.setContent(QByteArray::fromStdString(text + "</subMaterials></material></item>")));
        return kxAssetItemDocument(document);
    }
};

/// Claims to be a switch of materials, and what it makes is a picture.
osg::FieldContainerType &impostor()
{
    static osg::FieldContainerType type("ImpostorOfASwitch", &osg::SwitchMaterial::getClassType(),
                                        []() -> osg::FieldContainerPtr { return osg::Image::create(); }, {});
    osg::FieldContainerFactory::the().registerType(type);
    return type;
}

int choiceOf(const osg::MaterialPtr &material)
{
    return osg::dcast<osg::SwitchMaterialPtr>(material)->getChoice();
}

} // namespace

TEST_F(kxMaterialAssetItemRebuildingTest, RebuildsASwitchFromItsMetadata)
{
    const std::string a = storeSurface("A");
    const std::string b = storeSurface("B");
    osg::MaterialPtr material;

    ASSERT_TRUE(Item::createMaterialFromDoc(
        documentOf("SwitchMaterial", {a, b, a}, "<choice>1</choice><tags>y, x</tags>"), material));

    const Owned owned = Owned::adopt(material);
    EXPECT_EQ(&material->getType(), &osg::SwitchMaterial::getClassType());
    EXPECT_EQ(material->getRefCount(), 1) << "the receiver's";
    EXPECT_EQ(namesOf(partsOf(material)), (std::vector<std::string>{"A", "B", "A"}));
    EXPECT_EQ(choiceOf(material), 1);
    EXPECT_EQ(kxMaterials::getName(material), "Käse");
    EXPECT_EQ(uuidOf(material), "c");
    EXPECT_EQ(osg::AssetAttachment::getAssetAttachment(material)->getCategory(), "Materials");
    EXPECT_EQ(tagsOf(material), (std::vector<std::string>{"x", "y"}));
}

TEST_F(kxMaterialAssetItemRebuildingTest, EditsEachFieldOnce)
{
    using Edit = std::pair<std::string, osg::FieldMask>;
    const std::string a = storeSurface("A");
    const std::string b = storeSurface("B");
    std::vector<Edit> edits;
    const auto note = [&edits](const std::string &what) {
        // The parts are loaded before anything happens to the composite.
        return [&edits, what](osg::FieldMask fields) {
            if (!edits.empty() || what == "composite")
                edits.emplace_back(what, fields);
        };
    };
    const ChangeListener composites(osg::MultiMaterial::getClassType(), note("composite"));
    const ChangeListener assets(osg::AssetAttachment::getClassType(), note("asset"));
    const ChangeListener tags(osg::TagAttachment::getClassType(), note("tags"));
    osg::MaterialPtr material;

    ASSERT_TRUE(Item::createMaterialFromDoc(documentOf("SwitchMaterial", {a, b}, "<choice>1</choice><tags>x, y</tags>"),
                                            material));

    const Owned owned = Owned::adopt(material);
    const auto attachments = osg::AttachmentContainer::AttachmentsFieldMask;
    EXPECT_EQ(edits, (std::vector<Edit>{{"composite", osg::MultiMaterial::MaterialsFieldMask},
                                        {"composite", osg::SwitchMaterial::ChoiceFieldMask},
                                        {"composite", attachments}, // for the name
                                        {"composite", attachments},
                                        {"asset", osg::AssetAttachment::UuidFieldMask},
                                        {"asset", osg::AssetAttachment::CategoryFieldMask},
                                        {"composite", attachments},
                                        {"tags", osg::TagAttachment::MaterialsFieldMask}}));
}

TEST_F(kxMaterialAssetItemRebuildingTest, TellsOfTheNewName)
{
    const QSignalSpy names(&kxScenegraph::notifier(), &kxScenegraphNotifier::nameChanged);
    osg::MaterialPtr material;

    ASSERT_TRUE(Item::createMaterialFromDoc(documentOf("SwitchMaterial", {}), material));

    const Owned owned = Owned::adopt(material);
    ASSERT_EQ(names.size(), 1);
    EXPECT_EQ(names[0][0].toUInt(), material.getFieldContainerId());
}

TEST_F(kxMaterialAssetItemRebuildingTest, LoadsAPartAgainThatIsGoneSinceItWasRemembered)
{
    const std::string part = storeSurface("Part");
    ASSERT_TRUE(Item::getMaterialFromUUID(part));
    item(part)->invalidateMaterial();
    osg::MaterialPtr material;

    ASSERT_TRUE(Item::createMaterialFromDoc(documentOf("MultiPassMaterial", {part, part}), material));

    const Owned owned = Owned::adopt(material);
    ASSERT_EQ(namesOf(partsOf(material)), (std::vector<std::string>{"Part", "Part"}));
    EXPECT_EQ(partsOf(material)[0], partsOf(material)[1]) << "once, and remembered in place of the one that is gone";
}

TEST_F(kxMaterialAssetItemRebuildingTest, RebuildsMultiPassAndEnvironmentSwitches)
{
    const std::string a = storeSurface("A");
    osg::MaterialPtr passes;
    osg::MaterialPtr environments;

    ASSERT_TRUE(Item::createMaterialFromDoc(documentOf("MultiPassMaterial", {a}, "<choice>0</choice>"), passes));
    ASSERT_TRUE(Item::createMaterialFromDoc(documentOf("UEnvironmentSwitchMaterial", {a}), environments));

    const Owned owned = Owned::adopt(passes);
    const Owned alsoOwned = Owned::adopt(environments);
    EXPECT_EQ(&passes->getType(), &osg::MultiPassMaterial::getClassType());
    EXPECT_EQ(namesOf(partsOf(passes)), std::vector<std::string>{"A"});
    EXPECT_EQ(&environments->getType(), &osg::UEnvironmentSwitchMaterial::getClassType());
    EXPECT_EQ(namesOf(partsOf(environments)), std::vector<std::string>{"A"});
}

TEST_F(kxMaterialAssetItemRebuildingTest, MovesLaterPartsUpWhenOneIsMissing)
{
    const std::string a = storeSurface("A");
    const std::string b = storeSurface("B");
    osg::MaterialPtr material;

    ASSERT_TRUE(
        Item::createMaterialFromDoc(documentOf("SwitchMaterial", {"none", a, "", b}, "<choice>1</choice>"), material));

    const Owned owned = Owned::adopt(material);
    EXPECT_EQ(namesOf(partsOf(material)), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(choiceOf(material), 1);
}

TEST_F(kxMaterialAssetItemRebuildingTest, KeepsTheFirstChoiceWhereTheStoredOneHasNoPart)
{
    const std::string a = storeSurface("A");
    for (const char *choice : {"1", "2", "-1", "99", "x"}) {
        osg::MaterialPtr material;
        ASSERT_TRUE(Item::createMaterialFromDoc(
            documentOf("SwitchMaterial", {a, "none"}, std::string("<choice>") + choice + "</choice>"), material));
        const Owned owned = Owned::adopt(material);
        EXPECT_EQ(choiceOf(material), 0) << choice;
    }
}

TEST_F(kxMaterialAssetItemRebuildingTest, RebuildsCompositesWithoutPartsAndTags)
{
    osg::MaterialPtr material;

    ASSERT_TRUE(Item::createMaterialFromDoc(documentOf("MultiPassMaterial", {}), material));

    const Owned owned = Owned::adopt(material);
    EXPECT_TRUE(partsOf(material).empty());
    EXPECT_TRUE(tagsOf(material).empty()) << "the attachment is there all the same";
}

TEST_F(kxMaterialAssetItemRebuildingTest, NamesOneFieldInEachEditOfWhatItRebuilds)
{
    const kxAssetItemDocument document =
        documentOf("SwitchMaterial", {storeSurface("A"), storeSurface("B")}, "<choice>1</choice><tags>y, x</tags>");
    osg::MaterialPtr material;
    const EditWatch watch;

    ASSERT_TRUE(Item::createMaterialFromDoc(document, material));

    const Owned owned = Owned::adopt(material);
    using Edits = std::vector<std::string>;
    EXPECT_EQ(watch.editsOf(material.getFieldContainerId()),
              (Edits{"SwitchMaterial Materials", "SwitchMaterial Choice", "SwitchMaterial Attachments",
                     "SwitchMaterial Attachments", "SwitchMaterial Attachments"}))
        << "the last three take its name, its identity and its tags";
    EXPECT_EQ(watch.editsOf(osg::AssetAttachment::getAssetAttachment(material).getFieldContainerId()),
              (Edits{"AssetAttachment Uuid", "AssetAttachment Category"}));
    EXPECT_EQ(watch.editsOf(osg::findAttachment<osg::TagAttachment>(material).getFieldContainerId()),
              Edits{"TagAttachment Materials"});
}

TEST_F(kxMaterialAssetItemRebuildingTest, RebuildsNothingElse)
{
    const Owned before = makeSurface("before");
    const auto living = osg::FieldContainerFactory::the().livingContainerCount();
    for (const char *type : {"UBRDFMaterial", "UberMaterial", "MultiMaterial", "USkyEnvironmentMaterial", "Node",
                             "NoSuchType", "Material", ""}) {
        osg::MaterialPtr material = before;
        EXPECT_FALSE(Item::createMaterialFromDoc(documentOf(type, {}), material)) << type;
        EXPECT_EQ(material, before.get()) << type;
    }
    EXPECT_EQ(osg::FieldContainerFactory::the().livingContainerCount(), living);
}

TEST_F(kxMaterialAssetItemRebuildingTest, RebuildsNothingFromWhatTurnsOutToBeNoMaterial)
{
    const Owned before = makeSurface("before");
    osg::MaterialPtr material = before;
    const kxAssetItemDocument document = documentOf(impostor().getCName(), {});
    ASSERT_EQ(document.getMaterialType(), &impostor());
    const auto living = osg::FieldContainerFactory::the().livingContainerCount();

    EXPECT_FALSE(Item::createMaterialFromDoc(document, material));

    EXPECT_EQ(material, before.get());
    EXPECT_EQ(osg::FieldContainerFactory::the().livingContainerCount(), living) << "nothing stays behind";
}

TEST_F(kxMaterialAssetItemRebuildingTest, RebuildsNothingFromInvalidMetadata)
{
    kxAssetItemDocument document;
    document.setMaterialType(osg::SwitchMaterial::getClassType());
    osg::MaterialPtr material;
    kxtest::CapturedOutput output;

    EXPECT_FALSE(Item::createMaterialFromDoc(document, material));

    EXPECT_EQ(output.text(), "[hasValidAssetMetaData] invalid uuid \n");
    EXPECT_FALSE(material);
}
