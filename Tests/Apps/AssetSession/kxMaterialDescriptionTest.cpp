// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxMaterialDescription.h"

#include "Kernel/kxMaterials.h"
#include "SceneGraph/AttachmentContainer.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/MultiPassMaterial.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/TagAttachment.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

namespace {

class kxMaterialDescriptionTest : public testing::Test
{
protected:
    osg::Result<std::vector<kxMaterialDescription::Described>> read(const std::string &materials)
    {
        const std::string file = folder.write("paint.materials.json", R"({"materials": [)" + materials + "]}");
        return kxMaterialDescription::read(QString::fromStdString(file));
    }

    /// The first, which has to be a surface.
    osg::UBRDFMaterialPtr surface(const std::string &material)
    {
        auto result = read(material);
        EXPECT_TRUE(result) << (result ? "" : result.reason());
        if (!result || result.value().empty())
            return nullptr;
        kept = result.value().front().material;
        return osg::UBRDFMaterialPtr::dcast(kept.get());
    }

    std::string complaintAbout(const std::string &materials)
    {
        const auto result = read(materials);
        return result ? "" : result.reason().substr(result.reason().find(": ") + 2);
    }

    kxtest::TemporaryFolder folder;
    osg::FCRef<osg::Material> kept;
};

} // namespace

TEST_F(kxMaterialDescriptionTest, IsKnownByTheEndOfTheName)
{
    EXPECT_TRUE(kxMaterialDescription::isDescription(QStringLiteral("a/B.materials.json")));
    EXPECT_TRUE(kxMaterialDescription::isDescription(QStringLiteral("B.MATERIALS.JSON")));
    EXPECT_FALSE(kxMaterialDescription::isDescription(QStringLiteral("a/materials.json")));
    EXPECT_FALSE(kxMaterialDescription::isDescription(QStringLiteral("a.gltf")));
}

TEST_F(kxMaterialDescriptionTest, SetsTheFieldsThatAreDescribedAndNoOthers)
{
    const osg::UBRDFMaterialPtr material = surface(
        R"({"name": "Gold", "Metalness": 1, "Roughness": 0.25, "IsTwoSided": false, "DiffuseColor": [1, 0.7, 0.3]})");

    ASSERT_TRUE(material);
    EXPECT_EQ(kxMaterials::getName(material), "Gold");
    EXPECT_EQ(material->getMetalness(), 1.0F);
    EXPECT_EQ(material->getRoughness(), 0.25F);
    EXPECT_FALSE(material->getIsTwoSided());
    EXPECT_EQ(material->getDiffuseColor(), (osg::Color4f{1.0F, 0.7F, 0.3F, 1.0F}));
    EXPECT_EQ(material->getClearCoat(), 0.0F);
    EXPECT_FALSE(material->getDiffuseTexture());
}

TEST_F(kxMaterialDescriptionTest, DecodesHexColorsToLinearLight)
{
    const osg::UBRDFMaterialPtr material = surface(R"({"name": "Grey", "DiffuseColor": "#80bc0000"})");

    ASSERT_TRUE(material);
    // 188 of 255 is half of the light by the sRGB curve.
    EXPECT_NEAR(material->getDiffuseColor()[0], 0.5029, 1e-3);
    EXPECT_EQ(material->getDiffuseColor()[1], 0.0F);
    EXPECT_NEAR(material->getDiffuseColor()[3], 128 / 255.0, 1e-6);
}

TEST_F(kxMaterialDescriptionTest, KeepsFolderAndTags)
{
    auto result = read(R"({"name": "Oak", "folder": "Wood/Light", "tags": ["wood", "Eiche"]})");

    ASSERT_TRUE(result) << result.reason();
    EXPECT_EQ(result.value()[0].folder, "Wood/Light");
    const auto tags = osg::findAttachment<osg::TagAttachment>(result.value()[0].material.get());
    ASSERT_TRUE(tags);
    EXPECT_THAT(tags->getMaterials().values(), ElementsAre("wood", "Eiche"));
}

TEST_F(kxMaterialDescriptionTest, LaysPatternsAsTheFieldNeedsThem)
{
    const osg::UBRDFMaterialPtr material = surface(
        R"({"name": "Oak",
            "DiffuseTexture": {"pattern": "wood", "size": 8, "repeat": [2, 3], "offset": [0.25, 0], "rotation": 90},
            "RoughnessTexture": {"pattern": "wood", "size": 8, "repeat": 4},
            "NormalTexture": {"pattern": "wood", "size": 8}})");

    ASSERT_TRUE(material);
    const osg::TexturePtr colors = material->getDiffuseTexture();
    ASSERT_TRUE(colors && material->getRoughnessTexture() && material->getNormalTexture());
    EXPECT_TRUE(colors->getIsSrgb());
    EXPECT_EQ(colors->getScale(), (osg::Vec2f{2.0F, 3.0F}));
    EXPECT_EQ(colors->getOffset(), (osg::Vec2f{0.25F, 0.0F}));
    EXPECT_NEAR(colors->getRotation(), 1.5707963, 1e-6);
    EXPECT_EQ(colors->getImage()->getChannels(), 3U);
    EXPECT_FALSE(material->getRoughnessTexture()->getIsSrgb());
    EXPECT_EQ(material->getRoughnessTexture()->getScale(), (osg::Vec2f{4.0F, 4.0F}));
    EXPECT_EQ(material->getRoughnessTexture()->getImage()->getChannels(), 1U);
    EXPECT_FALSE(material->getNormalTexture()->getIsSrgb());
    EXPECT_EQ(material->getNormalTexture()->getImage()->getChannels(), 3U);
}

