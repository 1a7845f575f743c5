// SPDX-License-Identifier: Apache-2.0
#include "Import/kxSceneImporter.h"

#include "SceneGraph/NameAttachment.h"

#include "SmallModels.h"
#include "Support/RecordedLog.h"
#include "Support/WithoutPrivileges.h"

#include <sys/stat.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

using testing::IsEmpty;
using testing::StartsWith;

namespace {

/// What becomes of files with ugly names, and of files that are none.
class kxSceneImporterInputTest : public testing::Test
{
protected:
    /// The reason without its beginning, which names the file; nothing is logged and nothing stays.
    std::string reasonFor(const std::string &path)
    {
        const std::size_t before = kxtest::livingContainers();
        const auto result = kxSceneImporter().importScene(path);
        EXPECT_EQ(kxtest::livingContainers(), before);
        EXPECT_THAT(log.lines(), IsEmpty());
        if (result)
            return "none";
        const std::string start = "Cannot import '" + path + "': ";
        EXPECT_THAT(result.reason(), StartsWith(start));
        return result.reason().substr(std::min(start.size(), result.reason().size()));
    }

    kxtest::TemporaryFolder folder;
    kxtest::RecordedLog log;
};

TEST_F(kxSceneImporterInputTest, TellsAMissingFile)
{
    EXPECT_EQ(reasonFor(folder.file("fehlt.obj")), "No such file or directory");
    EXPECT_EQ(reasonFor(""), "No such file or directory");
}

TEST_F(kxSceneImporterInputTest, TellsAFolder)
{
    EXPECT_EQ(reasonFor(folder.makeFolder("Stuhl.obj")), "it is a folder");
}

TEST_F(kxSceneImporterInputTest, TellsAPathThroughAFile)
{
    folder.write("Stuhl", "x");

    EXPECT_EQ(reasonFor(folder.file("Stuhl/a.obj")), "Not a directory");
}

TEST_F(kxSceneImporterInputTest, WaitsForNoPipe)
{
    ASSERT_EQ(mkfifo(folder.file("a.obj").c_str(), 0600), 0);

    EXPECT_EQ(reasonFor(folder.file("a.obj")), "it is no ordinary file");
}

TEST_F(kxSceneImporterInputTest, TellsAnEmptyFile)
{
    EXPECT_EQ(reasonFor(folder.write("a.obj", "")), "the file is empty");
    EXPECT_EQ(reasonFor(folder.write("a.glb", "")), "the file is empty");
}

TEST_F(kxSceneImporterInputTest, TellsAFileThatMayNotBeRead)
{
    const std::string path = folder.write("a.obj", kxtest::objSquare(""));
    std::filesystem::permissions(path, std::filesystem::perms::none);
    const kxtest::WithoutPrivileges ordinary;

    EXPECT_EQ(reasonFor(path), "Permission denied");
}

TEST_F(kxSceneImporterInputTest, TellsAFileOfAnotherKind)
{
    EXPECT_EQ(reasonFor(folder.write("a.txt", "Hello")), "no parser knows this kind of file");
    EXPECT_EQ(reasonFor(folder.write("a", "Hello")), "no parser knows this kind of file");
}

TEST_F(kxSceneImporterInputTest, TellsABinaryFileThatIsCutOff)
{
    const std::filesystem::path whole = std::string(KX_TEST_MODELS) + "/glTF2/BoxTextured-glTF-Binary/BoxTextured.glb";
    for (const std::uintmax_t length : {1U, 11U, 12U, 20U, 21U, 600U, 2000U, 3000U}) {
        std::filesystem::copy_file(whole, folder.file("a.glb"), std::filesystem::copy_options::overwrite_existing);
        std::filesystem::resize_file(folder.file("a.glb"), length);

        EXPECT_NE(reasonFor(folder.file("a.glb")), "none") << length << " bytes";
    }
}

TEST_F(kxSceneImporterInputTest, TellsAMissingBuffer)
{
    std::string text = kxtest::gltfTriangle(R"({"name": "A"})");
    const std::size_t start = text.find("data:");
    text.replace(start, text.find('"', start) - start, "fehlt.bin");

    EXPECT_EQ(reasonFor(folder.write("a.gltf", text)), "GLTF: could not open referenced file \"fehlt.bin\"");
}

class kxSceneImporterNamesTest : public kxSceneImporterInputTest, public testing::WithParamInterface<const char *>
{};

TEST_P(kxSceneImporterNamesTest, ReadsModelsAndTexturesWithUglyNames)
{
    const std::string name = GetParam();
    folder.makeFolder(name);
    kxtest::writeColumn(folder, name + "/" + name + ".png", 3, {255, 0, 0});
    folder.write(name + "/" + name + ".mtl", "newmtl " + name + "\nmap_Kd " + name + ".png\n");
    const std::string path =
        folder.write(name + "/" + name + ".obj", kxtest::objSquare("mtllib " + name + ".mtl\nusemtl " + name + "\n"));

    const auto result = kxSceneImporter().importMaterials(path);

    ASSERT_TRUE(result) << result.reason();
    ASSERT_EQ(result.value().size(), 1U);
    EXPECT_EQ(osg::getName(result.value()[0].get()), name);
    EXPECT_THAT(log.lines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Names, kxSceneImporterNamesTest,
                         testing::Values("Stühle für Ähren", "Stu\xCC\x88hle", "#1 50% 'x' & more", "椅子",
                                         "--kind=scene", "a;b|c", "two  blanks", "[x]*?"));

} // namespace
