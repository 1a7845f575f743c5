// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxLocalUrlManager.h"
#include "Assets/kxMaterialAssetItem.h"
#include "ChangeListener.h"
#include "Kernel/kxController.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraph.h"
#include "MaterialFixture.h"
#include "Rendering/kxOSGWidget.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"
#include "SceneGraph/UberMaterial.h"
#include "Support/CapturedOutput.h"
#include "TestUrlManager.h"

#include <QDir>

namespace {

using Item = kxMaterialAssetItem;

class kxMaterialAssetItemLoadingTest : public MaterialFixture
{
protected:
    /// Stores a new surface of this name.
    std::string storeSurface(const std::string &name) const { return store(makeSurface(name)); }

    static void removeDirectoryOf(const std::string &uuid)
    {
        EXPECT_TRUE(QDir(item(uuid)->directoryUrl().toLocalFile()).removeRecursively());
    }
};

/// Says that it loads materials, and hands none out.
class EmptyManager : public TestUrlManager
{
public:
    bool accepts(const QUrl &url) const override
    {
        return url.scheme() == QLatin1String("empty") || (acceptsInvalid && !url.isValid());
    }
    std::vector<QUrl> files(const QUrl &url, const QStringList &, QDir::SortFlags) override { return {url}; }
    bool loadMaterialFromFile(const QUrl &, osg::MaterialPtr &) const override
    {
        ++loads;
        return true;
    }

    bool acceptsInvalid = false;
    mutable int loads = 0;
};

/// A view that notes when its refinement is stopped, and whether updates were still on by then.
class WatchfulView : public kxOSGWidget
{
public:
    std::vector<bool> cancellations;

private:
    void cancelRefinement() override { cancellations.push_back(kxController::isRenderUpdateEnabled()); }
};

} // namespace

TEST_F(kxMaterialAssetItemLoadingTest, LoadsNothingFromNowhere)
{
    Item item;
    EXPECT_FALSE(item.loadMaterial());
    item.setDirectoryUrl(QUrl("nobody://x"));
    EXPECT_FALSE(item.loadMaterial());
    item.setDirectoryUrl(url("missing"));
    EXPECT_FALSE(item.loadMaterial());
}

TEST_F(kxMaterialAssetItemLoadingTest, LoadsNothingWhereTheBackEndHandsNothingOut)
{
    static EmptyManager manager; // it can never be taken out of the registry
    kxUrlManager::registerManager(&manager);
    Item item;
    item.setDirectoryUrl(QUrl("empty:/x"));

    EXPECT_FALSE(item.loadMaterial());

    EXPECT_EQ(manager.loads, 1);
    EXPECT_EQ(item.materialType(), nullptr);

    manager.acceptsInvalid = true;
    EXPECT_FALSE(Item().loadMaterial());
    manager.acceptsInvalid = false;
    EXPECT_EQ(manager.loads, 1) << "nobody is asked for what has no directory";
}

TEST_F(kxMaterialAssetItemLoadingTest, LoadsAStoredMaterial)
{
    const std::string uuid = storeSurface("Lack größer");
    Item *stored = item(uuid);
    ASSERT_NE(stored, nullptr);
    ASSERT_FALSE(stored->getMaterial());

    EXPECT_TRUE(stored->loadMaterial());

    const osg::MaterialPtr material = stored->getMaterial();
    ASSERT_TRUE(material);
    EXPECT_EQ(kxMaterials::getName(material), "Lack größer");
    EXPECT_EQ(stored->materialType(), &osg::UBRDFMaterial::getClassType());
    EXPECT_EQ(material->getRefCount(), 1) << "the item's own, and no other";
}

TEST_F(kxMaterialAssetItemLoadingTest, StampsTheLoadedMaterial)
{
    const std::string uuid = storeSurface("Lack");

    ASSERT_TRUE(item(uuid)->loadMaterial());

    const auto attachment = osg::AssetAttachment::getAssetAttachment(item(uuid)->getMaterial());
    ASSERT_TRUE(attachment);
    EXPECT_EQ(attachment->getUuid(), uuid);
    EXPECT_EQ(attachment->getCategory(), "Materials");
    EXPECT_EQ(attachment->getUrl(), "file://" + _folder.file("MAT_Lack"));
    EXPECT_EQ(attachment->getChecksum(), item(uuid)->checksum());
    EXPECT_NE(attachment->getChecksum(), 0U);
    EXPECT_FALSE(attachment->getUserEdited());
}

