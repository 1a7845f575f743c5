// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/SceneFile.h"

#include "OsbParts.h"

#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Internal/Compression.h"
#include "SceneGraph/MultiMaterial.h"
#include "SceneGraph/Node.h"
#include "Support/RecordedLog.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <random>

namespace {

using namespace osg;
using kxtest::OsbParts;
using Kind = OsbParts::Kind;

/// Files made to do harm: each is refused with its reason, and nothing of it stays in memory.
class SceneFileHostileTest : public testing::Test
{
protected:
    std::string reasonFor(const std::string &bytes)
    {
        const std::size_t before = FieldContainerFactory::the().livingContainerCount();
        // A new file each time: replacing the content of one would make the system flush it to the disk.
        std::filesystem::remove(folder.file("scene.osb"));
        const std::string path = folder.write("scene.osb", bytes);
        const std::string start = "Cannot read scene file \"" + path + "\": ";
        std::string reason;
        {
            const Result<SceneRoots> roots = readSceneFile(path);
            if (!roots)
                reason = roots.reason();
        }
        EXPECT_EQ(FieldContainerFactory::the().livingContainerCount(), before);
        if (reason.empty())
            return "accepted";
        EXPECT_EQ(reason.substr(0, start.size()), start);
        return reason.substr(start.size());
    }
    std::string reason() { return reasonFor(parts.bytes()); }

    std::uint32_t nodeType()
    {
        return parts.addType("Node", {{"Core", Kind::Reference}, {"Children", Kind::References}});
    }
    std::uint32_t multiMaterialType() { return parts.addType("MultiMaterial", {{"Materials", Kind::References}}); }
    void addImage()
    {
        const auto type = parts.addType("Image", {{"Width", Kind::UInt32},
                                                  {"Height", Kind::UInt32},
                                                  {"Channels", Kind::UInt32},
                                                  {"DataType", Kind::UInt32},
                                                  {"Pixels", Kind::UInt8s}});
        parts.roots = {parts.addContainer(type)};
        parts.addInline(0, OsbParts::raw(16U));
        parts.addInline(1, OsbParts::raw(16U));
        parts.addInline(2, OsbParts::raw(4U));
        parts.addInline(3, OsbParts::raw(0U));
    }
    void addGeometry(const std::vector<std::uint32_t> &indices)
    {
        const auto type = parts.addType("Geometry", {{"Positions", Kind::Vec3fs},
                                                     {"Indices", Kind::UInt32s},
                                                     {"FaceSizes", Kind::UInt32s},
                                                     {"Normals", Kind::Vec3fs}});
        parts.roots = {parts.addContainer(type)};
        parts.addInline(0, std::string(36, '\0'));
        parts.addInline(1, OsbParts::raw(indices));
    }

