// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/SceneFile.h"

#include "OsbParts.h"

#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/JsonAttachment.h"
#include "SceneGraph/MultiPassMaterial.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/Transform.h"
#include "SceneGraph/UberMaterial.h"
#include "Support/RecordedLog.h"
#include "Support/TemporaryFolder.h"
#include "Support/WithoutPrivileges.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <filesystem>
#include <fstream>

namespace {

using namespace osg;
using kxtest::OsbParts;
using testing::ElementsAre;
using testing::IsEmpty;

class SceneFileTest : public testing::Test
{
protected:
    static FCRef<Node> makeNode(const NodeCorePtr &core, const std::string &name)
    {
        FCRef<Node> node(makeNodeFor(core));
        setName(node.get(), name);
        return node;
    }

    static FCRef<Geometry> makeGrid(std::uint32_t side)
    {
        FCRef<Geometry> geometry(Geometry::create());
        const CPEditor edit(geometry.get());
        for (std::uint32_t y = 0; y < side; ++y)
            for (std::uint32_t x = 0; x < side; ++x)
                geometry->editPositions().push_back({{static_cast<float>(x), static_cast<float>(y), 0.0F}});
        for (std::uint32_t i = 0; i + side + 1 < side * side; ++i)
            for (const std::uint32_t corner : {i, i + 1, i + side})
                geometry->editIndices().push_back(corner);
        return geometry;
    }

    /// A root with two children that share a core with a layered material.
    static FCRef<Node> makeScene()
    {
        const FCRef<UberMaterial> material(UberMaterial::create());
        setName(material.get(), "Lack (grün)");
        {
            const UBRDFMaterialPtr layer = UBRDFMaterial::create();
            const CPEditor edit(material.get(), UberMaterial::BRDFMaterialsFieldMask);
            material->editBRDFMaterials().push_back(layer);
        }
        const FCRef<Geometry> geometry = makeGrid(20);
        {
            const CPEditor edit(geometry.get(), Geometry::MaterialFieldMask);
            geometry->setMaterial(material.get());
        }
        FCRef<Node> root = makeNode(Group::create(), "root");
        const CPEditor edit(root.get(), Node::ChildrenFieldMask);
        root->addChild(makeNode(geometry.get(), "first"));
        root->addChild(makeNode(geometry.get(), "second"));
        return root;
    }

    std::string write(const std::vector<FieldContainerPtr> &roots, const SceneWriteOptions &options = {},
                      const std::string &name = "scene.osb") const
    {
        const Result<void> written = writeSceneFile(folder.file(name), roots, options);
        EXPECT_TRUE(written) << (written ? "" : written.reason());
        return folder.read(name);
    }

    SceneRoots read(const std::string &name = "scene.osb") const
    {
        Result<SceneRoots> roots = readSceneFile(folder.file(name));
        EXPECT_TRUE(roots) << (roots ? "" : roots.reason());
        return roots ? std::move(roots.value()) : SceneRoots();
    }

