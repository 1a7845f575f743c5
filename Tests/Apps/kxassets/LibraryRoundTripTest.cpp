// SPDX-License-Identifier: Apache-2.0
// A library of real materials from the first import to the last check, through the program as a user runs it: every step
// is a process of its own, so nothing but the files on disk carries from one to the next.
#include "Import/kxSceneImporter.h"
#include "Kernel/kxMaterials.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/ImageAttachment.h"
#include "SceneGraph/MultiPassMaterial.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "Support/TemporaryFolder.h"

#include "Program.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <optional>

using kxtest::modelFile;
using kxtest::Outcome;
using kxtest::uuidsByName;
using testing::HasSubstr;
using testing::SizeIs;

namespace {

namespace fs = std::filesystem;

using Owned = osg::FCRef<osg::Material>;

const std::string Spider = "OBJ/spider.obj";
const std::string ClearCoat = "glTF2/ClearCoat-glTF/ClearCoatTest.gltf";

/// What the asset system itself puts on a material.
const std::vector<const osg::FieldContainerType *> &attachments()
{
    static const std::vector<const osg::FieldContainerType *> types = {&osg::AssetAttachment::getClassType(),
                                                                       &osg::ImageAttachment::getClassType()};
    return types;
}

std::vector<Owned> materialsIn(const std::string &file)
{
    const osg::Result<osg::SceneRoots> roots = osg::readSceneFile(file);
    if (!roots) {
        ADD_FAILURE() << roots.reason();
        return {};
    }
    std::vector<Owned> materials;
    for (const auto &root : roots.value())
        materials.emplace_back(osg::MaterialPtr::dcast(root.get()));
    return materials;
}

class LibraryRoundTripTest : public testing::Test
{
protected:
    Outcome run(const std::vector<std::string> &arguments) const
    {
        return kxtest::runProgram(_folder.string(), arguments);
    }

    /// With previews so small that they cost nothing.
    Outcome runSmall(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.end(), {"--preview-size", "16", "--preview-samples", "1"});
        return run(arguments);
    }

    void importModel(const std::string &model) const
    {
        const Outcome outcome = runSmall({"import", modelFile(model)});
        ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    }

    /// The one payload in the asset's directory.
    Owned stored(const std::string &directory) const
    {
        for (const auto &entry : fs::directory_iterator(_folder.file("lib/" + directory)))
            if (entry.path().extension() == ".osb")
                return materialsIn(entry.path().string()).at(0);
        ADD_FAILURE() << directory << " holds no payload";
        return {};
    }

    kxtest::TemporaryFolder _folder;
};

/// Imported, stored, loaded: the material that comes out is the one that went in.
void expectUnchanged(const std::string &model, const kxtest::TemporaryFolder &folder)
{
    const auto imported = kxSceneImporter().importMaterials(modelFile(model));
    ASSERT_TRUE(imported) << imported.reason();
    for (const Owned &original : imported.value()) {
        const std::string name = kxMaterials::getName(original.get());
        const Outcome outcome = kxtest::runProgram(folder.string(), {"load", name, "-o", "loaded.osb"});
        ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
        const std::vector<Owned> loaded = materialsIn(folder.file("loaded.osb"));
        ASSERT_THAT(loaded, SizeIs(1));
        kxMaterials::removeKey(loaded[0].get(), "ImportedFrom", false);
        kxMaterials::removeKey(loaded[0].get(), "ImportedFromFolder", false);
        EXPECT_EQ(osg::findDifference(original.get(), loaded[0].get(), attachments()), std::nullopt) << name;
    }
}

} // namespace

TEST_F(LibraryRoundTripTest, LoadsTexturedMaterialsOfAnObjFileBackUnchanged)
{
    importModel(Spider);

    expectUnchanged(Spider, _folder);
}

TEST_F(LibraryRoundTripTest, LoadsCoatedMaterialsOfAGltfFileBackUnchanged)
{
    importModel(ClearCoat);

    expectUnchanged(ClearCoat, _folder);
}

TEST_F(LibraryRoundTripTest, KeepsAllMaterialsOfSeveralFormats)
{
    importModel("glTF2/BoxTextured-glTF-Binary/BoxTextured.glb");
    importModel("Collada/duck.dae");
    importModel("FBX/box.fbx");

    const Outcome verified = run({"verify"});

    EXPECT_EQ(verified.exitCode, 0) << verified.output;
    EXPECT_THAT(uuidsByName(_folder.string()), SizeIs(3));
}

TEST_F(LibraryRoundTripTest, RefusesABrokenModelAndKeepsTheLibraryAsItWas)
{
    importModel(Spider);
    const auto before = uuidsByName(_folder.string());
    const std::string broken = _folder.write("broken.gltf", "{\"asset\": {\"version\": \"2.0\"}, \"meshes\": [");

    const Outcome outcome = runSmall({"import", broken});

    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.error, HasSubstr(broken));
    EXPECT_EQ(uuidsByName(_folder.string()), before);
}