    kxtest::TemporaryFolder folder;
    OsbParts parts;
};

TEST_F(SceneFileHostileTest, ANodeIsItsOwnDescendant)
{
    const auto node = nodeType();
    parts.roots = {parts.addContainer(node)};
    parts.addReferences(1, {2});
    parts.addContainer(node);
    parts.addReferences(1, {1});

    EXPECT_EQ(reason(), "A container contains itself");
}

TEST_F(SceneFileHostileTest, ANodeIsItsOwnChild)
{
    parts.roots = {parts.addContainer(nodeType())};
    parts.addReferences(1, {1});

    EXPECT_EQ(reason(), "A container contains itself");
}

TEST_F(SceneFileHostileTest, AMaterialContainsItself)
{
    parts.roots = {parts.addContainer(multiMaterialType())};
    parts.addReferences(0, {1});

    EXPECT_EQ(reason(), "A container contains itself");
}

TEST_F(SceneFileHostileTest, AMaterialContainsItselfIndirectly)
{
    const auto material = multiMaterialType();
    for (std::uint32_t next : {2U, 3U, 1U}) {
        parts.addContainer(material);
        parts.addReferences(0, {next});
    }

    EXPECT_EQ(reason(), "A container contains itself");
}

TEST_F(SceneFileHostileTest, ANodeHasTwoParents)
{
    const auto node = nodeType();
    parts.roots = {1, 2};
    parts.addContainer(node);
    parts.addReferences(1, {3});
    parts.addContainer(node);
    parts.addReferences(1, {3});
    parts.addContainer(node);

    EXPECT_EQ(reason(), "A node has more than one parent");
}

TEST_F(SceneFileHostileTest, AChildIsListedTwice)
{
    const auto node = nodeType();
    parts.addContainer(node);
    parts.addReferences(1, {2, 2});
    parts.addContainer(node);

    EXPECT_EQ(reason(), "A node has more than one parent");
}

TEST_F(SceneFileHostileTest, AChildIsNoNode)
{
    parts.addContainer(nodeType());
    parts.addReferences(1, {2});
    parts.addContainer(parts.addType("Group", {}));

    EXPECT_EQ(reason(), "Node.Children refers to a Group");
}

TEST_F(SceneFileHostileTest, ACoreIsANode)
{
    const auto node = nodeType();
    parts.addContainer(node);
    parts.addReferences(0, {2});
    parts.addContainer(node);

    EXPECT_EQ(reason(), "Node.Core refers to a Node");
}

TEST_F(SceneFileHostileTest, TwoAttachmentsAreOfOneType)
{
    const auto name = parts.addType("NameAttachment", {});
    parts.addContainer(parts.addType("Group", {{"Attachments", Kind::References}}));
    parts.addReferences(0, {2, 3});
    parts.addContainer(name);
    parts.addContainer(name);

    EXPECT_EQ(reason(), "A container has two attachments of one type");
}

TEST_F(SceneFileHostileTest, AReferenceLeadsNowhere)
{
    parts.addContainer(nodeType());
    parts.addReferences(0, {2});

    EXPECT_EQ(reason(), "A reference leads nowhere");
}

TEST_F(SceneFileHostileTest, ARootIsMissing)
{
    parts.addContainer(nodeType());
    parts.roots = {2};

    EXPECT_EQ(reason(), "A root is missing");
}

TEST_F(SceneFileHostileTest, ASingleReferenceIsSeveral)
{
    parts.addContainer(nodeType());
    parts.addReferences(0, {0, 0});

    EXPECT_EQ(reason(), "Node.Core: There is more than one reference");
}

TEST_F(SceneFileHostileTest, ATypeIsAbstract)
{
    parts.addContainer(parts.addType("NodeCore", {}));

    EXPECT_EQ(reason(), "Of the type NodeCore nothing can be made");
}

TEST_F(SceneFileHostileTest, AFieldIsOfAnotherKind)
{
    parts.addContainer(parts.addType("Switch", {{"Choice", Kind::Float}}));
    parts.addInline(0, OsbParts::raw(1.0F));

    EXPECT_EQ(reason(), "Switch.Choice: The field is of another kind here");
}

TEST_F(SceneFileHostileTest, AValueIsTooLong)
{
    parts.addContainer(parts.addType("Switch", {{"Choice", Kind::Int32}}));
    parts.addInline(0, "12345");

    EXPECT_EQ(reason(), "Switch.Choice: The length does not fit the kind");
}

TEST_F(SceneFileHostileTest, ANumberLiesAmongTheReferences)
{
    parts.addContainer(parts.addType("Switch", {{"Choice", Kind::Int32}}));
    parts.addReferences(0, {0});

    EXPECT_EQ(reason(), "Switch.Choice: The value is missing");
}

TEST_F(SceneFileHostileTest, AListHoldsHalfAVector)
{
    parts.addContainer(parts.addType("Geometry", {{"Positions", Kind::Vec3fs}}));
    parts.addInline(0, std::string(18, 'x'));

    EXPECT_EQ(reason(), "Geometry.Positions: The length does not fit the kind");
}

TEST_F(SceneFileHostileTest, AnArrayHoldsHalfAVector)
{
    parts.addContainer(parts.addType("Geometry", {{"Positions", Kind::Vec3fs}}));
    parts.addArray(0, std::string(1000, 'x'));

    EXPECT_EQ(reason(), "Geometry.Positions: An array's length does not fit its kind");
}

TEST_F(SceneFileHostileTest, ATruthIsNeither)
{
    parts.addContainer(parts.addType("Light", {{"IsOn", Kind::Bool}}));
    parts.addInline(0, "\x07");

    EXPECT_EQ(reason(), "Light.IsOn: The value is neither true nor false");
}

TEST_F(SceneFileHostileTest, ATextIsLongerThanItsList)
{
    parts.addContainer(parts.addType("TagAttachment", {{"Materials", Kind::Strings}}));
    parts.addInline(0, OsbParts::raw(0xFFFFFFFFU) + "wood");

    EXPECT_EQ(reason(), "TagAttachment.Materials: A text is cut off");
}

TEST_F(SceneFileHostileTest, AKeyHasNoText)
{
    parts.addContainer(parts.addType("UBRDFMaterial", {{"ValuePairs", Kind::StringMap}}));
    parts.addInline(0, OsbParts::text("key"));

    EXPECT_EQ(reason(), "UBRDFMaterial.ValuePairs: A text is cut off");
}

TEST_F(SceneFileHostileTest, AFieldHasTwoValues)
{
    parts.addContainer(parts.addType("Switch", {{"Choice", Kind::Int32}, {"Choice", Kind::Int32}}));
    parts.addInline(0, OsbParts::raw(1));
    parts.addInline(1, OsbParts::raw(2));

    EXPECT_EQ(reason(), "Switch.Choice: There are two values");
}

TEST_F(SceneFileHostileTest, AValueBelongsToNoField)
{
    parts.addContainer(parts.addType("Switch", {{"Choice", Kind::Int32}}));
    parts.addInline(1, OsbParts::raw(1));

    EXPECT_EQ(reason(), "A value belongs to no field");
}

TEST_F(SceneFileHostileTest, AnUnknownValueLiesInAnUnknownPlace)
{
    parts.addContainer(parts.addType("Future", {{"What", Kind::Int32}}));
    parts.addInline(0, OsbParts::raw(1));
    parts.values[0] = osb::Value(0, static_cast<osb::Place>(9), 0, 4);

    const kxtest::RecordedLog log;
    EXPECT_EQ(reason(), "A value lies in an unknown place");
}

TEST_F(SceneFileHostileTest, CountsGoBeyondWhatIsThere)
{
    const auto type = parts.addType("Switch", {{"Choice", Kind::Int32}});
    parts.addContainer(type);
    parts.addInline(0, OsbParts::raw(1));
    const OsbParts sound = parts;
    constexpr std::uint32_t Huge = std::numeric_limits<std::uint32_t>::max();

    parts.containers[0] = osb::Container(type, Huge);
    EXPECT_EQ(reason(), "A container's type or values are missing");
    parts = sound;
    parts.containers[0] = osb::Container(Huge, 1);
    EXPECT_EQ(reason(), "A container's type or values are missing");
    parts = sound;
    parts.values[0] = osb::Value(0, osb::Place::Inline, 0, Huge);
    EXPECT_EQ(reason(), "Switch.Choice: The value is missing");
    parts = sound;
    parts.values[0] = osb::Value(0, osb::Place::Array, 0, 0);
    EXPECT_EQ(reason(), "Switch.Choice: The value is missing");
}

TEST_F(SceneFileHostileTest, SomethingBelongsToNobody)
{
    parts.addContainer(parts.addType("Switch", {{"Choice", Kind::Int32}}));
    parts.inlineBytes = "hidden";

    EXPECT_EQ(reason(), "There are values that belong to no container");
}

TEST_F(SceneFileHostileTest, AMeshHasIndicesOutOfRange)
{
    addGeometry({0, 1, 3});

    EXPECT_EQ(reason(), "A mesh's indices do not fit its vertices");
}

TEST_F(SceneFileHostileTest, AMeshHasFaceSizesThatWrapAround)
{
    addGeometry({0, 1, 2});
    parts.addInline(2, OsbParts::raw(std::vector<std::uint32_t>{0xFFFFFFFF, 4}));

    EXPECT_EQ(reason(), "A mesh's indices do not fit its vertices");
}

TEST_F(SceneFileHostileTest, AMeshHasTooFewNormals)
{
    addGeometry({0, 1, 2});
    parts.addInline(3, std::string(12, '\0'));

    EXPECT_EQ(reason(), "A mesh's indices do not fit its vertices");
}

TEST_F(SceneFileHostileTest, AnImageLacksPixels)
{
    addImage();
    parts.addArray(4, std::string(1023, 'x'));

    EXPECT_EQ(reason(), "An image's pixels do not fit its size");
}

TEST_F(SceneFileHostileTest, AnImageIsLargerThanItsPixelsByOverflow)
{
    // 2^16 x 2^16 x 2^32 bytes would be none at all.
    addImage();
    parts.inlineBytes =
        OsbParts::raw(0x10000U) + OsbParts::raw(0x10000U) + OsbParts::raw(0xFFFFFFFFU) + OsbParts::raw(2U);

    EXPECT_EQ(reason(), "An image's pixels do not fit its size");
}

TEST_F(SceneFileHostileTest, TwoArraysShareTheirPlace)
{
    addImage();
    parts.addArray(4, std::string(1024, 'x'));
    parts.arrays.push_back(parts.arrays[0]);

    EXPECT_EQ(reason(), "An array lies outside its place in the file");
}

TEST_F(SceneFileHostileTest, AnArrayReachesBeyondTheFile)
{
    addImage();
    parts.addArray(4, std::string(1024, 'x'));
    constexpr std::uint64_t Huge = std::numeric_limits<std::uint64_t>::max();
    for (const std::uint64_t size :
         {std::uint64_t{1025}, std::uint64_t{1} << 36, std::uint64_t{1} << 63, Huge - 63, Huge}) {
        parts.arrays[0] = osb::Array(0, size, size, 0, osb::Encoding::Plain);

        EXPECT_EQ(reason(), "An array lies outside its place in the file") << size;
    }
}

TEST_F(SceneFileHostileTest, AnArrayEndsBeforeTheFile)
{
    addImage();
    parts.addArray(4, std::string(1024, 'x'));
    parts.arrayBytes += "hidden";

    EXPECT_EQ(reason(), "There is more in the file than its structure names");
}

TEST_F(SceneFileHostileTest, APlainArrayClaimsMoreThanItStores)
{
    addImage();
    parts.addArray(4, std::string(16, 'x'), 1024, osb::Encoding::Plain);

    EXPECT_EQ(reason(), "An array claims more than the file holds");
}

TEST_F(SceneFileHostileTest, ACompressedArrayClaimsSixtyFourGigabytes)
{
    addImage();
    parts.addArray(4, std::string(1024, 'x'), std::uint64_t{64} << 30, osb::Encoding::Zstd);

    EXPECT_EQ(reason(), "An array claims more than the file holds");
}

TEST_F(SceneFileHostileTest, ACompressedArrayIsNoFrame)
{
    addImage();
    parts.addArray(4, std::string(100, 'x'), 1024, osb::Encoding::Zstd);

    EXPECT_EQ(reason(), "Image.Pixels: An array cannot be decompressed");
}

TEST_F(SceneFileHostileTest, ACompressedArrayHoldsMoreThanItClaims)
{
    const std::string content(4096, 'x');
    const auto block = compressed(std::as_bytes(std::span(content)));
    const std::string stored(reinterpret_cast<const char *>(block.data()), block.size());
    for (const std::uint64_t claim : {1024U, 4000U}) {
        parts = OsbParts();
        addImage();
        parts.addArray(4, stored, claim, osb::Encoding::Zstd);

        EXPECT_EQ(reason(), "Image.Pixels: An array cannot be decompressed");
    }
}

TEST_F(SceneFileHostileTest, AnArrayIsEncodedInAnUnknownWay)
{
    addImage();
    parts.addArray(4, std::string(1024, 'x'), 1024, static_cast<osb::Encoding>(7));

    EXPECT_EQ(reason(), "An array is encoded in an unknown way");
}

TEST_F(SceneFileHostileTest, AnArrayDoesNotMatchItsChecksum)
{
    addImage();
    parts.addArray(4, std::string(1024, 'x'));
    parts.arrayBytes[500] = 'y';

    EXPECT_EQ(reason(), "Image.Pixels: An array is damaged");
}

TEST_F(SceneFileHostileTest, AnArrayIsUsedTwice)
{
    addImage();
    parts.addArray(4, std::string(1024, 'x'));
    parts.addContainer(0);
    parts.containers.back().mutate_value_count(1);
    parts.values.emplace_back(std::uint16_t{4}, osb::Place::Array, std::uint8_t{0}, 0U);

    EXPECT_EQ(reason(), "Image.Pixels: The array is missing");
}

TEST_F(SceneFileHostileTest, NamesWouldSpoilTheLog)
{
    for (const std::string &name : {std::string("a\nERROR all is lost"), std::string(), std::string(256, 'a'),
                                    std::string("\xFF\xFE"), std::string("a\0b", 3)}) {
        parts = OsbParts();
        parts.addContainer(parts.addType(name, {}));

        EXPECT_EQ(reason(), "The description of a type makes no sense");
    }
    parts = OsbParts();
    parts.addContainer(parts.addType("Future", {{"\x1b[2J", Kind::Bool}}));
    EXPECT_EQ(reason(), "The description of the type Future makes no sense");
}

TEST_F(SceneFileHostileTest, TypesAreCountless)
{
    for (int i = 0; i < 5000; ++i)
        parts.addType("T" + std::to_string(i), {});

    EXPECT_EQ(reason(), "There are too many types");
}

TEST_F(SceneFileHostileTest, TheHeaderLies)
{
    parts.addContainer(nodeType());
    const auto reasonWith = [this](std::function<void(OsbHeader &)> change) {
        parts.changeHeader = std::move(change);
        return reason();
    };

    EXPECT_EQ(reasonWith([](OsbHeader &h) { h.version = 2; }), "Version 2 of the format is not known");
    EXPECT_EQ(reasonWith([](OsbHeader &h) { h.headerSize = 0; }), "Version 1 of the format is not known");
    EXPECT_EQ(reasonWith([](OsbHeader &h) { h.structureSize = std::uint64_t{1} << 40; }),
              "The header gives an impossible size");
    EXPECT_EQ(reasonWith([](OsbHeader &h) { h.structureSize = 0; }), "The structure is damaged");
    EXPECT_EQ(reasonWith([](OsbHeader &h) { ++h.structureChecksum; }), "The structure is damaged");
    EXPECT_EQ(reasonWith([](OsbHeader &h) { h.magic[3] = 'X'; }), "Not a scene file");
    EXPECT_EQ(reasonWith([](OsbHeader &h) { h.fileSize = 7; }).substr(0, 12), "The file has");
}

TEST_F(SceneFileHostileTest, TheStructureIsEmptyOrRandom)
{
    EXPECT_EQ(reasonFor(parts.bytesAround("")), "The structure is malformed");
    std::mt19937 random(1);
    for (std::size_t size = 1; size < 400; ++size) {
        std::string structure(size, '\0');
        for (char &c : structure)
            c = static_cast<char>(random());
        if (size >= 8)
            structure.replace(4, 4, "KXSC");

        EXPECT_EQ(reasonFor(parts.bytesAround(structure)), "The structure is malformed");
    }
}

/// Every byte of the structure, changed behind the checksum's back: refused or loaded, and nothing worse.
TEST_F(SceneFileHostileTest, TheStructureIsChangedEverywhere)
{
    const auto node = nodeType();
    parts.roots = {parts.addContainer(node)};
    parts.addReferences(0, {3});
    parts.addReferences(1, {2, 5});
    parts.addContainer(node);
    parts.addContainer(parts.addType("Group", {{"Attachments", Kind::References}}));
    parts.addReferences(0, {4});
    parts.addContainer(parts.addType("NameAttachment", {{"Name", Kind::String}}));
    parts.addInline(0, "name");
    parts.addContainer(node);
    addImage();
    parts.addArray(4, std::string(1024, 'x'));
    const std::string sound = parts.structure();
    ASSERT_EQ(reasonFor(parts.bytesAround(sound)), "accepted");

    const kxtest::RecordedLog log;
    for (std::size_t i = 0; i < sound.size(); ++i)
        for (const int flip : {0x01, 0x04, 0x80, 0xFF}) {
            std::string changed = sound;
            changed[i] = static_cast<char>(changed[i] ^ flip);
            reasonFor(parts.bytesAround(changed));
        }
    std::mt19937 random(7);
    for (int round = 0; round < 5000; ++round) {
        std::string changed = sound;
        for (int i = 0; i < 4; ++i)
            changed[random() % changed.size()] = static_cast<char>(random());
        reasonFor(parts.bytesAround(changed));
    }
}

TEST_F(SceneFileHostileTest, MaterialsAreNestedAbsurdlyDeep)
{
    const auto material = multiMaterialType();
    parts.roots = {1};
    for (std::uint32_t i = 0; i < 100'000; ++i) {
        parts.addContainer(material);
        parts.addReferences(0, {i + 1 < 100'000 ? i + 2 : 0});
    }

    EXPECT_EQ(reason(), "accepted");
}

TEST_F(SceneFileHostileTest, ChildrenAndAttachmentsHaveGaps)
{
    const auto node = parts.addType("Node", {{"Attachments", Kind::References}, {"Children", Kind::References}});
    parts.roots = {parts.addContainer(node)};
    parts.addReferences(0, {0, 2, 0});
    parts.addReferences(1, {0, 3, 0});
    parts.addContainer(parts.addType("NameAttachment", {}));
    parts.addContainer(node);

    const Result<SceneRoots> roots = readSceneFile(folder.write("gaps.osb", parts.bytes()));

    const NodePtr root = dcast<NodePtr>(roots.value().at(0));
    EXPECT_EQ(root->getNChildren(), 1U);
    EXPECT_EQ(root->getAttachments().size(), 1U);
}

} // namespace
