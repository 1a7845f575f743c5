// SPDX-License-Identifier: Apache-2.0
// What a material takes from the scene when it is loaded: its environment, and the unit of its light.
#include "Assets/kxMaterialAssetItem.h"
#include "ChangeListener.h"
#include "EditWatch.h"
#include "Kernel/kxFileIO.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxRaytracingManager.h"
#include "Kernel/kxRaytracingUtils.h"
#include "Kernel/kxScenegraph.h"
#include "MaterialFixture.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"

namespace {

class kxMaterialAssetItemLightingTest : public MaterialFixture
{
protected:
    static void photometric(bool isInForce, float factor = 100.0F)
    {
        kxRaytracingManager::getRaytracingUtils().setPhotometric(isInForce);
        kxRaytracingManager::getRaytracingUtils().setPhotometricConversionFactor(factor);
    }

    /// Stores a glowing surface in the state \a stored, and loads it in the present one with \a expected.
    float intensityAfterLoading(bool stored, kxAssetPhotometricState expected, bool present)
    {
        const Owned surface = makeSurface("Lamp");
        setGlow(surface, {0.1F, 0.2F, 0.3F, 4.0F});
        photometric(stored);
        const std::string uuid = store(surface);
        photometric(present, 50.0F);
        item(uuid)->setExpectedPhotometricState(expected);
        EXPECT_TRUE(item(uuid)->loadMaterial());
        const osg::Color4f glow = glowOf(item(uuid)->getMaterial());
        EXPECT_EQ(glow[0], 0.1F);
        EXPECT_EQ(glow[1], 0.2F);
        EXPECT_EQ(glow[2], 0.3F);
        return glow[3];
    }
};

osg::MaterialPtr environmentOf(const osg::MaterialPtr &material)
{
    return osg::dcast<osg::UBRDFMaterialPtr>(material)->getEnvironment();
}

} // namespace

TEST_F(kxMaterialAssetItemLightingTest, FollowsTheNameOfItsEnvironment)
{
    const Owned surface = makeSurface("Lack");
    const Owned evening = makeSky("Abend");
    {
        osg::CPEditor edit(surface, osg::UBRDFMaterial::EnvironmentFieldMask);
        osg::dcast<osg::UBRDFMaterialPtr>(surface)->setEnvironment(evening);
    }
    const std::string uuid = store(surface);
    const Owned other = makeSky("abend");
    const Owned surfaceOfThatName = makeSurface("Abend");
    const Owned first = makeSky("Abend");
    const Owned second = makeSky("Abend");
    for (const Owned &material : {second, surfaceOfThatName, other, first})
        kxScenegraph::addToMaterialPool(material);

    ASSERT_TRUE(item(uuid)->loadMaterial());

    EXPECT_EQ(environmentOf(item(uuid)->getMaterial()), first.get()) << "the lowest id of that exact name";
}

TEST_F(kxMaterialAssetItemLightingTest, ForgetsItsEnvironmentWhenItIsMadeOfAMaterial)
{
    const Owned surface = makeSurface("Lack");
    const Owned evening = makeSky("Abend");
    {
        osg::CPEditor edit(surface, osg::UBRDFMaterial::EnvironmentFieldMask);
        osg::dcast<osg::UBRDFMaterialPtr>(surface)->setEnvironment(evening);
    }
    const std::string uuid = store(surface);
    kxScenegraph::addToMaterialPool(evening);
    const QUrl directory = item(uuid)->directoryUrl();

    item(uuid)->initFrom(surface, uuid, true);
    item(uuid)->setDirectoryUrl(directory);
    ASSERT_TRUE(item(uuid)->loadMaterial());

    EXPECT_NE(environmentOf(item(uuid)->getMaterial()), evening.get());
}