TEST_F(LibraryRoundTripTest, FindsTheAssetByItsUuidAfterItWasRenamedTaggedAndMoved)
{
    importModel(Spider);
    const std::string uuid = uuidsByName(_folder.string()).at("Augentex");

    ASSERT_EQ(run({"rename", uuid, "Eyes"}).exitCode, 0);
    ASSERT_EQ(run({"tag", uuid, "--add", "animal"}).exitCode, 0);
    ASSERT_EQ(run({"move", uuid, "--to", "Animals/Spider"}).exitCode, 0);
    ASSERT_EQ(run({"merge", "Animals/Spider", "Animals"}).exitCode, 0);

    const Outcome shown = run({"show", uuid});
    EXPECT_THAT(shown.output, HasSubstr("name:      Eyes\n"));
    EXPECT_THAT(shown.output, HasSubstr("tags:      animal\n"));
    EXPECT_THAT(shown.output, HasSubstr("path:      Animals/MAT_Augentex\n"));
    EXPECT_EQ(run({"verify"}).exitCode, 0);
}

TEST_F(LibraryRoundTripTest, SaysThatAMaterialWasEditedInTheScene)
{
    importModel(Spider);
    ASSERT_EQ(run({"load", "Skin", "Augentex", "-o", "scene.osb"}).exitCode, 0);
    ASSERT_EQ(run({"check", "scene.osb"}).exitCode, 0);
    const std::vector<Owned> materials = materialsIn(_folder.file("scene.osb"));
    const osg::UBRDFMaterialPtr skin = osg::UBRDFMaterialPtr::dcast(materials.at(0).get());
    {
        const osg::CPEditor edit(skin, osg::UBRDFMaterial::RoughnessFieldMask);
        skin->setRoughness(0.123F);
    }
    ASSERT_TRUE(osg::writeSceneFile(_folder.file("scene.osb"), {materials[0].get(), materials[1].get()}));

    const Outcome checked = run({"check", "scene.osb"});

    EXPECT_EQ(checked.exitCode, 1);
    const auto uuids = uuidsByName(_folder.string());
    EXPECT_EQ(checked.output, "edited in the scene  " + uuids.at("Skin") +
                                  "  Skin      UBRDFMaterial.Roughness\n"
                                  "same                 " +
                                  uuids.at("Augentex") + "  Augentex\n");
}

TEST_F(LibraryRoundTripTest, RebuildsASwitchMaterialFromItsMetadataAlone)
{
    importModel(Spider);
    ASSERT_EQ(runSmall({"compose", "--switch", "Legs", "Skin", "BeinTex", "HLeibTex", "--choice", "1"}).exitCode, 0);
    ASSERT_FALSE(fs::exists(_folder.file("lib/MAT_Legs/Legs.osb")));

    ASSERT_EQ(run({"load", "Legs", "-o", "scene.osb"}).exitCode, 0);

    const std::vector<Owned> loaded = materialsIn(_folder.file("scene.osb"));
    ASSERT_THAT(loaded, SizeIs(1));
    EXPECT_EQ(loaded[0]->getType().getCName(), std::string("SwitchMaterial"));
    const osg::SwitchMaterialPtr legs = osg::SwitchMaterialPtr::dcast(loaded[0].get());
    EXPECT_EQ(kxMaterials::getName(legs), "Legs");
    EXPECT_EQ(legs->getChoice(), 1);
    ASSERT_EQ(legs->getMaterials().size(), 3U);
    EXPECT_EQ(osg::findDifference(stored("MAT_Skin").get(), legs->getMaterial(0), attachments()), std::nullopt);
    EXPECT_EQ(osg::findDifference(stored("MAT_BeinTex").get(), legs->getMaterial(1), attachments()), std::nullopt);
    EXPECT_EQ(osg::findDifference(stored("MAT_HLeibTex").get(), legs->getMaterial(2), attachments()), std::nullopt);
}

TEST_F(LibraryRoundTripTest, RebuildsAMultiPassMaterialFromItsMetadataAlone)
{
    importModel(Spider);
    ASSERT_EQ(runSmall({"compose", "--multipass", "Layers", "Skin", "Augentex"}).exitCode, 0);
    ASSERT_FALSE(fs::exists(_folder.file("lib/MAT_Layers/Layers.osb")));

    ASSERT_EQ(run({"load", "Layers", "-o", "scene.osb"}).exitCode, 0);

    const std::vector<Owned> loaded = materialsIn(_folder.file("scene.osb"));
    ASSERT_THAT(loaded, SizeIs(1));
    const osg::MultiPassMaterialPtr layers = osg::MultiPassMaterialPtr::dcast(loaded[0].get());
    ASSERT_TRUE(layers);
    ASSERT_EQ(layers->getMaterials().size(), 2U);
    EXPECT_EQ(osg::findDifference(stored("MAT_Skin").get(), layers->getMaterial(0), attachments()), std::nullopt);
    EXPECT_EQ(osg::findDifference(stored("MAT_Augentex").get(), layers->getMaterial(1), attachments()), std::nullopt);
}

TEST_F(LibraryRoundTripTest, StoresNoPathsOfTheMachine)
{
    const std::string model = _folder.makeFolder("secret place") + "/paint.obj";
    _folder.write("secret place/paint.obj", "mtllib paint.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl Paint\nf 1 2 3\n");
    _folder.write("secret place/paint.mtl", "newmtl Paint\nKd 1 0 0\n");

    ASSERT_EQ(runSmall({"import", model}).exitCode, 0);

    for (const auto &entry : fs::recursive_directory_iterator(_folder.file("lib")))
        if (entry.is_regular_file()) {
            const std::string bytes = _folder.read(fs::relative(entry.path(), _folder.path()).string());
            EXPECT_EQ(bytes.find("secret place"), std::string::npos) << entry.path();
            EXPECT_EQ(bytes.find(_folder.string()), std::string::npos) << entry.path();
        }
}
