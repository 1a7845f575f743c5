// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxMaterialImport.h"

#include "AssetSession/kxAssetSession.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Rendering/kxPreviewSettings.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class kxMaterialImportTest : public testing::Test
{
protected:
    kxMaterialImportTest() : _library(QString::fromStdString(_folder.file("lib")))
    {
        kxPreviewSettings::setSize(16);
        kxPreviewSettings::setSamples(1);
    }

    /// A model whose materials have these names and diffuse colours.
    std::string writeModel(const std::string &path, const std::vector<std::pair<std::string, std::string>> &materials)
    {
        std::string library;
        std::string model = "mtllib paint.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\n";
        for (const auto &[name, color] : materials) {
            library.append("newmtl ").append(name).append("\nKd ").append(color).append("\n");
            model.append("usemtl ").append(name).append("\nf 1 2 3\n");
        }
        _folder.write(path + "/paint.mtl", library);
        return _folder.write(path + "/paint.obj", model);
    }

    kxMaterialImport::Outcome import(const std::string &file)
    {
        kxMaterialImport importer(_library);
        importer.setTags(_tags);
        return importer.importFile(QString::fromStdString(file), _library.url(), [] { return true; });
    }

    static std::string tagsOf(kxAssetItem &item)
    {
        return item.data(kxAssetCategory::getTagsColumn(), Qt::DisplayRole).toString().toStdString();
    }

    kxtest::TemporaryFolder _folder;
    kxAssetSession _session;
    kxAssetLibrary _library;
    std::vector<std::string> _tags;
};

} // namespace

TEST_F(kxMaterialImportTest, KeepsEachMaterialAsAnAsset)
{
    const auto outcome = import(writeModel("car", {{"Red", "1 0 0"}, {"Blue", "0 0 1"}}));

    EXPECT_THAT(outcome.failures, IsEmpty());
    ASSERT_THAT(outcome.saved, SizeIs(2));
    EXPECT_EQ(outcome.saved[0].name, "Red");
    EXPECT_FALSE(outcome.saved[0].isUpdate);
    EXPECT_EQ(kxAssetItemFactory::the().findItem(outcome.saved[1].uuid)->name(), "Blue");
}

TEST_F(kxMaterialImportTest, GivesEveryMaterialTheTags)
{
    _tags = {"paint", "car"};

    const auto outcome = import(writeModel("car", {{"Red", "1 0 0"}}));

    ASSERT_THAT(outcome.saved, SizeIs(1));
    EXPECT_EQ(tagsOf(*kxAssetItemFactory::the().findItem(outcome.saved[0].uuid)), "car, paint");
}

TEST_F(kxMaterialImportTest, UpdatesTheAssetsOfAFileThatChanged)
{
    const auto first = import(writeModel("car", {{"Red", "1 0 0"}}));
    const std::uint32_t before = kxAssetItemFactory::the().findItem(first.saved.at(0).uuid)->checksum();

    const auto second = import(writeModel("car", {{"Red", "0.5 0 0"}}));

    ASSERT_THAT(second.saved, SizeIs(1));
    EXPECT_TRUE(second.saved[0].isUpdate);
    EXPECT_EQ(second.saved[0].uuid, first.saved[0].uuid);
    EXPECT_NE(kxAssetItemFactory::the().findItem(first.saved[0].uuid)->checksum(), before);
    EXPECT_THAT(_library.items(), SizeIs(1));
}

TEST_F(kxMaterialImportTest, KeepsNameTagsAndPlaceThatPeopleGave)
{
    const std::string model = writeModel("car", {{"Red", "1 0 0"}});
    _tags = {"paint"};
    const std::string uuid = import(model).saved.at(0).uuid;
    ASSERT_TRUE(kxAssetItemFactory::the().findItem(uuid)->changeName("Rosso"));
    _tags = {"new"};

    const auto outcome = import(model);

    ASSERT_THAT(outcome.saved, SizeIs(1));
    EXPECT_EQ(outcome.saved[0].uuid, uuid);
    EXPECT_EQ(outcome.saved[0].name, "Rosso");
    kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid);
    EXPECT_EQ(item->name(), "Rosso");
    EXPECT_EQ(tagsOf(*item), "new, paint");
    EXPECT_EQ(_library.relativePath(*item), "MAT_Red");
}

TEST_F(kxMaterialImportTest, KnowsFilesByTheirPlace)
{
    const std::string one = import(writeModel("car", {{"Red", "1 0 0"}})).saved.at(0).uuid;

    const auto other = import(writeModel("boat", {{"Red", "0.9 0 0"}}));

    ASSERT_THAT(other.saved, SizeIs(1));
    EXPECT_NE(other.saved[0].uuid, one);
    EXPECT_FALSE(other.saved[0].isUpdate);
}