TEST_F(kxMaterialAssetItemLightingTest, KeepsAnEnvironmentThatHasTheNameAlready)
{
    const Owned surface = makeSurface("Lack");
    {
        osg::CPEditor edit(surface, osg::UBRDFMaterial::EnvironmentFieldMask);
        osg::dcast<osg::UBRDFMaterialPtr>(surface)->setEnvironment(makeSky("Abend"));
    }
    const std::string uuid = store(surface);
    // A payload that brings its environment along.
    ASSERT_TRUE(kxFileIO::saveMaterial(surface, _folder.file("MAT_Lack/Lack.osb").c_str(), false));
    const Owned ofTheScene = makeSky("Abend");
    kxScenegraph::addToMaterialPool(ofTheScene);

    ASSERT_TRUE(item(uuid)->loadMaterial());

    const osg::MaterialPtr environment = environmentOf(item(uuid)->getMaterial());
    ASSERT_TRUE(environment);
    EXPECT_EQ(kxMaterials::getName(environment), "Abend");
    EXPECT_NE(environment, ofTheScene.get());
}

TEST_F(kxMaterialAssetItemLightingTest, FindsEnvironmentSwitchesByNameToo)
{
    const Owned surface = makeSurface("Lack");
    const Owned choices = named(osg::UEnvironmentSwitchMaterial::create(), "Wahl");
    {
        osg::CPEditor edit(surface, osg::UBRDFMaterial::EnvironmentFieldMask);
        osg::dcast<osg::UBRDFMaterialPtr>(surface)->setEnvironment(choices);
    }
    const std::string uuid = store(surface);
    kxScenegraph::addToMaterialPool(choices);

    ASSERT_TRUE(item(uuid)->loadMaterial());

    EXPECT_EQ(environmentOf(item(uuid)->getMaterial()), choices.get());
}

TEST_F(kxMaterialAssetItemLightingTest, LeavesTheEnvironmentWhereNoneHasTheName)
{
    const Owned surface = makeSurface("Lack");
    const Owned evening = makeSky("Abend");
    {
        osg::CPEditor edit(surface, osg::UBRDFMaterial::EnvironmentFieldMask);
        osg::dcast<osg::UBRDFMaterialPtr>(surface)->setEnvironment(evening);
    }
    const std::string uuid = store(surface);
    kxScenegraph::addToMaterialPool(makeSky("ABEND"));

    ASSERT_TRUE(item(uuid)->loadMaterial());

    EXPECT_NE(environmentOf(item(uuid)->getMaterial()), evening.get());
    const osg::MaterialPtr environment = environmentOf(item(uuid)->getMaterial());
    EXPECT_NE(environment ? kxMaterials::getName(environment) : "", "ABEND");
}

TEST_F(kxMaterialAssetItemLightingTest, FollowsNoEnvironmentWithoutAName)
{
    const Owned surface = makeSurface("Lack");
    const Owned unnamed = makeSky("");
    {
        osg::CPEditor edit(surface, osg::UBRDFMaterial::EnvironmentFieldMask);
        osg::dcast<osg::UBRDFMaterialPtr>(surface)->setEnvironment(unnamed);
    }
    const std::string uuid = store(surface);
    kxScenegraph::addToMaterialPool(unnamed);

    ASSERT_TRUE(item(uuid)->loadMaterial());

    EXPECT_NE(environmentOf(item(uuid)->getMaterial()), unnamed.get());
}

TEST_F(kxMaterialAssetItemLightingTest, RaisesTheIntensityToPhotometricUnits)
{
    EXPECT_EQ(intensityAfterLoading(false, Photometric, true), 200.0F);
}

TEST_F(kxMaterialAssetItemLightingTest, LowersTheIntensityFromPhotometricUnits)
{
    EXPECT_EQ(intensityAfterLoading(true, NonPhotometric, false), 4.0F * 0.01F);
}

