// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxLocalUrlManager.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxMaterials.h"
#include "MaterialFixture.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/UberMaterial.h"
#include "Support/CapturedOutput.h"
#include "Support/FileSizeLimit.h"

#include <QDomDocument>

#include <gmock/gmock.h>

#include <csignal>

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

constexpr const char *Uuid = "0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d";
constexpr const char *OtherUuid = "1a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d";
constexpr int Png = 0;
constexpr int Vif = 1;

class kxLocalUrlManagerSavingTest : public MaterialFixture
{
protected:
    ~kxLocalUrlManagerSavingTest() override
    {
        kxUrlManager::setPreviewImageFileFormat(Png);
        kxUrlManager::setWriteAutomotiveMaterialFiles(false);
    }

    static kxMaterialAssetItem itemOf(const osg::MaterialPtr &material, const std::string &uuid = Uuid)
    {
        kxMaterialAssetItem item;
        item.initFrom(material, uuid, true);
        return item;
    }

    bool save(const osg::MaterialPtr &material, const std::string &uuid = Uuid) const
    {
        kxMaterialAssetItem item = itemOf(material, uuid);
        return manager.saveMaterialAsset(url(), &item);
    }

    static Owned withPreview(const Owned &material)
    {
        addPreview(material);
        return material;
    }

    static Owned glowing(const std::string &name, float red)
    {
        Owned material = makeSurface(name);
        setGlow(material, osg::Color4f{red, 0.0F, 0.0F, 1.0F});
        return material;
    }

    /// A composite of one part that is an asset itself.
    static Owned makeComposite(const std::string &name)
    {
        const Owned part = makeSurface("part");
        makeAsset(part, OtherUuid);
        return makeSwitch(name, {part});
    }

    float storedGlow(const std::string &directory) const
    {
        osg::MaterialPtr loaded;
        if (!manager.loadMaterialFromDir(url(directory), loaded))
            return -1.0F;
        const Owned material = Owned::adopt(loaded);
        return glowOf(material)[0];
    }

    std::vector<std::string> entries(const std::string &directory = {}) const
    {
        std::vector<std::string> names;
        for (const fs::directory_entry &entry : fs::directory_iterator(_folder.path() / directory))
            names.push_back(entry.path().filename().string());
        return names;
    }

    std::string error(const std::string &before, const std::string &name, const std::string &after) const
    {
        return before + "'" + _folder.file(name) + "'" + after;
    }

    const kxLocalUrlManager &manager = *kxLocalUrlManager::the();
};

} // namespace

TEST_F(kxLocalUrlManagerSavingTest, WritesMetadataAndPayloadAndTellsTheItem)
{
    const Owned material = glowing("Lack", 0.25F);
    kxMaterialAssetItem item = itemOf(material);
    kxtest::CapturedOutput output;

    EXPECT_TRUE(manager.saveMaterialAsset(url("new/library"), &item));

    EXPECT_EQ(output.text(), "");
    EXPECT_THAT(entries("new/library"), ElementsAre("MAT_Lack"));
    EXPECT_THAT(entries("new/library/MAT_Lack"), UnorderedElementsAre("Lack.xml", "Lack.osb"));
    EXPECT_EQ(item.directoryUrl(), url("new/library/MAT_Lack"));
    EXPECT_TRUE(manager.containsItem(item.directoryUrl(), Material, Uuid));
    EXPECT_EQ(storedGlow("new/library/MAT_Lack"), 0.25F);
}

TEST_F(kxLocalUrlManagerSavingTest, RegistersNothingItself)
{
    EXPECT_TRUE(save(makeSurface("Lack")));

    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 0);
}