    kxtest::TemporaryFolder folder;
};

TEST_F(SceneFileTest, ReadsBackWhatItWrote)
{
    const FCRef<Node> scene = makeScene();

    write({scene.get()});
    const SceneRoots roots = read();

    ASSERT_EQ(roots.size(), 1U);
    EXPECT_EQ(findDifference(scene.get(), roots[0].get()), std::nullopt);
}

TEST_F(SceneFileTest, ConnectsNodesWithTheirParents)
{
    write({makeScene().get()});

    const SceneRoots roots = read();

    const NodePtr root = dcast<NodePtr>(roots.at(0));
    ASSERT_EQ(root->getNChildren(), 2U);
    EXPECT_EQ(root->getChild(1)->getParent(), root);
    EXPECT_EQ(root->getParent(), NullFC);
    EXPECT_EQ(root->getChild(0)->getCore(), root->getChild(1)->getCore());
}

TEST_F(SceneFileTest, OwnsOnlyTheRoots)
{
    const std::size_t before = FieldContainerFactory::the().livingContainerCount();
    {
        write({makeScene().get()});
        const SceneRoots roots = read();
        EXPECT_EQ(roots.at(0)->getRefCount(), 1);
    }

    EXPECT_EQ(FieldContainerFactory::the().livingContainerCount(), before);
}

TEST_F(SceneFileTest, KeepsTheOrderOfRootsAndTheirSharing)
{
    const FCRef<UBRDFMaterial> shared(UBRDFMaterial::create());
    const FCRef<MultiPassMaterial> composite(MultiPassMaterial::create());
    {
        const CPEditor edit(composite.get(), MultiMaterial::MaterialsFieldMask);
        composite->addMaterial(shared.get());
    }

    write({composite.get(), shared.get(), composite.get()});
    const SceneRoots roots = read();

    ASSERT_EQ(roots.size(), 3U);
    EXPECT_EQ(dcast<MultiMaterialPtr>(roots[0])->getMaterial(0), dcast<MaterialPtr>(roots[1]));
    EXPECT_EQ(roots[0].get(), roots[2].get());
}

TEST_F(SceneFileTest, WritesNoRootsAsAnEmptyScene)
{
    write({});

    EXPECT_THAT(read(), IsEmpty());
}

TEST_F(SceneFileTest, IgnoresNullRoots)
{
    write({FieldContainerPtr(), makeScene().get()});

    EXPECT_EQ(read().size(), 1U);
}

TEST_F(SceneFileTest, GivesTheSameBytesForTheSameStructure)
{
    const FCRef<Node> first = makeScene();
    const FCRef<Group> shiftsTheIds(Group::create());
    const FCRef<Node> second = makeScene();

    const std::string bytes = write({first.get()});

    EXPECT_EQ(bytes, write({second.get()}, {}, "other.osb"));
    EXPECT_EQ(bytes, write({read().at(0).get()}, {}, "again.osb"));
}

TEST_F(SceneFileTest, AlignsLongArraysWithinTheFile)
{
    const std::string bytes = write({makeGrid(20).get()});

    const Vec3f second{{1.0F, 0.0F, 0.0F}};
    const std::string positions = OsbParts::raw(std::vector<Vec3f>{Vec3f{}, second});
    const std::size_t place = bytes.find(positions);
    ASSERT_NE(place, std::string::npos);
    EXPECT_EQ(place % 64, 0U);
}

TEST_F(SceneFileTest, CompressesArraysOnDemand)
{
    const FCRef<Geometry> geometry = makeGrid(100);

    const std::string plain = write({geometry.get()}, {}, "plain.osb");
    const std::string small = write({geometry.get()}, {.isCompressed = true, .leavesOut = {}}, "small.osb");

    EXPECT_LT(small.size(), plain.size() / 2);
    EXPECT_EQ(findDifference(geometry.get(), read("small.osb").at(0)), std::nullopt);
}

TEST_F(SceneFileTest, ReadsBackAVastEmptyPictureThatWasCompressed)
{
    const FCRef<Image> image(Image::create());
    ASSERT_TRUE(image->set(2048, 2048, 4, PixelType::UInt8));

    const std::string bytes = write({image.get()}, {.isCompressed = true, .leavesOut = {}});

    EXPECT_LT(bytes.size(), 300'000U);
    EXPECT_EQ(findDifference(image.get(), read().at(0)), std::nullopt);
}

TEST_F(SceneFileTest, KeepsLongTexts)
{
    const FCRef<JsonAttachment> json(JsonAttachment::create());
    {
        const CPEditor edit(json.get());
        json->setText(std::string(1'000'000, 'x') + "é");
    }

    write({json.get()});

    EXPECT_EQ(dcast<JsonAttachmentPtr>(read().at(0))->getText(), json->getText());
}

TEST_F(SceneFileTest, KeepsNullEntriesOfLists)
{
    const FCRef<MultiMaterial> material(MultiMaterial::create());
    {
        const CPEditor edit(material.get());
        material->editMaterials() = {MaterialPtr(), MaterialPtr(UBRDFMaterial::create()), MaterialPtr()};
    }

    write({material.get()});

    EXPECT_EQ(findDifference(material.get(), read().at(0)), std::nullopt);
}

TEST_F(SceneFileTest, LeavesOutWhatItIsToldTo)
{
    const FCRef<AssetAttachment> asset(AssetAttachment::create());
    {
        const CPEditor edit(asset.get());
        asset->setUrl("file:///somewhere");
        asset->setUuid("123");
    }
    const auto isUrl = [](const FieldContainer &, const FieldInfo &field) { return std::string(field.name) == "Url"; };

    const std::string bytes = write({asset.get()}, {.isCompressed = false, .leavesOut = isUrl});

    EXPECT_EQ(bytes.find("somewhere"), std::string::npos);
    const SceneRoots roots = read();
    const AssetAttachmentPtr copy = dcast<AssetAttachmentPtr>(roots.at(0));
    EXPECT_EQ(copy->getUrl(), "");
    EXPECT_EQ(copy->getUuid(), "123");
}

TEST_F(SceneFileTest, DoesNotWriteWhatOnlyALeftOutFieldReaches)
{
    const FCRef<Node> scene = makeScene();
    const auto isChildren = [](const FieldContainer &, const FieldInfo &field) {
        return field.mask == Node::ChildrenFieldMask && std::string(field.name) == "Children";
    };

    const std::string bytes = write({scene.get()}, {.isCompressed = false, .leavesOut = isChildren});

    EXPECT_EQ(bytes.find("Geometry"), std::string::npos);
}

TEST_F(SceneFileTest, SkipsUnknownTypesWithOneLineForEachName)
{
    OsbParts parts;
    const auto node =
        parts.addType("Node", {{"Core", OsbParts::Kind::Reference}, {"Children", OsbParts::Kind::References}});
    const auto holo = parts.addType("Hologram", {{"Depth", OsbParts::Kind::Float}, {"Data", OsbParts::Kind::UInt8s}});
    const auto root = parts.addContainer(node);
    parts.addReferences(0, {2});
    parts.addReferences(1, {3, 4});
    parts.addContainer(holo);
    parts.addInline(0, OsbParts::raw(1.0F));
    parts.addArray(1, std::string(1000, 'x'));
    parts.addContainer(node);
    parts.addContainer(node);
    parts.addReferences(0, {5});
    parts.addContainer(holo);
    parts.roots = {root, 2};
    folder.write("new.osb", parts.bytes());

    const kxtest::RecordedLog log;
    const SceneRoots roots = read("new.osb");

    ASSERT_EQ(roots.size(), 1U);
    EXPECT_EQ(dcast<NodePtr>(roots[0])->getNChildren(), 2U);
    EXPECT_EQ(dcast<NodePtr>(roots[0])->getCore(), NullFC);
    EXPECT_THAT(log.lines(), ElementsAre("Scene file \"" + folder.file("new.osb") +
                                         "\": the type Hologram is not known and is skipped"));
}

TEST_F(SceneFileTest, SkipsUnknownFieldsOfEveryKindWithOneLineForEachName)
{
    OsbParts parts;
    const auto image = parts.addType("Image", {{"Width", OsbParts::Kind::UInt32},
                                               {"Gamma", static_cast<OsbParts::Kind>(99)},
                                               {"Frames", OsbParts::Kind::References},
                                               {"Height", OsbParts::Kind::UInt32},
                                               {"Depth", OsbParts::Kind::Floats}});
    for (const std::uint32_t width : {1U, 2U}) {
        parts.roots.push_back(parts.addContainer(image));
        parts.addInline(0, OsbParts::raw(width));
        parts.addInline(1, "something");
        parts.addReferences(2, {1, 1, 0});
        parts.addInline(3, OsbParts::raw(0U));
        parts.addArray(4, std::string(400, 'x'));
    }
    folder.write("new.osb", parts.bytes());

    const kxtest::RecordedLog log;
    const SceneRoots roots = read("new.osb");

    ASSERT_EQ(roots.size(), 2U);
    EXPECT_EQ(dcast<ImagePtr>(roots[1])->getWidth(), 2U);
    const std::string start = "Scene file \"" + folder.file("new.osb") + "\": the field Image.";
    EXPECT_THAT(log.lines(),
                ElementsAre(start + "Gamma is not known and is skipped", start + "Frames is not known and is skipped",
                            start + "Depth is not known and is skipped"));
}

TEST_F(SceneFileTest, GivesFieldsThatAnOlderFileLacksTheirDefaults)
{
    OsbParts parts;
    parts.roots = {parts.addContainer(parts.addType("UBRDFMaterial", {}))};
    folder.write("old.osb", parts.bytes());

    const FCRef<UBRDFMaterial> fresh(UBRDFMaterial::create());
    EXPECT_EQ(findDifference(fresh.get(), read("old.osb").at(0)), std::nullopt);
}

TEST_F(SceneFileTest, DoesNotAdoptADefaultEnvironmentWhenReading)
{
    const FCRef<UBRDFMaterial> environment(UBRDFMaterial::create());
    write({UBRDFMaterial::create()});
    UBRDFMaterial::setDefaultEnvironmentSource([&] { return MaterialPtr(environment.get()); });

    const SceneRoots roots = read();

    UBRDFMaterial::setDefaultEnvironmentSource({});
    EXPECT_EQ(dcast<UBRDFMaterialPtr>(roots.at(0))->getEnvironment(), NullFC);
}

TEST_F(SceneFileTest, RefusesToWriteWhatCouldNotBeRead)
{
    const FCRef<MultiMaterial> outer(MultiMaterial::create());
    const FCRef<MultiMaterial> inner(MultiMaterial::create());
    {
        const CPEditor editOuter(outer.get());
        const CPEditor editInner(inner.get());
        outer->addMaterial(inner.get());
        inner->addMaterial(outer.get());
    }
    const FCRef<Geometry> geometry = makeGrid(3);
    {
        const CPEditor edit(geometry.get());
        geometry->editIndices()[0] = 9;
    }

    const std::string path = folder.file("scene.osb");
    EXPECT_EQ(writeSceneFile(path, {outer.get()}).reason(),
              "Cannot write scene file \"" + path + "\": A container contains itself");
    EXPECT_EQ(writeSceneFile(path, {geometry.get()}).reason(),
              "Cannot write scene file \"" + path + "\": A mesh's indices do not fit its vertices");
    EXPECT_FALSE(folder.contains("scene.osb"));

    const CPEditor edit(inner.get());
    inner->editMaterials().clear();
}

TEST_F(SceneFileTest, KeepsTheOldFileWhereItCannotWrite)
{
    folder.makeFolder("locked");
    folder.write("locked/scene.osb", "old");
    ::chmod(folder.file("locked/scene.osb").c_str(), 0444);
    ::chmod(folder.file("locked").c_str(), 0555);
    ::chmod(folder.string().c_str(), 0755);
    const std::string path = folder.file("locked/scene.osb");

    const auto writeUnprivileged = [&] {
        const kxtest::WithoutPrivileges user;
        return writeSceneFile(path, {makeScene().get()});
    };

    EXPECT_EQ(writeUnprivileged().reason(), "Cannot write scene file \"" + path + "\": Permission denied");
    EXPECT_EQ(folder.read("locked/scene.osb"), "old");
}

TEST_F(SceneFileTest, SaysWhyAFileCannotBeOpened)
{
    folder.makeFolder("folder.osb");
    folder.write("secret.osb", "x");
    ::chmod(folder.file("secret.osb").c_str(), 0);
    ASSERT_EQ(::mkfifo(folder.file("pipe.osb").c_str(), 0600), 0);
    ::chmod(folder.string().c_str(), 0755);
    const auto reasonFor = [&](const std::string &name) {
        const Result<SceneRoots> roots = readSceneFile(folder.file(name));
        return roots ? "" : roots.reason();
    };
    const auto expected = [&](const std::string &name, const std::string &why) {
        return "Cannot read scene file \"" + folder.file(name) + "\": " + why;
    };

    EXPECT_EQ(reasonFor("none.osb"), expected("none.osb", "No such file or directory"));
    EXPECT_EQ(reasonFor("folder.osb"), expected("folder.osb", "Is a directory"));
    EXPECT_EQ(reasonFor("pipe.osb"), expected("pipe.osb", "Not a regular file"));
    const kxtest::WithoutPrivileges user;
    EXPECT_EQ(reasonFor("secret.osb"), expected("secret.osb", "Permission denied"));
}

TEST_F(SceneFileTest, TakesAnyName)
{
    const FCRef<Group> group(Group::create());
    for (const std::string name : {"木 äa\xCC\x88 #1?x=%20.osb", "no extension", ".hidden", "two\nlines"}) {
        write({group.get()}, {}, name);

        EXPECT_EQ(findDifference(group.get(), read(name).at(0)), std::nullopt) << name;
    }
}

TEST_F(SceneFileTest, WritesAndReadsADeepTree)
{
    const FCRef<Node> root(Node::create());
    NodePtr parent = root;
    for (int i = 0; i < 100'000; ++i) {
        const NodePtr child = Node::create();
        const CPEditor edit(parent, Node::ChildrenFieldMask);
        parent->addChild(child);
        parent = child;
    }

    write({root.get()});

    EXPECT_EQ(findDifference(root.get(), read().at(0)), std::nullopt);
}

} // namespace