TEST_F(kxMaterialAssetItemLightingTest, EditsTheLoadedSurfaceOncePerField)
{
    const Owned surface = makeSurface("Lamp");
    setGlow(surface, {1, 1, 1, 4});
    const Owned evening = makeSky("Abend");
    {
        osg::CPEditor edit(surface, osg::UBRDFMaterial::EnvironmentFieldMask);
        osg::dcast<osg::UBRDFMaterialPtr>(surface)->setEnvironment(evening);
    }
    const std::string uuid = store(surface);
    kxScenegraph::addToMaterialPool(evening);
    photometric(true);
    item(uuid)->setExpectedPhotometricState(Photometric);
    std::vector<osg::FieldMask> edits;
    const ChangeListener listener(osg::UBRDFMaterial::getClassType(),
                                  [&edits](osg::FieldMask fields) { edits.push_back(fields); });
    const EditWatch watch;

    ASSERT_TRUE(item(uuid)->loadMaterial());

    std::vector<std::string> named = watch.editsOf(item(uuid)->getMaterial().getFieldContainerId());
    named.erase(named.begin(), named.end() - 2);
    EXPECT_EQ(named, (std::vector<std::string>{"UBRDFMaterial Environment", "UBRDFMaterial IncandescenceColor"}));
    const std::vector<osg::FieldMask> last(edits.end() - 2, edits.end());
    EXPECT_EQ(last, (std::vector<osg::FieldMask>{osg::UBRDFMaterial::EnvironmentFieldMask,
                                                 osg::UBRDFMaterial::IncandescenceColorFieldMask}));
}

TEST_F(kxMaterialAssetItemLightingTest, KeepsTheIntensityInEveryOtherCase)
{
    struct Case
    {
        bool stored;
        kxAssetPhotometricState expected;
        bool present;
    };
    const std::vector<Case> cases = {
        {false, Unknown, false},       {false, Unknown, true},       {false, NonPhotometric, false},
        {false, NonPhotometric, true}, {false, Photometric, false},  {true, Unknown, false},
        {true, Unknown, true},         {true, NonPhotometric, true}, {true, Photometric, false},
        {true, Photometric, true},
    };
    for (const Case &each : cases)
        EXPECT_EQ(intensityAfterLoading(each.stored, each.expected, each.present), 4.0F)
            << each.stored << " " << each.expected << " " << each.present;
}

TEST_F(kxMaterialAssetItemLightingTest, KeepsTheIntensityWhereNoPhotometricStateIsStored)
{
    const Owned surface = makeSurface("Dark");
    setGlow(surface, {1, 1, 1, 0});
    const std::string uuid = store(surface);
    // A payload that gives off light, though its description says nothing about the unit.
    setGlow(surface, {0.5F, 0.25F, 1, 4});
    ASSERT_TRUE(kxFileIO::saveMaterial(surface, _folder.file("MAT_Dark/Dark.osb").c_str(), false));

    for (const bool isPhotometric : {true, false}) {
        photometric(isPhotometric);
        item(uuid)->setExpectedPhotometricState(isPhotometric ? Photometric : NonPhotometric);

        ASSERT_TRUE(item(uuid)->loadMaterial());

        EXPECT_EQ(item(uuid)->getPhotometricState(), Unknown) << "not read from what was loaded";
        EXPECT_EQ(glowOf(item(uuid)->getMaterial()), (osg::Color4f{0.5F, 0.25F, 1, 4})) << isPhotometric;
    }
}

TEST_F(kxMaterialAssetItemLightingTest, AdjustsNoSurfaceWithoutLight)
{
    const Owned surface = makeSurface("Dark");
    setGlow(surface, {1, 1, 1, 0});
    const std::string uuid = store(surface);
    photometric(true);
    item(uuid)->setExpectedPhotometricState(Photometric);

    ASSERT_TRUE(item(uuid)->loadMaterial());

    EXPECT_EQ(glowOf(item(uuid)->getMaterial()), (osg::Color4f{1, 1, 1, 0}));
}
