// SPDX-License-Identifier: Apache-2.0
#include "Import/kxSceneImporter.h"

#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/UBRDFMaterial.h"

#include "SmallModels.h"
#include "Support/RecordedLog.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <optional>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using namespace std::chrono_literals;

namespace {

/// Where temporary files go while it lives.
class TemporaryPlace
{
public:
    explicit TemporaryPlace(const std::string &path)
    {
        if (const char *usual = std::getenv("TMPDIR"))
            _usual = usual;
        setenv("TMPDIR", path.c_str(), 1);
    }
    ~TemporaryPlace()
    {
        if (_usual)
            setenv("TMPDIR", _usual->c_str(), 1);
        else
            unsetenv("TMPDIR");
    }
    TemporaryPlace(const TemporaryPlace &) = delete;
    TemporaryPlace &operator=(const TemporaryPlace &) = delete;

private:
    std::optional<std::string> _usual;
};

class kxSceneImporterTest : public testing::Test
{
protected:
    void TearDown() override { kxSceneImporter::setWorkerProgram(""); }

    /// Has the worker misbehave instead of working.
    void misbehave(const std::string &how)
    {
        const std::string script =
            folder.write("worker.sh", "#!/bin/sh\nexec '" KX_TEST_IMPORT_WORKER "' --self-test='" + how + "' \"$@\"\n");
        std::filesystem::permissions(script, std::filesystem::perms::owner_all);
        kxSceneImporter::setWorkerProgram(script);
    }
    std::string writeTriangle(const std::string &name, const std::string &materials = R"({"name": "Lack"})",
                              const std::string &more = "")
    {
        return folder.write(name, kxtest::gltfTriangle(materials, more));
    }
    std::string failureOf(const std::string &path, const kxImportLimits &limits = {})
    {
        const std::size_t before = kxtest::livingContainers();
        const auto result = kxSceneImporter(limits).importScene(path);
        EXPECT_EQ(kxtest::livingContainers(), before);
        return result ? "none" : result.reason();
    }

    kxtest::TemporaryFolder folder;
    kxtest::RecordedLog log;
};

TEST_F(kxSceneImporterTest, BringsATreeWithItsMaterials)
{
    kxtest::writeColumn(folder, "Holz.png", 3, {255, 0, 0, 0, 0, 255});
    const std::string path = writeTriangle(
        "Dreieck.gltf", R"({"name": "Lack", "pbrMetallicRoughness": {"roughnessFactor": 0.25, "metallicFactor": 0.5,
        "baseColorTexture": {"index": 0}}})",
        kxtest::gltfTextures({"Holz.png"}));

    const auto result = kxSceneImporter().importScene(path);

    ASSERT_TRUE(result) << result.reason();
    const kxImportedScene &scene = result.value();
    EXPECT_EQ(osg::getName(scene.root.get()), "Dreieck");
    const auto nodes = kxtest::geometryNodes(scene.root);
    ASSERT_EQ(nodes.size(), 1U);
    EXPECT_EQ(osg::getName(nodes[0]), "Fläche");
    EXPECT_EQ(kxtest::geometryOf(nodes[0])->getPositions().size(), 3U);
    ASSERT_EQ(scene.materials.size(), 1U);
    EXPECT_EQ(kxtest::geometryOf(nodes[0])->getMaterial(), scene.materials[0].get());
    const auto material = osg::dcast<osg::UBRDFMaterialPtr>(scene.materials[0].get());
    ASSERT_TRUE(material);
    EXPECT_EQ(osg::getName(material), "Lack");
    EXPECT_EQ(material->getRoughness(), 0.25F);
    EXPECT_EQ(material->getDiffuseTexture()->getImage()->pixel(0, 1), (osg::Vec4f{1, 0, 0, 1}));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(kxSceneImporterTest, LeavesNothingBehind)
{
    const std::string path = writeTriangle("a.gltf");
    const std::size_t before = kxtest::livingContainers();
    const std::string temporary = folder.makeFolder("tmp");
    const TemporaryPlace place(temporary);

    {
        const auto result = kxSceneImporter().importScene(path);
        EXPECT_TRUE(result);
    }

    EXPECT_EQ(kxtest::livingContainers(), before);
    EXPECT_TRUE(std::filesystem::is_empty(temporary));
}

TEST_F(kxSceneImporterTest, KeepsEverythingAliveAsLongAsTheResult)
{
    const auto result = kxSceneImporter().importScene(writeTriangle("a.gltf"));

    ASSERT_TRUE(result);
    EXPECT_EQ(result.value().root->getRefCount(), 1);
    EXPECT_EQ(result.value().materials[0]->getRefCount(), 2); // the list and the geometry
}

TEST_F(kxSceneImporterTest, BringsMaterialsAlone)
{
    folder.write("a.mtl", "newmtl Zinn\nKd 1 0 0\nnewmtl Ahorn\nKd 0 1 0\nnewmtl 木\nKd 0 0 1\n");
    const std::string path = folder.write("a.obj", kxtest::objSquare("mtllib a.mtl\nusemtl Ahorn\n"));

    const auto result = kxSceneImporter().importMaterials(path);

    ASSERT_TRUE(result) << result.reason();
    std::vector<std::string> names;
    for (const auto &material : result.value()) {
        names.push_back(osg::getName(material.get()));
        EXPECT_EQ(material->getRefCount(), 1);
    }
    EXPECT_THAT(names, ElementsAre("Zinn", "Ahorn", "木"));
}