TEST_F(kxMaterialImportTest, MakesOneAssetOfEqualMaterials)
{
    const std::string gltf = _folder.write("twice.gltf", R"({"asset": {"version": "2.0"}, "scene": 0,
        "scenes": [{"nodes": [0]}], "nodes": [{"mesh": 0}],
        "meshes": [{"primitives": [{"attributes": {"POSITION": 0}, "material": 0},
                                   {"attributes": {"POSITION": 0}, "material": 1},
                                   {"attributes": {"POSITION": 0}, "material": 2}]}],
        "materials": [{"name": "Red", "pbrMetallicRoughness": {"baseColorFactor": [1, 0, 0, 1]}},
                      {"name": "Red", "pbrMetallicRoughness": {"baseColorFactor": [1, 0, 0, 1]}},
                      {"name": "Red", "pbrMetallicRoughness": {"baseColorFactor": [0, 1, 0, 1]}}],
        "accessors": [{"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3", "min": [0, 0, 0],
                       "max": [1, 1, 0]}],
        "bufferViews": [{"buffer": 0, "byteLength": 36}],
        "buffers": [{"byteLength": 36, "uri": "data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA"}]})");

    const auto first = import(gltf);
    const auto second = import(gltf);

    EXPECT_THAT(first.failures, IsEmpty());
    ASSERT_THAT(first.saved, SizeIs(2));
    ASSERT_THAT(second.saved, SizeIs(2));
    EXPECT_EQ(second.saved[0].uuid, first.saved[0].uuid);
    EXPECT_EQ(second.saved[1].uuid, first.saved[1].uuid);
}

TEST_F(kxMaterialImportTest, NamesTheFileThatCannotBeImported)
{
    const auto outcome = import(_folder.file("missing.obj"));

    EXPECT_THAT(outcome.saved, IsEmpty());
    EXPECT_THAT(outcome.failures, ElementsAre(HasSubstr(_folder.file("missing.obj"))));
    EXPECT_FALSE(_folder.contains("lib"));
}

TEST_F(kxMaterialImportTest, NamesMaterialsThatCannotBeSaved)
{
    _folder.write("lib", "a file where the library should be");

    const auto outcome = import(writeModel("car", {{"Red", "1 0 0"}, {"Blue", "0 0 1"}}));

    EXPECT_THAT(outcome.saved, IsEmpty());
    EXPECT_THAT(outcome.failures, ElementsAre(HasSubstr("'Red'"), HasSubstr("'Blue'")));
}

TEST_F(kxMaterialImportTest, EndsWhenAsked)
{
    const std::string model = writeModel("car", {{"Red", "1 0 0"}, {"Blue", "0 0 1"}});
    int asked = 0;

    const auto outcome = kxMaterialImport(_library).importFile(QString::fromStdString(model), _library.url(),
                                                               [&asked] { return asked++ < 1; });

    EXPECT_THAT(outcome.saved, SizeIs(1));
}

TEST_F(kxMaterialImportTest, PutsDescribedMaterialsIntoTheirFolders)
{
    const std::string file = _folder.write(
        "my.materials.json", R"({"materials": [{"name": "Oak", "folder": "Wood"}, {"name": "Tin", "folder": "Metal"},
                                {"name": "Both", "switch": ["Oak", "Tin"]}]})");

    const auto first = import(file);
    const auto again = import(file);

    EXPECT_THAT(first.failures, IsEmpty());
    ASSERT_THAT(first.saved, SizeIs(3));
    EXPECT_TRUE(_folder.contains("lib/Wood/MAT_Oak"));
    EXPECT_TRUE(_folder.contains("lib/Metal/MAT_Tin"));
    EXPECT_TRUE(_folder.contains("lib/MAT_Both"));
    ASSERT_THAT(again.saved, SizeIs(3));
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_TRUE(again.saved[i].isUpdate);
        EXPECT_EQ(again.saved[i].uuid, first.saved[i].uuid);
    }
}

TEST_F(kxMaterialImportTest, KeepsDescribedMaterialsInsideTheLibrary)
{
    const std::string file = _folder.write(
        "my.materials.json", R"({"materials": [{"name": "Out", "folder": "../elsewhere"}, {"name": "In"}]})");

    const auto outcome = import(file);

    ASSERT_THAT(outcome.failures, SizeIs(1));
    EXPECT_THAT(outcome.failures[0], HasSubstr("is not inside the library"));
    ASSERT_THAT(outcome.saved, SizeIs(1));
    EXPECT_FALSE(_folder.contains("elsewhere"));
}
