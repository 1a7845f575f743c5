// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/FieldContainerType.h"

#include "FieldFiller.h"

#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/SceneFile.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <bit>
#include <set>

namespace {

using namespace osg;

std::vector<std::string> typeNames(bool isAbstract)
{
    std::vector<std::string> names;
    for (const FieldContainerType *type : FieldContainerFactory::the().types())
        if (type->isAbstract() == isAbstract)
            names.emplace_back(type->getCName());
    return names;
}

/// Walks every type that containers are made of: what one declaration promises holds for each of them.
class FieldContainerTypeTest : public testing::TestWithParam<std::string>
{
protected:
    FCRef<FieldContainer> create() const { return type().createContainer(); }
    FCRef<FieldContainer> createFilled(std::uint64_t seed) const
    {
        FCRef<FieldContainer> container = create();
        kxtest::FieldFiller(seed).fill(container);
        return container;
    }
    static const FieldContainerType &type() { return *FieldContainerFactory::the().findType(GetParam()); }
};

TEST_P(FieldContainerTypeTest, SurvivesAFile)
{
    const kxtest::TemporaryFolder folder;
    for (const bool isCompressed : {false, true})
        for (std::uint64_t seed = 1; seed <= 10; ++seed) {
            const FCRef<FieldContainer> original = createFilled(seed);

            const Result<void> written = writeSceneFile(folder.file("scene.osb"), {original.get()},
                                                        {.isCompressed = isCompressed, .leavesOut = {}});
            ASSERT_TRUE(written) << written.reason();
            const Result<SceneRoots> roots = readSceneFile(folder.file("scene.osb"));
            ASSERT_TRUE(roots) << roots.reason();

            EXPECT_EQ(findDifference(original.get(), roots.value().at(0).get()), std::nullopt);
            const std::string bytes = folder.read("scene.osb");
            ASSERT_TRUE(writeSceneFile(folder.file("again.osb"), {roots.value().at(0).get()},
                                       {.isCompressed = isCompressed, .leavesOut = {}}));
            EXPECT_EQ(folder.read("again.osb"), bytes);
        }
}

TEST_P(FieldContainerTypeTest, SurvivesCloning)
{
    for (std::uint64_t seed = 1; seed <= 10; ++seed) {
        const FCRef<FieldContainer> original = createFilled(seed);

        const FieldContainerPtr clone = deepClone(original.get(), {});
        EXPECT_EQ(clone->getRefCount(), 0);
        const FCRef<FieldContainer> owner(clone);

        EXPECT_NE(clone, original.get());
        EXPECT_EQ(findDifference(original.get(), clone), std::nullopt);
    }
}

TEST_P(FieldContainerTypeTest, DiffersWhereAnyOneFieldDiffers)
{
    for (const FieldInfo &field : type().fields()) {
        const FCRef<FieldContainer> original = createFilled(1);
        const FCRef<FieldContainer> changed(deepClone(original.get(), {}));

        kxtest::FieldFiller(99).change(changed, field);

        const std::string expected = GetParam() + "." + field.name;
        const auto difference = findDifference(original.get(), changed.get());
        ASSERT_TRUE(difference) << expected;
        EXPECT_EQ(difference->substr(0, expected.size()), expected);
    }
}

TEST_P(FieldContainerTypeTest, IsDestroyedWithAllThatItHolds)
{
    const std::size_t before = FieldContainerFactory::the().livingContainerCount();

    createFilled(1).reset();

    EXPECT_EQ(FieldContainerFactory::the().livingContainerCount(), before);
}

TEST_P(FieldContainerTypeTest, StartsWithTheSameDefaultsEachTime)
{
    const FCRef<FieldContainer> first = create();
    createFilled(1);

    EXPECT_EQ(findDifference(first.get(), create().get()), std::nullopt);
}

TEST_P(FieldContainerTypeTest, GivesEachFieldABitOfItsOwn)
{
    FieldMask seen = 0;
    std::set<std::string> names;
    for (const FieldInfo &field : type().fields()) {
        EXPECT_EQ(std::popcount(field.mask), 1) << field.name;
        EXPECT_EQ(field.mask & seen, 0U) << field.name;
        EXPECT_TRUE(names.insert(field.name).second) << field.name;
        seen |= field.mask;
    }
}

TEST_P(FieldContainerTypeTest, HasTheParentsFieldsFirst)
{
    const auto &fields = type().fields();
    const auto &inherited = FieldContainerFactory::the().findType(type().getParent()->getCName())->fields();
    ASSERT_LE(inherited.size(), fields.size());
    for (std::size_t i = 0; i < inherited.size(); ++i) {
        EXPECT_STREQ(fields[i].name, inherited[i].name);
        EXPECT_EQ(fields[i].mask, inherited[i].mask);
    }
}

TEST_P(FieldContainerTypeTest, FindsItsFieldsByName)
{
    for (const FieldInfo &field : type().fields())
        EXPECT_EQ(type().findField(field.name), &field);
    EXPECT_EQ(type().findField("NoSuchField"), nullptr);
    EXPECT_EQ(type().findField(""), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Types, FieldContainerTypeTest, testing::ValuesIn(typeNames(false)),
                         [](const auto &test) { return test.param; });

TEST(FieldContainerTypeListTest, MakesNothingOfAbstractTypes)
{
    EXPECT_EQ(typeNames(true), (std::vector<std::string>{"Attachment", "AttachmentContainer", "FieldContainer",
                                                         "Material", "NodeCore", "UEnvironmentMaterial"}));
    for (const std::string &name : typeNames(true))
        EXPECT_EQ(FieldContainerFactory::the().findType(name)->createContainer(), NullFC);
}

TEST(FieldContainerTypeListTest, DerivesFromItselfAndItsAncestors)
{
    const auto isA = [](const char *name, const char *other) {
        return FieldContainerFactory::the().findType(name)->isDerivedFrom(
            *FieldContainerFactory::the().findType(other));
    };

    EXPECT_TRUE(isA("UEnvironmentSwitchMaterial", "UEnvironmentSwitchMaterial"));
    EXPECT_TRUE(isA("UEnvironmentSwitchMaterial", "FieldContainer"));
    EXPECT_FALSE(isA("UEnvironmentSwitchMaterial", "UEnvironmentMaterial"));
    EXPECT_FALSE(isA("MultiMaterial", "SwitchMaterial"));
}

/// Names are what files go by: a renamed field would be lost from every file that exists.
TEST(FieldContainerTypeListTest, KeepsTheNamesThatFilesUse)
{
    std::vector<std::string> found;
    for (const FieldContainerType *type : FieldContainerFactory::the().types()) {
        const auto *parent = type->getParent();
        std::string line = std::string(type->getCName()) + " <- " + (parent != nullptr ? parent->getCName() : "");
        const std::size_t inherited =
            parent != nullptr ? FieldContainerFactory::the().findType(parent->getCName())->fields().size() : 0;
        for (std::size_t i = inherited; i < type->fields().size(); ++i)
            line += std::string(i == inherited ? ": " : " ") + type->fields()[i].name;
        found.push_back(line);
    }

    EXPECT_EQ(found, (std::vector<std::string>{
                         "AssetAttachment <- Attachment: Uuid Category Url Checksum UserEdited",
                         "Attachment <- FieldContainer",
                         "AttachmentContainer <- FieldContainer: Attachments",
                         "CameraCore <- Group: Camera",
                         "Constraint <- AttachmentContainer: Kind Ends IsActive",
                         "Environment <- Group: Material",
                         "FieldContainer <- ",
                         "Geometry <- NodeCore: Positions Normals TexCoords Colors Indices FaceSizes Material",
                         "Group <- NodeCore",
                         "Image <- AttachmentContainer: Width Height Channels DataType Pixels",
                         "ImageAttachment <- Attachment: Image",
                         "JsonAttachment <- Attachment: Text",
                         "KeyAttachment <- Attachment: Key",
                         "Light <- Group: Kind Color Intensity InnerConeAngle OuterConeAngle IsOn",
                         "LightLinkSet <- AttachmentContainer: Lights Members IsExclusive",
                         "Material <- AttachmentContainer: ValuePairs",
                         "MaterialGroup <- Group: Material",
                         "MaterialPool <- Group: Materials Cameras Constraints LightLinkSets",
                         "MultiMaterial <- Material: Materials",
                         "MultiPassMaterial <- MultiMaterial",
                         "NameAttachment <- Attachment: Name",
                         "Node <- AttachmentContainer: Core Children",
                         "NodeCore <- AttachmentContainer",
                         "OverrideMaterialAttachment <- Attachment: Material",
                         "ReferenceAttachment <- Attachment: Source",
                         "Sceneplate <- Group: IsFront Image Position Size Opacity IsVisible",
                         "Switch <- Group: Choice",
                         "SwitchMaterial <- MultiMaterial: Choice",
                         "SynchronizationAttachment <- Attachment: Partners",
                         "TagAttachment <- Attachment: Materials",
                         "Texture <- AttachmentContainer: Image Offset Scale Rotation WrapU WrapV IsSrgb",
                         "Transform <- Group: Matrix",
                         "Transform3D <- Group: Translation RotationAsQuaternion Scale",
                         "UBRDFMaterial <- Material: DiffuseColor DiffuseTexture SpecularColor Roughness "
                         "RoughnessTexture Metalness MetalnessTexture ClearCoat ClearCoatRoughness Transparency "
                         "TransparencyTexture TransmissionColor IndexOfRefraction NormalTexture BumpTexture "
                         "BumpStrength IncandescenceColor IncandescenceTexture Sheen Anisotropy IsTwoSided "
                         "Environment",
                         "UEnvironmentMaterial <- Material: Intensity Tint Rotation",
                         "UEnvironmentSwitchMaterial <- SwitchMaterial",
                         "USkyEnvironmentMaterial <- UEnvironmentMaterial: SunDirection Turbidity SunSize "
                         "GroundColor",
                         "USphereEnvironmentMaterial <- UEnvironmentMaterial: Image IsVisible",
                         "UberCamera <- AttachmentContainer: From At Up FieldOfView Near Far",
                         "UberMaterial <- Material: BRDFMaterials",
                     }));
}

} // namespace