TEST_F(kxSceneImporterTest, LogsOneLineForEachThingThatCouldNotBeBrought)
{
    const std::string path =
        writeTriangle("a.gltf", R"({"name": "A", "normalTexture": {"index": 0}, "emissiveTexture": {"index": 0},
                      "pbrMetallicRoughness": {"baseColorTexture": {"index": 1}}})",
                      kxtest::gltfTextures({"fehlt.png", "auch.png"}));

    const auto result = kxSceneImporter().importScene(path);

    EXPECT_TRUE(result);
    EXPECT_THAT(log.lines(), ElementsAre("'" + path + "': the texture 'auch.png' is missing",
                                         "'" + path + "': the texture 'fehlt.png' is missing"));
}

TEST_F(kxSceneImporterTest, MakesAnEnvironmentOfAPicture)
{
    kxtest::writeColumn(folder, "Wald am See.2.hdr", 3, {255, 0, 0, 0, 255, 0});
    const std::size_t before = kxtest::livingContainers();
    {
        const auto result = kxSceneImporter().importEnvironment(folder.file("Wald am See.2.hdr"));

        ASSERT_TRUE(result) << result.reason();
        EXPECT_EQ(osg::getName(result.value().get()), "Wald am See.2");
        ASSERT_TRUE(result.value()->getImage());
        EXPECT_EQ(result.value()->getImage()->getHeight(), 2U);
        EXPECT_NEAR(result.value()->getImage()->pixel(0, 1)[0], 1.0F, 0.01F);
        EXPECT_EQ(result.value()->getRefCount(), 1);
    }

    EXPECT_EQ(kxtest::livingContainers(), before);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(kxSceneImporterTest, TellsThatAnEnvironmentIsNoPicture)
{
    const std::string path = folder.write("a.exr", "no picture at all");

    const auto result = kxSceneImporter().importEnvironment(path);

    ASSERT_FALSE(result);
    EXPECT_THAT(result.reason(), StartsWith("Cannot import '" + path + "': "));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(kxSceneImporterTest, GoesOnAfterACrash)
{
    const std::string path = writeTriangle("a.gltf");

    misbehave("crash");
    EXPECT_THAT(failureOf(path), StartsWith("Cannot import '" + path + "': the parser crashed ("));

    kxSceneImporter::setWorkerProgram("");
    EXPECT_TRUE(kxSceneImporter().importScene(path));
}

TEST_F(kxSceneImporterTest, GoesOnAfterAHang)
{
    const std::string path = writeTriangle("a.gltf");
    kxImportLimits limits;
    limits.time = 200ms;

    misbehave("hang");

    EXPECT_EQ(failureOf(path, limits), "Cannot import '" + path + "': the parser took longer than 0.2 s");
}

TEST_F(kxSceneImporterTest, LeavesNothingBehindWhenItIsStopped)
{
    const std::string path = writeTriangle("a.gltf");
    const std::size_t before = kxtest::livingContainers();
    const std::string temporary = folder.makeFolder("tmp");
    const TemporaryPlace place(temporary);
    int asked = 0;
    bool hadFolder = false;
    const kxSceneImporter importer({}, [&] {
        hadFolder = hadFolder || !std::filesystem::is_empty(temporary);
        return ++asked < 3;
    });
    misbehave("hang");

    const auto scene = importer.importScene(path);
    asked = 0;
    const auto materials = importer.importMaterials(path);
    asked = 0;
    const auto environment = importer.importEnvironment(path);

    for (const std::string &reason : {scene.reason(), materials.reason(), environment.reason()})
        EXPECT_EQ(reason, "Cannot import '" + path + "': it was stopped");
    EXPECT_TRUE(hadFolder);
    EXPECT_TRUE(std::filesystem::is_empty(temporary));
    EXPECT_EQ(kxtest::livingContainers(), before);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(kxSceneImporterTest, GoesOnAfterMemoryRanOut)
{
    const std::string path = writeTriangle("a.gltf");
    kxImportLimits limits;
    limits.memory = std::uint64_t{1} << 30;

    misbehave("memory");

    EXPECT_EQ(failureOf(path, limits), "Cannot import '" + path + "': the parser needs more than 1024 MiB of memory");
}

TEST_F(kxSceneImporterTest, BelievesNoResultThatIsNone)
{
    const std::string path = writeTriangle("a.gltf");

    misbehave("garbage");
    EXPECT_THAT(failureOf(path), StartsWith("Cannot import '" + path + "': "));

    misbehave("nothing");
    EXPECT_THAT(failureOf(path), StartsWith("Cannot import '" + path + "': "));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(kxSceneImporterTest, BelievesNoResultOfAnotherKind)
{
    const std::string path = writeTriangle("a.gltf");
    const std::string script =
        folder.write("worker.sh", "#!/bin/sh\nshift\nexec '" KX_TEST_IMPORT_WORKER "' --kind=materials \"$@\"\n");
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    kxSceneImporter::setWorkerProgram(script);

    EXPECT_EQ(failureOf(path),
              "Cannot import '" + path + "': the parser handed over something else than what was asked for");
}

TEST_F(kxSceneImporterTest, TellsThatTheWorkerIsNotThere)
{
    const std::string path = writeTriangle("a.gltf");
    kxSceneImporter::setWorkerProgram(folder.file("gone"));

    EXPECT_THAT(failureOf(path), HasSubstr("cannot be started: No such file or directory"));
}

} // namespace