TEST_F(kxMaterialAssetItemLoadingTest, ReplacesTheMaterialItHad)
{
    const std::string uuid = storeSurface("Lack");
    ASSERT_TRUE(item(uuid)->loadMaterial());
    const osg::MaterialPtr first = item(uuid)->getMaterial();
    const Owned held(first);

    EXPECT_TRUE(item(uuid)->loadMaterial());

    EXPECT_NE(item(uuid)->getMaterial(), first);
    EXPECT_EQ(held->getRefCount(), 1);
    EXPECT_EQ(item(uuid)->getMaterial()->getRefCount(), 1);
}

TEST_F(kxMaterialAssetItemLoadingTest, KeepsWhatItHadWhenLoadingFails)
{
    const Owned surface = makeSurface("Lack");
    setTags(surface, {"a"});
    const std::string uuid = store(surface);
    ASSERT_TRUE(item(uuid)->loadMaterial());
    const osg::MaterialPtr material = item(uuid)->getMaterial();
    removeDirectoryOf(uuid);

    EXPECT_FALSE(item(uuid)->loadMaterial());

    EXPECT_EQ(item(uuid)->getMaterial(), material);
    EXPECT_EQ(material->getRefCount(), 1);
    EXPECT_EQ(item(uuid)->data(4, 0), QVariant("a"));
    EXPECT_EQ(item(uuid)->materialType(), &osg::UBRDFMaterial::getClassType());
}

TEST_F(kxMaterialAssetItemLoadingTest, SaysInTheLogWhichPayloadIsDamaged)
{
    const std::string uuid = storeSurface("Lack");
    writeFile("MAT_Lack/Lack.osb", "no scene file");
    const kxLogRecorder log;

    EXPECT_FALSE(item(uuid)->loadMaterial());

    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_NE(log.lines()[0].find("Lack.osb"), std::string::npos) << log.lines()[0];
}

TEST_F(kxMaterialAssetItemLoadingTest, DescribesItselfByWhatItLoaded)
{
    const Owned surface = makeSurface("Lack");
    setTags(surface, {"b", "Geometry Asset: Chair", "a"});
    const std::string uuid = store(surface);
    kxtest::CapturedOutput output;

    const bool isLoaded = item(uuid)->loadMaterial();

    EXPECT_EQ(output.text(), "item tag 0: a\nitem tag 1: b\n");
    EXPECT_TRUE(isLoaded);
    EXPECT_EQ(item(uuid)->data(4, 0), QVariant("a, b"));
    EXPECT_EQ(tagsOf(item(uuid)->getMaterial()), (std::vector<std::string>{"b", "a"}))
        << "the mark of the chair is gone";
}

TEST_F(kxMaterialAssetItemLoadingTest, ReadsTheTagsBeforeItTakesMarksOff)
{
    const Owned surface = makeSurface("Lack");
    setTags(surface, {"Geometry Asset: Chair, oak"}); // one tag, which reads as two
    const std::string uuid = store(surface);

    ASSERT_TRUE(item(uuid)->loadMaterial());

    EXPECT_EQ(item(uuid)->data(4, 0), QVariant("oak"));
    EXPECT_TRUE(tagsOf(item(uuid)->getMaterial()).empty());
}

TEST_F(kxMaterialAssetItemLoadingTest, ForgetsADescriptionThatTheLoadedMaterialDoesNotBear)
{
    const std::string uuid = storeSurface("Lack");
    // Metadata that says more than the payload holds.
    writeAsset("MAT_Lack", "<category>Materials</category><uuid>" + uuid +
                               "</uuid><name>Lack</name><material><type>UBRDFMaterial</type><tags>gone</tags>"
                               "<choice>3</choice><photometric>1</photometric>"
                               "<subMaterials><uuid>gone</uuid></subMaterials></material>");
    ASSERT_TRUE(QFile::remove(QString::fromStdString(_folder.file("MAT_Lack/Lack.xml"))));
    ASSERT_TRUE(kxUrlManager::updateItem(item(uuid)));
    ASSERT_EQ(item(uuid)->switchChoice(), 3);

    EXPECT_TRUE(item(uuid)->loadMaterial());

    EXPECT_TRUE(item(uuid)->subMaterialUUIDs().empty());
    EXPECT_EQ(item(uuid)->switchChoice(), -1);
    EXPECT_EQ(item(uuid)->data(4, 0), QVariant(QString("")));
    EXPECT_EQ(item(uuid)->getPhotometricState(), Photometric) << "is not read from the loaded material";
}