TEST_F(kxMaterialDescriptionTest, ReadsPicturesBesideTheFile)
{
    {
        const osg::FCRef<osg::Image> image(osg::Image::create());
        const osg::CPEditor edit(image.get(), osg::AllFieldMask);
        ASSERT_TRUE(image->set(3, 2, 3, osg::PixelType::UInt8));
        ASSERT_TRUE(image->write(folder.file("dots.vif")));
    }

    const osg::UBRDFMaterialPtr material = surface(R"({"name": "Dots", "DiffuseTexture": {"image": "dots.vif"}})");

    ASSERT_TRUE(material && material->getDiffuseTexture());
    EXPECT_EQ(material->getDiffuseTexture()->getImage()->getWidth(), 3U);
}

TEST_F(kxMaterialDescriptionTest, MakesCompositesOfWhatStandsBeforeThem)
{
    auto result = read(R"({"name": "Red"}, {"name": "Blue"},
                          {"name": "Choice", "switch": ["Red", "Blue"], "choice": 1},
                          {"name": "Layers", "multipass": ["Blue", "Red"]})");

    ASSERT_TRUE(result) << result.reason();
    ASSERT_THAT(result.value(), SizeIs(4));
    const auto chooser = osg::SwitchMaterialPtr::dcast(result.value()[2].material.get());
    const auto layers = osg::MultiPassMaterialPtr::dcast(result.value()[3].material.get());
    ASSERT_TRUE(chooser && layers);
    EXPECT_EQ(chooser->getChoice(), 1);
    EXPECT_THAT(chooser->getMaterials().values(),
                ElementsAre(result.value()[0].material.get(), result.value()[1].material.get()));
    EXPECT_THAT(layers->getMaterials().values(),
                ElementsAre(result.value()[1].material.get(), result.value()[0].material.get()));
}

TEST_F(kxMaterialDescriptionTest, NamesTheMaterialAndWhatIsWrong)
{
    EXPECT_EQ(complaintAbout(R"({"Roughness": 1})"), "a material has no name");
    EXPECT_EQ(complaintAbout(R"(7)"), "a material has no name");
    EXPECT_EQ(complaintAbout(R"({"name": "A"}, {"name": "A"})"), "'A': there are two of this name");
    EXPECT_EQ(complaintAbout(R"({"name": "A", "Shininess": 1})"), "'A': 'Shininess' is no field of a surface");
    EXPECT_EQ(complaintAbout(R"({"name": "A", "Roughness": "high"})"), "'A': 'Roughness' is not a number");
    EXPECT_EQ(complaintAbout(R"({"name": "A", "IsTwoSided": 1})"), "'A': 'IsTwoSided' is neither true nor false");
    EXPECT_EQ(complaintAbout(R"({"name": "A", "DiffuseColor": [1, -1, 0]})"),
              R"('A': 'DiffuseColor' is neither "#rrggbb" nor [r, g, b] nor [r, g, b, a])");
    EXPECT_EQ(complaintAbout(R"({"name": "A", "Environment": {}})"), "'A': 'Environment' cannot be described");
    EXPECT_EQ(complaintAbout(R"({"name": "A", "tags": ["two words"]})"), "'A': 'tags' is not a list of words");
    EXPECT_EQ(complaintAbout(R"({"name": "A", "tags": "metal"})"), "'A': 'tags' is not a list of words");
    EXPECT_THAT(complaintAbout(R"({"name": "A", "BumpTexture": {"pattern": "tweed"}})"),
                StartsWith("'A': 'BumpTexture' has no texture: there is no pattern 'tweed'"));
    EXPECT_EQ(complaintAbout(R"({"name": "A", "BumpTexture": {"pattern": "noise", "repeat": "x"}})"),
              "'A': 'BumpTexture' has no texture: 'repeat' is neither a number nor two");
    EXPECT_EQ(complaintAbout(R"({"name": "A", "BumpTexture": {"image": "missing.png"}})"),
              "'A': 'BumpTexture' has no texture: the picture 'missing.png' cannot be read");
    EXPECT_EQ(complaintAbout(R"({"name": "A", "switch": ["B"]})"), "'A': there is no material 'B' before it");
    EXPECT_EQ(complaintAbout(R"({"name": "A", "multipass": []})"), "'A': 'multipass' is not a list of names");
    EXPECT_EQ(complaintAbout(R"({"name": "A"}, {"name": "B", "switch": ["A"], "choice": 1})"),
              "'B': 'choice' is none of its materials, counted from 0");
    EXPECT_EQ(complaintAbout(R"({"name": "A"}, {"name": "B", "multipass": ["A"], "Roughness": 1})"),
              "'B': 'Roughness' is not known for a multipass");
}

TEST_F(kxMaterialDescriptionTest, NamesTheFileThatIsNoDescription)
{
    const std::string missing = folder.file("none.materials.json");
    const std::string broken = folder.write("broken.materials.json", "{\"materials\": [");
    const std::string other = folder.write("other.materials.json", "{}");

    const auto reasonFor = [](const std::string &file) {
        const auto result = kxMaterialDescription::read(QString::fromStdString(file));
        return result ? "" : result.reason();
    };
    EXPECT_EQ(reasonFor(missing), missing + ": is no file");
    EXPECT_THAT(reasonFor(broken), StartsWith(broken + ": "));
    EXPECT_THAT(reasonFor(broken), HasSubstr(" at byte "));
    EXPECT_EQ(reasonFor(other), other + ": holds no list 'materials'");
}