TEST_F(kxLocalUrlManagerSavingTest, RefusesSilentlyWhatCannotBeSaved)
{
    writeFile("file", "x");
    const Owned material = makeSurface("Lack");
    kxMaterialAssetItem item = itemOf(material);
    kxMaterialAssetItem empty;
    kxLogRecorder log;
    kxtest::CapturedOutput output;

    EXPECT_FALSE(manager.saveMaterialAsset(url(), nullptr));
    EXPECT_FALSE(manager.saveMaterialAsset(QUrl("http://example.org/lib"), &item));
    EXPECT_FALSE(manager.saveMaterialAsset(QUrl(), &item));
    EXPECT_FALSE(manager.saveMaterialAsset(QUrl("file:"), &item));
    EXPECT_FALSE(manager.saveMaterialAsset(url("lib"), &empty));
    EXPECT_FALSE(manager.saveMaterialAsset(url("file/below"), &item));

    EXPECT_EQ(output.text(), "");
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_THAT(entries(), ElementsAre("file"));
    EXPECT_TRUE(item.directoryUrl().isEmpty());
}

TEST_F(kxLocalUrlManagerSavingTest, ReportsMetadataThatCannotBeProduced)
{
    const Owned material = makeSwitch("Lack", {makeSurface("no asset")});
    kxLogRecorder log;

    EXPECT_FALSE(save(material));

    EXPECT_THAT(log.lines(kxLogLevel::Error), ElementsAre("Failed to write meta data."));
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(kxLocalUrlManagerSavingTest, FailsWhereNoDirectoryCanBeMade)
{
    // Nobody can make directories there, not even root.
    const QUrl parent = QUrl::fromLocalFile("/proc");
    const Owned material = makeSurface("Lack");
    kxMaterialAssetItem item = itemOf(material);
    kxLogRecorder log;

    EXPECT_FALSE(manager.saveMaterialAsset(parent, &item));

    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_TRUE(item.directoryUrl().isEmpty());
}

TEST_F(kxLocalUrlManagerSavingTest, FailsWithoutADirectory)
{
    class Homeless final : public kxLocalUrlManager
    {
    public:
        QUrl makeUniqueDirectory(const QUrl &, const QString &, kxAssetItem *) override { return {}; }
        bool saveDocumentToFile(const QUrl &, const QDomDocument &) const override
        {
            ADD_FAILURE() << "there is no place for it";
            return false;
        }
    };
    kxMaterialAssetItem item = itemOf(makeSurface("Lack"));
    const kxLogRecorder log;

    EXPECT_FALSE(Homeless().saveMaterialAsset(url(), &item));

    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(kxLocalUrlManagerSavingTest, NamesFilesAfterTheMaterialAsAFileNameMayBe)
{
    EXPECT_TRUE(save(makeSurface("a/b: [c]?")));

    EXPECT_THAT(entries(), ElementsAre("MAT_a_b_ _c__"));
    EXPECT_THAT(entries("MAT_a_b_ _c__"), UnorderedElementsAre("a_b_ _c__.xml", "a_b_ _c__.osb"));
}

TEST_F(kxLocalUrlManagerSavingTest, NamesFilesAfterTheMaterialAsItIsNow)
{
    const Owned material = makeSurface("Before");
    kxMaterialAssetItem item = itemOf(material);
    kxMaterials::setName(material, "Later", false);

    EXPECT_TRUE(manager.saveMaterialAsset(url(), &item));

    EXPECT_THAT(entries(), ElementsAre("MAT_Later"));
    EXPECT_THAT(entries("MAT_Later"), UnorderedElementsAre("Later.xml", "Later.osb"));
}

TEST_F(kxLocalUrlManagerSavingTest, SavesAndLoadsUnderNamesOfEveryKind)
{
    const std::vector<std::string> names{"緑の塗料",
                                         "Gr\u00FCn",
                                         "Gru\u0308n",
                                         "ends in a dot.",
                                         "50% #1 & <more>",
                                         "  blanks  ",
                                         "x.osb",
                                         "CON",
                                         std::string(200, 'n'),
                                         std::string(300, 'n'),
                                         "日本" + std::string(300, 'k')};

    for (std::size_t i = 0; i < names.size(); ++i) {
        const Owned material = glowing(names[i], 0.5F);
        kxMaterialAssetItem item = itemOf(material, "0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c" + std::to_string(10 + i));
        EXPECT_TRUE(manager.saveMaterialAsset(url(), &item)) << names[i];
        const std::string directory = item.directoryUrl().fileName().toStdString();
        EXPECT_EQ(storedGlow(directory), 0.5F) << names[i];
    }

    EXPECT_EQ(entries().size(), names.size()) << "names that differ keep directories of their own";
    EXPECT_TRUE(_folder.contains("MAT_Gr\u00FCn"));
    EXPECT_TRUE(_folder.contains("MAT_Gru\u0308n"));
}

TEST_F(kxLocalUrlManagerSavingTest, StoresNoPathInsideTheAsset)
{
    const Owned material = withPreview(makeSurface("Lack"));
    ASSERT_TRUE(save(material));

    for (const char *name : {"MAT_Lack/Lack.xml", "MAT_Lack/Lack.osb", "MAT_Lack/Lack.png"})
        EXPECT_EQ(readFile(name).find(_folder.string()), std::string::npos) << name;
}

TEST_F(kxLocalUrlManagerSavingTest, ReusesTheDirectoryOfTheSameAsset)
{
    ASSERT_TRUE(save(glowing("Lack", 0.25F)));
    kxMaterialAssetItem item = itemOf(glowing("Lack", 0.5F));
    kxtest::CapturedOutput output;

    EXPECT_TRUE(manager.saveMaterialAsset(url(), &item));

    EXPECT_EQ(output.text(), "[makeUniqueDirectory] - contains item with same uuid\n");
    EXPECT_THAT(entries(), ElementsAre("MAT_Lack"));
    EXPECT_EQ(storedGlow("MAT_Lack"), 0.5F);
}

TEST_F(kxLocalUrlManagerSavingTest, NumbersTheDirectoryOfAnotherAssetWithTheSameName)
{
    ASSERT_TRUE(save(glowing("Lack", 0.25F)));

    EXPECT_TRUE(save(glowing("Lack", 0.5F), OtherUuid));

    EXPECT_THAT(entries(), UnorderedElementsAre("MAT_Lack", "MAT_Lack0"));
    EXPECT_THAT(entries("MAT_Lack0"), UnorderedElementsAre("Lack.xml", "Lack.osb"));
    EXPECT_EQ(storedGlow("MAT_Lack"), 0.25F);
}

TEST_F(kxLocalUrlManagerSavingTest, LeavesACompositeToItsMetadata)
{
    kxMaterialAssetItem item = itemOf(withPreview(makeComposite("Wahl")));
    kxtest::CapturedOutput output;

    EXPECT_TRUE(manager.saveMaterialAsset(url(), &item));

    EXPECT_EQ(output.text(), "") << "no converter is started";
    EXPECT_THAT(entries("MAT_Wahl"), UnorderedElementsAre("Wahl.xml", "Wahl.png"));
}

TEST_F(kxLocalUrlManagerSavingTest, WritesThePayloadOfWhatIsMadeOfNoOtherMaterials)
{
    const osg::UberMaterialPtr layered = osg::UberMaterial::create();
    {
        const osg::CPEditor edit(layered, osg::UberMaterial::BRDFMaterialsFieldMask);
        layered->editBRDFMaterials().push_back(osg::UBRDFMaterial::create());
    }

    EXPECT_TRUE(save(named(layered, "Layered")));
    EXPECT_TRUE(save(makeSwitch("Empty", {}), OtherUuid));

    EXPECT_THAT(entries("MAT_Layered"), UnorderedElementsAre("Layered.xml", "Layered.osb"));
    EXPECT_THAT(entries("MAT_Empty"), UnorderedElementsAre("Empty.xml", "Empty.osb"));
}

TEST_F(kxLocalUrlManagerSavingTest, RemovesTheStalePayloadOfACompositeAndNoOtherFile)
{
    const Owned plain = makeSurface("Wahl");
    ASSERT_TRUE(save(plain));
    writeFile("MAT_Wahl/Other.osb", "x");

    EXPECT_TRUE(save(makeComposite("Wahl")));

    EXPECT_THAT(entries("MAT_Wahl"), UnorderedElementsAre("Wahl.xml", "Other.osb"));
}

TEST_F(kxLocalUrlManagerSavingTest, WritesThePreviewInTheChosenFormatAndKeepsOneFile)
{
    const Owned material = withPreview(makeSurface("Lack"));
    ASSERT_TRUE(save(material));
    EXPECT_THAT(entries("MAT_Lack"), UnorderedElementsAre("Lack.xml", "Lack.osb", "Lack.png"));

    kxUrlManager::setPreviewImageFileFormat(Vif);
    EXPECT_TRUE(save(material));
    EXPECT_THAT(entries("MAT_Lack"), UnorderedElementsAre("Lack.xml", "Lack.osb", "Lack.vif"));

    kxUrlManager::setPreviewImageFileFormat(Png);
    EXPECT_TRUE(save(material));
    EXPECT_THAT(entries("MAT_Lack"), UnorderedElementsAre("Lack.xml", "Lack.osb", "Lack.png"));
}

TEST_F(kxLocalUrlManagerSavingTest, WritesPreviewsInAnyFormatThatABackEndAdded)
{
    struct Formats : kxLocalUrlManager
    {
        using kxUrlManager::_previewImageFileFormats;
    };
    const Owned material = withPreview(makeSurface("Lack"));
    ASSERT_TRUE(save(material));
    Formats::_previewImageFileFormats.emplace_back("tif");
    kxUrlManager::setPreviewImageFileFormat(2);

    EXPECT_TRUE(save(material));

    EXPECT_THAT(entries("MAT_Lack"), UnorderedElementsAre("Lack.xml", "Lack.osb", "Lack.tif"));
    Formats::_previewImageFileFormats.pop_back();
}

#ifndef QT_NO_DEBUG
TEST_F(kxLocalUrlManagerSavingTest, ExpectsAFormatThatIsInTheList)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const Owned material = withPreview(makeSurface("Lack"));

    for (const int index : {2, -1}) {
        kxUrlManager::setPreviewImageFileFormat(index);
        EXPECT_DEATH(save(material), "ASSERT: .*chosen < formats.size") << index;
    }
}
#endif

TEST_F(kxLocalUrlManagerSavingTest, LeavesPreviewsAloneWithoutAnImage)
{
    ASSERT_TRUE(save(withPreview(makeSurface("Lack"))));

    EXPECT_TRUE(save(makeSurface("Lack")));

    EXPECT_TRUE(_folder.contains("MAT_Lack/Lack.png"));
}

TEST_F(kxLocalUrlManagerSavingTest, KeepsOlderPreviewsWhenTheNewOneCannotBeWritten)
{
    const Owned material = withPreview(makeSurface("Lack"));
    ASSERT_TRUE(save(material));
    const std::string former = readFile("MAT_Lack/Lack.png");
    _folder.makeFolder("MAT_Lack/Lack.vif");
    kxUrlManager::setPreviewImageFileFormat(Vif);

    EXPECT_TRUE(save(material));

    EXPECT_EQ(readFile("MAT_Lack/Lack.png"), former);
}

TEST_F(kxLocalUrlManagerSavingTest, WritesMetadataBeforeThePayloadAndKeepsItWhenThatFails)
{
    _folder.makeFolder("MAT_Lack");
    writeAsset("MAT_Lack", std::string("<category>Materials</category><uuid>") + Uuid +
                               "</uuid><name>old</name><material><type>UBRDFMaterial</type></material>");
    _folder.makeFolder("MAT_Lack/Lack.osb");
    kxMaterialAssetItem item = itemOf(makeSurface("Lack"));
    kxUrlManager::setWriteAutomotiveMaterialFiles(true);
    kxLogRecorder log;
    kxtest::CapturedOutput output;

    EXPECT_FALSE(manager.saveMaterialAsset(url(), &item));

    EXPECT_THAT(log.lines(kxLogLevel::Error), ElementsAre(error("Failed to write file ", "MAT_Lack/Lack.osb", ".")));
    EXPECT_EQ(output.text(), "[makeUniqueDirectory] - contains item with same uuid\n") << "no converter is started";
    EXPECT_TRUE(_folder.contains("MAT_Lack/Lack.xml"));
    EXPECT_TRUE(item.directoryUrl().isEmpty());
}

TEST_F(kxLocalUrlManagerSavingTest, LeavesAnEmptyDirectoryWhenTheMetadataCannotBeWritten)
{
    const Owned material = makeSurface("Lack");
    kxMaterialAssetItem item = itemOf(material);
    kxLogRecorder log;
    {
        const kxtest::FileSizeLimit fullDisk(0, kxtest::FileSizeLimit::Fails);
        EXPECT_FALSE(manager.saveMaterialAsset(url(), &item));
    }

    EXPECT_THAT(log.lines(kxLogLevel::Error), ElementsAre(error("Failed to write file ", "MAT_Lack/Lack.xml", ".")));
    EXPECT_THAT(entries(), ElementsAre("MAT_Lack"));
    EXPECT_THAT(entries("MAT_Lack"), IsEmpty());
    EXPECT_TRUE(item.directoryUrl().isEmpty());
}

TEST_F(kxLocalUrlManagerSavingTest, ReportsMetadataThatMustNotBeWritten)
{
    writeAsset("MAT_Lack", std::string("<category>Materials</category><uuid>") + Uuid +
                               "</uuid><name>old</name><material><type>UBRDFMaterial</type></material>");
    _folder.makeFolder("MAT_Lack/Lack.xml");
    kxLogRecorder log;

    EXPECT_FALSE(save(makeSurface("Lack")));

    EXPECT_THAT(log.lines(kxLogLevel::Error),
                ElementsAre(error("Can't write file ", "MAT_Lack/Lack.xml", ", no writing permission!")));
    EXPECT_THAT(entries("MAT_Lack"), UnorderedElementsAre("asset.xml", "Lack.xml"));
}

TEST_F(kxLocalUrlManagerSavingTest, KeepsEveryFileOldOrNewOnAFullDisk)
{
    ASSERT_TRUE(save(withPreview(glowing("Lack", 0.25F))));
    const Owned changed = withPreview(glowing("Lack", 0.5F));
    const std::vector<std::string> whole = entries("MAT_Lack");

    bool isSaved = false;
    int failures = 0;
    for (rlim_t size = 0; !isSaved; size += 50) {
        const float before = storedGlow("MAT_Lack");
        {
            const kxtest::FileSizeLimit fullDisk(size, kxtest::FileSizeLimit::Fails);
            isSaved = save(changed);
        }
        failures += isSaved ? 0 : 1;
        EXPECT_EQ(storedGlow("MAT_Lack"), isSaved ? 0.5F : before) << size;
        EXPECT_TRUE(manager.containsItem(url("MAT_Lack"), Material, Uuid)) << size;
        EXPECT_THAT(entries("MAT_Lack"), testing::UnorderedElementsAreArray(whole)) << size;
    }
    EXPECT_GT(failures, 3);
}

TEST_F(kxLocalUrlManagerSavingTest, KeepsTheFormerAssetWhenTheProcessIsKilledDuringASave)
{
    GTEST_FLAG_SET(death_test_style, "fast");
    ASSERT_TRUE(save(glowing("Lack", 0.25F)));
    const Owned changed = glowing("Lack", 0.5F);

    // Within the metadata, and within the payload, which is larger.
    const auto metadataSize = static_cast<rlim_t>(fs::file_size(_folder.file("MAT_Lack/Lack.xml")));
    const auto payloadSize = static_cast<rlim_t>(fs::file_size(_folder.file("MAT_Lack/Lack.osb")));
    ASSERT_GT(payloadSize, metadataSize + 1);
    for (const rlim_t size : {rlim_t{0}, metadataSize / 2, metadataSize + 1, payloadSize - 1}) {
        EXPECT_EXIT(
            {
                const kxtest::FileSizeLimit limit(size, kxtest::FileSizeLimit::Kills);
                save(changed);
                std::_Exit(0);
            },
            testing::KilledBySignal(SIGXFSZ), "");
        EXPECT_EQ(storedGlow("MAT_Lack"), 0.25F) << size;
        EXPECT_TRUE(manager.containsItem(url("MAT_Lack"), Material, Uuid)) << size;
    }

    EXPECT_TRUE(save(changed));
    EXPECT_EQ(storedGlow("MAT_Lack"), 0.5F);
}