TEST_F(kxMaterialAssetItemLoadingTest, PausesRenderingWhileThePayloadLoads)
{
    const std::string part = storeSurface("Part");
    Item *composite = describeComposite("c", "SwitchMaterial", {part});
    for (const bool wasEnabled : {true, false}) {
        kxController::enableRenderUpdate(wasEnabled);
        std::vector<bool> during;
        const ChangeListener listener(osg::MultiMaterial::getClassType(), [&during](osg::FieldMask) {
            during.push_back(kxController::isRenderUpdateEnabled());
        });

        EXPECT_TRUE(composite->loadMaterial());

        ASSERT_FALSE(during.empty());
        EXPECT_FALSE(during.front());
        EXPECT_EQ(kxController::isRenderUpdateEnabled(), wasEnabled);
    }
    kxController::enableRenderUpdate(true);
}

TEST_F(kxMaterialAssetItemLoadingTest, StopsTheRefinementOfTheViewsFirst)
{
    const std::string uuid = storeSurface("Lack");
    WatchfulView view;

    EXPECT_TRUE(item(uuid)->loadMaterial());

    EXPECT_EQ(view.cancellations, std::vector<bool>{true});
}

TEST_F(kxMaterialAssetItemLoadingTest, GivesUpWhenSomebodyDeletesTheItemMeanwhile)
{
    Item *composite = describeComposite("c", "SwitchMaterial", {});
    int changes = 0;
    const ChangeListener listener(osg::SwitchMaterial::getClassType(), [&changes](osg::FieldMask) { ++changes; });
    const ChangeListener deleter(osg::AssetAttachment::getClassType(),
                                 [](osg::FieldMask) { kxAssetItemFactory::the().deleteItem("c"); });
    const auto living = osg::FieldContainerFactory::the().livingContainerCount();

    EXPECT_FALSE(composite->loadMaterial());

    EXPECT_EQ(item("c"), nullptr);
    EXPECT_GT(changes, 0) << "it was under way";
    EXPECT_EQ(osg::FieldContainerFactory::the().livingContainerCount(), living);
}

TEST_F(kxMaterialAssetItemLoadingTest, GivesNothingForAnItemThatIsDeletedMeanwhile)
{
    describeComposite("c", "SwitchMaterial", {});
    const ChangeListener deleter(osg::AssetAttachment::getClassType(),
                                 [](osg::FieldMask) { kxAssetItemFactory::the().deleteItem("c"); });

    EXPECT_FALSE(Item::getMaterialFromUUID("c"));
}

TEST_F(kxMaterialAssetItemLoadingTest, ResumesRenderingAfterAFailure)
{
    Item missing;
    missing.setDirectoryUrl(url("missing"));

    EXPECT_FALSE(missing.loadMaterial());

    EXPECT_TRUE(kxController::isRenderUpdateEnabled());
    EXPECT_FALSE(kxLocalUrlManager::the()->showMaterialLoadProgress());
}

TEST_F(kxMaterialAssetItemLoadingTest, ShowsProgressForEnvironmentsOnly)
{
    const auto isShownFor = [this](const std::string &category) {
        writeAsset("x", "<category>" + category +
                            "</category><uuid>x</uuid><name>x</name><material><type>SwitchMaterial</type></material>");
        kxLocalUrlManager::the()->collectItems(url("x"), Undefined, nullptr);
        bool isShown = false;
        const ChangeListener listener(osg::AssetAttachment::getClassType(), [&isShown](osg::FieldMask) {
            isShown = isShown || kxLocalUrlManager::the()->showMaterialLoadProgress();
        });
        EXPECT_TRUE(item("x")->loadMaterial());
        EXPECT_FALSE(kxLocalUrlManager::the()->showMaterialLoadProgress()) << "it is over";
        kxAssetItemFactory::the().deleteItem("x");
        return isShown;
    };

    EXPECT_TRUE(isShownFor("Environments"));
    EXPECT_FALSE(isShownFor("Materials"));
}

TEST_F(kxMaterialAssetItemLoadingTest, SharesImagesWithTheScene)
{
    const auto textured = [](const std::string &name) {
        const osg::ImagePtr image = osg::Image::create();
        {
            osg::CPEditor edit(image);
            image->set(2, 2, 3, osg::PixelType::UInt8);
        }
        const osg::TexturePtr texture = osg::Texture::create();
        {
            osg::CPEditor edit(texture, osg::Texture::ImageFieldMask);
            texture->setImage(image);
        }
        Owned surface = makeSurface(name);
        osg::CPEditor edit(surface, osg::UBRDFMaterial::DiffuseTextureFieldMask);
        osg::dcast<osg::UBRDFMaterialPtr>(surface)->setDiffuseTexture(texture);
        return surface;
    };
    const auto imageOf = [](const osg::MaterialPtr &material) {
        return osg::dcast<osg::UBRDFMaterialPtr>(material)->getDiffuseTexture()->getImage();
    };
    const std::string uuid = store(textured("Stored"));
    const Owned present = textured("Present");
    kxScenegraph::addToMaterialPool(present);

    ASSERT_TRUE(item(uuid)->loadMaterial());

    EXPECT_EQ(imageOf(item(uuid)->getMaterial()), imageOf(present));
}

TEST_F(kxMaterialAssetItemLoadingTest, PrintsUnknownUuids)
{
    kxtest::CapturedOutput output;

    const osg::MaterialPtr material = Item::getMaterialFromUUID("no such");

    EXPECT_EQ(output.text(), "[getMaterialFromUUID] did not find item with uuid 'no such'\n");
    EXPECT_FALSE(material);
}

TEST_F(kxMaterialAssetItemLoadingTest, LoadsByUuid)
{
    const std::string uuid = storeSurface("Lack");

    const osg::MaterialPtr material = Item::getMaterialFromUUID(uuid);

    ASSERT_TRUE(material);
    EXPECT_EQ(material, item(uuid)->getMaterial());
    EXPECT_EQ(material->getRefCount(), 1);
}

TEST_F(kxMaterialAssetItemLoadingTest, TakesTheUnchangedCopyFromTheScene)
{
    const std::string uuid = storeSurface("Lack");
    const Owned present = Item::getMaterialFromUUID(uuid);
    kxScenegraph::addToMaterialPool(present);
    item(uuid)->invalidateMaterial();

    EXPECT_EQ(Item::getMaterialFromUUID(uuid), present.get());
}

TEST_F(kxMaterialAssetItemLoadingTest, LoadsAnewWhenTheSceneHasAnotherState)
{
    const std::string uuid = storeSurface("Lack");
    const Owned present = Item::getMaterialFromUUID(uuid);
    kxScenegraph::addToMaterialPool(present);
    const auto attachment = osg::AssetAttachment::getAssetAttachment(present);
    {
        osg::CPEditor edit(attachment, osg::AssetAttachment::ChecksumFieldMask);
        attachment->setChecksum(1);
    }

    const osg::MaterialPtr loaded = Item::getMaterialFromUUID(uuid);

    ASSERT_TRUE(loaded);
    EXPECT_NE(loaded, present.get());
}

TEST_F(kxMaterialAssetItemLoadingTest, GivesNothingWhenLoadingFailsAlthoughThereIsAnOlderMaterial)
{
    const std::string uuid = storeSurface("Lack");
    ASSERT_TRUE(item(uuid)->loadMaterial());
    removeDirectoryOf(uuid);

    EXPECT_FALSE(Item::getMaterialFromUUID(uuid));

    EXPECT_TRUE(item(uuid)->getMaterial());
}

TEST_F(kxMaterialAssetItemLoadingTest, GivesNothingForItemsWithoutMaterialType)
{
    const std::string uuid = storeSurface("Lack");
    kxAssetItemDocument document;
    document.setAssetType(Material);
    document.setAssetUUID(uuid);
    const QUrl directory = item(uuid)->directoryUrl();
    kxAssetItemFactory::the().createOrUpdateItem(document)->setDirectoryUrl(directory);
    kxtest::CapturedOutput output;

    EXPECT_FALSE(Item::getMaterialFromUUID(uuid));

    EXPECT_EQ(output.text(), "");
}

TEST_F(kxMaterialAssetItemLoadingTest, LoadsNoMaterialThroughItemsOfAnotherKind)
{
    kxLocalUrlManager::the()->collectItems(
        writeAsset("GEO_x", "<category>Geometries</category><uuid>g</uuid><name>x</name>"), Undefined, nullptr);
    ASSERT_NE(kxAssetItemFactory::the().findItem("g"), nullptr);
    EXPECT_FALSE(Item::getMaterialFromUUID("g"));

    const Owned ofTheScene = makeSurface("x");
    makeAsset(ofTheScene, "g");
    kxScenegraph::addToMaterialPool(ofTheScene);

    EXPECT_EQ(Item::getMaterialFromUUID("g"), ofTheScene.get()) << "which is looked for first, whatever the item is";
}

TEST_F(kxMaterialAssetItemLoadingTest, AnswersForEachUuidInOrder)
{
    const std::string a = storeSurface("A");
    const std::string b = storeSurface("B");
    kxtest::CapturedOutput output;

    const auto materials = Item::getMaterialsFromUUIDs({b, "none", a, b, ""});

    EXPECT_EQ(output.text(), "[getMaterialFromUUID] did not find item with uuid 'none'\n"
                             "[getMaterialFromUUID] did not find item with uuid ''\n");
    EXPECT_EQ(namesOf(materials), (std::vector<std::string>{"B", "(null)", "A", "B", "(null)"}));
    EXPECT_EQ(materials[0], materials[3]);
    EXPECT_TRUE(Item::getMaterialsFromUUIDs({}).empty());
}

TEST_F(kxMaterialAssetItemLoadingTest, ReadsAPartOnceWithinOneLoad)
{
    const std::string part = storeSurface("Part");
    const QString directory = item(part)->directoryUrl().toLocalFile();
    const ChangeListener listener(osg::AssetAttachment::getClassType(), [&directory](osg::FieldMask fields) {
        // The last field that is stamped: the part is loaded, and must not be needed again.
        if (fields == osg::AssetAttachment::UserEditedFieldMask)
            QDir(directory).removeRecursively();
    });

    const auto materials = Item::getMaterialsFromUUIDs({part, part});

    EXPECT_FALSE(QDir(directory).exists());
    ASSERT_TRUE(materials[0]);
    EXPECT_EQ(materials[1], materials[0]);
}

TEST_F(kxMaterialAssetItemLoadingTest, ReadsAPartAgainForTheNextLoad)
{
    const std::string part = storeSurface("Part");
    const Owned first = Item::getMaterialsFromUUIDs({part})[0];
    EXPECT_NE(Item::getMaterialsFromUUIDs({part})[0], first.get());

    const Owned second = Item::getMaterialFromUUID(part);
    EXPECT_NE(Item::getMaterialFromUUID(part), second.get());
}

TEST_F(kxMaterialAssetItemLoadingTest, LeavesOutAPartWhoseItemIsDeletedBeforeTheLastIsLoaded)
{
    const std::string first = storeSurface("First");
    const std::string last = storeSurface("Last");
    Item *composite = describeComposite("c", "MultiPassMaterial", {first, last});
    int stamped = 0;
    const ChangeListener deleter(osg::AssetAttachment::getClassType(), [&](osg::FieldMask fields) {
        if (fields == osg::AssetAttachment::UserEditedFieldMask && ++stamped == 2)
            kxAssetItemFactory::the().deleteItem(first);
    });

    EXPECT_TRUE(composite->loadMaterial());

    EXPECT_EQ(namesOf(partsOf(composite->getMaterial())), std::vector<std::string>{"Last"});
}

TEST_F(kxMaterialAssetItemLoadingTest, KeepsNothingAliveByRememberingIt)
{
    const std::string part = storeSurface("Part");
    const osg::MaterialPtr material = Item::getMaterialFromUUID(part);
    const auto id = material.getFieldContainerId();

    item(part)->invalidateMaterial();

    EXPECT_FALSE(osg::FieldContainerFactory::the().isAlive(id));
}

TEST_F(kxMaterialAssetItemLoadingTest, SharesAPartBetweenNestedComposites)
{
    const std::string part = storeSurface("Part");
    describeComposite("inner", "MultiPassMaterial", {part, part});
    Item *outer = describeComposite("outer", "SwitchMaterial", {part, "inner"});

    ASSERT_TRUE(outer->loadMaterial());

    const auto parts = partsOf(outer->getMaterial());
    ASSERT_EQ(namesOf(parts), (std::vector<std::string>{"Part", "inner"}));
    EXPECT_EQ(partsOf(parts[1]), (std::vector<osg::MaterialPtr>{parts[0], parts[0]}));
    EXPECT_EQ(outer->subMaterialUUIDs(), (std::vector<std::string>{part, "inner"}));
    EXPECT_EQ(outer->switchChoice(), 0);
}

TEST_F(kxMaterialAssetItemLoadingTest, EndsACompositeThatContainsItself)
{
    const std::string part = storeSurface("Part");
    Item *self = describeComposite("self", "SwitchMaterial", {"self", part});
    const kxLogRecorder log;

    EXPECT_TRUE(self->loadMaterial());

    EXPECT_EQ(namesOf(partsOf(self->getMaterial())), std::vector<std::string>{"Part"});
    EXPECT_EQ(log.lines(),
              std::vector<std::string>{"Material asset 'self' is part of itself; that part of it is left out."});
}

TEST_F(kxMaterialAssetItemLoadingTest, EndsCompositesThatContainEachOther)
{
    const std::string part = storeSurface("Part");
    Item *a = describeComposite("a", "MultiPassMaterial", {"b"});
    describeComposite("b", "MultiPassMaterial", {"a", part});
    const kxLogRecorder log;

    EXPECT_TRUE(a->loadMaterial());

    const auto parts = partsOf(a->getMaterial());
    ASSERT_EQ(namesOf(parts), std::vector<std::string>{"b"});
    EXPECT_EQ(namesOf(partsOf(parts[0])), std::vector<std::string>{"Part"});
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(kxMaterialAssetItemLoadingTest, EndsACycleThoughTheSceneHasACopy)
{
    Item *self = describeComposite("self", "SwitchMaterial", {"self"});
    ASSERT_TRUE(self->loadMaterial());
    const Owned first = self->getMaterial();
    kxScenegraph::addToMaterialPool(first);

    EXPECT_TRUE(self->loadMaterial());

    EXPECT_TRUE(partsOf(self->getMaterial()).empty());
}

TEST_F(kxMaterialAssetItemLoadingTest, EndsAChainThatIsTooDeep)
{
    for (int i = 0; i < 130; ++i)
        describeComposite("c" + std::to_string(i), "MultiPassMaterial", {"c" + std::to_string(i + 1)});
    const kxLogRecorder log;

    EXPECT_TRUE(item("c0")->loadMaterial());

    int depth = 0;
    for (osg::MaterialPtr material = item("c0")->getMaterial(); material; ++depth)
        material = partsOf(material).empty() ? nullptr : partsOf(material)[0];
    EXPECT_EQ(depth, 100);
    EXPECT_EQ(log.lines(),
              std::vector<std::string>{"Material asset 'c100' lies too deep within 'c0' and is left out."});
}

TEST_F(kxMaterialAssetItemLoadingTest, LoadsEnvironmentMaterials)
{
    const std::string uuid = store(makeSky("Abend"));
    ASSERT_TRUE(item(uuid)->hasCategory(Environment));

    const osg::MaterialPtr material = Item::getMaterialFromUUID(uuid);

    ASSERT_TRUE(material);
    EXPECT_EQ(&material->getType(), &osg::USkyEnvironmentMaterial::getClassType());
    EXPECT_EQ(osg::AssetAttachment::getAssetAttachment(material)->getCategory(), "Environments");
}

TEST_F(kxMaterialAssetItemLoadingTest, LoadsUberMaterialsWithTheirLayers)
{
    const osg::UberMaterialPtr uber = osg::UberMaterial::create();
    {
        osg::CPEditor edit(uber, osg::UberMaterial::BRDFMaterialsFieldMask);
        uber->editBRDFMaterials().push_back(osg::UBRDFMaterial::create());
    }
    const std::string uuid = store(named(uber, "Uber"));

    const auto loaded = osg::dcast<osg::UberMaterialPtr>(Item::getMaterialFromUUID(uuid));

    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->getBRDFMaterials().size(), 1U);
}
