// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxMaterials.h"

#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxMaterialTags.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxRaytracingManager.h"
#include "Kernel/kxRaytracingUtils.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "Kernel/kxUberMaterialUtils.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/ImageAttachment.h"
#include "SceneGraph/MaterialGroup.h"
#include "SceneGraph/MultiPassMaterial.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/TagAttachment.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"
#include "SceneGraph/UberMaterial.h"
#include "Support/SceneTest.h"

#include <QSignalSpy>
#include <QString>

#include <gmock/gmock.h>

#include <map>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class kxMaterialsTest : public kxtest::SceneTest
{
protected:
    static osg::FCRef<osg::UberMaterial> uberOf(const std::vector<osg::UBRDFMaterialPtr> &layers)
    {
        osg::FCRef<osg::UberMaterial> uber(osg::UberMaterial::create());
        const osg::CPEditor edit(uber.get(), osg::UberMaterial::BRDFMaterialsFieldMask);
        for (const osg::UBRDFMaterialPtr &layer : layers)
            uber->editBRDFMaterials().push_back(layer);
        return uber;
    }

    static std::vector<osg::MaterialPtr> recursive(const osg::MaterialPtr &material, bool intoLayers)
    {
        std::vector<osg::MaterialPtr> materials;
        kxMaterials::getRecursiveMaterials(material, materials, intoLayers);
        return materials;
    }
};

TEST_F(kxMaterialsTest, NamesMaterialsExactly)
{
    const auto first = newMaterial();
    const auto second = newMaterial();
    EXPECT_EQ(kxMaterials::getName(first), "");

    kxMaterials::setName(first, "Stühle 漆", false);
    kxMaterials::setName(second, "Stühle 漆", false);

    EXPECT_EQ(kxMaterials::getName(first), "Stühle 漆");
    EXPECT_EQ(kxMaterials::getName(second), "Stühle 漆");
}

TEST_F(kxMaterialsTest, NamesNothingForNull)
{
    EXPECT_EQ(kxMaterials::getName(nullptr), "");
    kxMaterials::setName(nullptr, "Oak", true);
}

TEST_F(kxMaterialsTest, AnnouncesANameOnRequest)
{
    const auto material = newMaterial();
    QSignalSpy names(&kxScenegraph::notifier(), &kxScenegraphNotifier::nameChanged);

    kxMaterials::setName(material, "quiet", false);
    EXPECT_EQ(names.count(), 0);
    kxMaterials::setName(material, "loud", true);

    ASSERT_EQ(names.count(), 1);
    EXPECT_EQ(names[0][0].value<quint32>(), material->getFieldContainerId());
}

TEST_F(kxMaterialsTest, GivesTheEntriesOfCompositesInOrder)
{
    const auto a = newMaterial();
    const auto b = newMaterial();

    EXPECT_THAT(kxMaterials::getSubMaterials(compositeOf<osg::SwitchMaterial>({b, a}).get()),
                ElementsAre(b.get(), a.get()));
    EXPECT_THAT(kxMaterials::getSubMaterials(compositeOf<osg::MultiPassMaterial>({a, b, a}).get()),
                ElementsAre(a.get(), b.get(), a.get()));
    EXPECT_THAT(kxMaterials::getSubMaterials(compositeOf<osg::MultiMaterial>({a}).get()), ElementsAre(a.get()));
}

TEST_F(kxMaterialsTest, CountsNoLayersAsSubMaterials)
{
    const osg::UBRDFMaterialPtr layer = osg::UBRDFMaterial::create();
    const auto uber = uberOf({layer});

    EXPECT_THAT(kxMaterials::getSubMaterials(uber.get()), IsEmpty());
    EXPECT_THAT(kxMaterials::getSubMaterials(nullptr), IsEmpty());
    EXPECT_THAT(recursive(uber.get(), false), ElementsAre(uber.get()));
    EXPECT_THAT(recursive(uber.get(), true), ElementsAre(uber.get(), layer));
}

TEST_F(kxMaterialsTest, CollectsCompositesParentsFirstAndEachOnce)
{
    const auto a = newMaterial();
    const auto b = newMaterial();
    const auto inner = compositeOf<osg::MultiPassMaterial>({a, b});
    const auto outer = compositeOf<osg::SwitchMaterial>({inner.get(), b});

    EXPECT_THAT(recursive(outer.get(), false), ElementsAre(outer.get(), inner.get(), a.get(), b.get()));
    EXPECT_THAT(recursive(a, false), ElementsAre(a.get()));
    EXPECT_THAT(recursive(nullptr, false), IsEmpty());
}

TEST_F(kxMaterialsTest, EndsOnACompositeThatContainsItself)
{
    const auto outer = compositeOf<osg::SwitchMaterial>({});
    {
        const osg::CPEditor edit(outer.get(), osg::SwitchMaterial::MaterialsFieldMask);
        outer->addMaterial(outer.get());
    }
    setUuid(outer.get(), "cycle");

    EXPECT_THAT(recursive(outer.get(), false), ElementsAre(outer.get()));
    EXPECT_FALSE(kxMaterials::findAssetMaterial("cycle"));

    const osg::CPEditor edit(outer.get(), osg::SwitchMaterial::MaterialsFieldMask);
    outer->editMaterials().clear();
}

TEST_F(kxMaterialsTest, FindsAssetMaterialsInThePoolOnNodesAndInComposites)
{
    const auto inPool = newAssetMaterial("in the pool");
    const auto assigned = newAssetMaterial("assigned");
    const auto entry = newAssetMaterial("entry");
    kxScenegraph::addToMaterialPool(inPool);
    addNode(geometryWith(assigned));
    kxScenegraph::addToMaterialPool(
        compositeOf<osg::SwitchMaterial>({compositeOf<osg::MultiPassMaterial>({entry}).get()}).get());

    EXPECT_EQ(kxMaterials::findAssetMaterial("in the pool"), inPool.get());
    EXPECT_EQ(kxMaterials::findAssetMaterial("assigned"), assigned.get());
    EXPECT_EQ(kxMaterials::findAssetMaterial("entry"), entry.get());
    EXPECT_THAT(kxMaterials::getAllAssetMaterials(), ElementsAre(inPool.get(), assigned.get(), entry.get()));
}

TEST_F(kxMaterialsTest, FindsNoMaterialOutsideTheScene)
{
    const auto loose = newAssetMaterial("loose");
    const osg::FCRef<osg::Node> outside(osg::makeNodeFor(geometryWith(newAssetMaterial("outside"))));
    const osg::FCRef<osg::UBRDFMaterial> layer(osg::UBRDFMaterial::create());
    setUuid(layer.get(), "layer");
    kxScenegraph::addToMaterialPool(uberOf({layer.get()}).get());

    EXPECT_FALSE(kxMaterials::findAssetMaterial("loose"));
    EXPECT_FALSE(kxMaterials::findAssetMaterial("outside"));
    EXPECT_FALSE(kxMaterials::findAssetMaterial("layer"));
    EXPECT_THAT(kxMaterials::getAllAssetMaterials(), IsEmpty());
}

TEST_F(kxMaterialsTest, FindsTheMaterialWithTheLowestId)
{
    const auto first = newAssetMaterial("same");
    const auto second = newAssetMaterial("same");
    kxScenegraph::addToMaterialPool(second);
    EXPECT_EQ(kxMaterials::findAssetMaterial("same"), second.get());

    kxScenegraph::addToMaterialPool(first);

    EXPECT_EQ(kxMaterials::findAssetMaterial("same"), first.get());
}

TEST_F(kxMaterialsTest, FollowsAMaterialIntoTheSceneAndOut)
{
    const auto material = newAssetMaterial("moving");
    const osg::GeometryPtr geometry = geometryWith(material);
    const osg::FCRef<osg::Node> parent(osg::makeNodeFor(osg::Group::create()));
    addNodeBelow(parent, geometry);
    EXPECT_FALSE(kxMaterials::findAssetMaterial("moving"));
    {
        const osg::CPEditor edit(kxScenegraph::getRoot(), osg::Node::ChildrenFieldMask);
        kxScenegraph::getRoot()->addChild(parent);
    }
    EXPECT_EQ(kxMaterials::findAssetMaterial("moving"), material.get());

    remove(parent);

    EXPECT_FALSE(kxMaterials::findAssetMaterial("moving"));
}

TEST_F(kxMaterialsTest, FollowsChangesOfTheAssignmentAndTheCore)
{
    const auto first = newAssetMaterial("first");
    const auto second = newAssetMaterial("second");
    const osg::GeometryPtr geometry = geometryWith(first);
    const osg::NodePtr node = addNode(geometry);
    {
        const osg::CPEditor edit(geometry, osg::Geometry::MaterialFieldMask);
        geometry->setMaterial(second);
    }
    EXPECT_FALSE(kxMaterials::findAssetMaterial("first"));
    EXPECT_EQ(kxMaterials::findAssetMaterial("second"), second.get());

    {
        const osg::CPEditor edit(node, osg::Node::CoreFieldMask);
        node->setCore(geometryWith(first));
    }
    EXPECT_EQ(kxMaterials::findAssetMaterial("first"), first.get());
    EXPECT_FALSE(kxMaterials::findAssetMaterial("second"));
}

TEST_F(kxMaterialsTest, FollowsChangesOfTheUuid)
{
    const auto material = newAssetMaterial("before");
    kxScenegraph::addToMaterialPool(material);

    setUuid(material, "after");

    EXPECT_FALSE(kxMaterials::findAssetMaterial("before"));
    EXPECT_EQ(kxMaterials::findAssetMaterial("after"), material.get());
}

TEST_F(kxMaterialsTest, FollowsTheRemovalOfTheAttachment)
{
    const auto material = newAssetMaterial("tagged");
    kxScenegraph::addToMaterialPool(material);
    {
        const osg::CPEditor edit(material.get(), osg::Material::AttachmentsFieldMask);
        material->removeAttachment(osg::AssetAttachment::getClassType());
    }

    EXPECT_FALSE(kxMaterials::findAssetMaterial("tagged"));
    EXPECT_THAT(kxMaterials::getAllAssetMaterials(), IsEmpty());
}

TEST_F(kxMaterialsTest, ForgetsADestroyedMaterial)
{
    auto material = newAssetMaterial("gone");
    kxScenegraph::addToMaterialPool(material);

    kxScenegraph::removeFromMaterialPool(material);
    material.reset();

    EXPECT_FALSE(kxMaterials::findAssetMaterial("gone"));
}

TEST_F(kxMaterialsTest, FindsNothingForAnEmptyOrUnknownUuid)
{
    kxScenegraph::addToMaterialPool(newAssetMaterial(""));

    EXPECT_FALSE(kxMaterials::findAssetMaterial(""));
    EXPECT_FALSE(kxMaterials::findAssetMaterial("unknown"));
    EXPECT_EQ(kxMaterials::getAllAssetMaterials().size(), 1U);
}

TEST_F(kxMaterialsTest, GivesTheMaterialsAtAndBelowANodeInOrderOfTheirIds)
{
    const auto first = newMaterial();
    const auto second = newMaterial();
    const auto third = newMaterial();
    const osg::NodePtr node = addNode(geometryWith(third));
    const osg::MaterialGroupPtr group = osg::MaterialGroup::create();
    {
        const osg::CPEditor edit(group, osg::MaterialGroup::MaterialFieldMask);
        group->setMaterial(second);
    }
    const osg::NodePtr below = addNodeBelow(node, group);
    addNodeBelow(below, geometryWith(first));
    addNodeBelow(below, geometryWith(third));
    addNodeBelow(below, geometryWith(nullptr));

    EXPECT_THAT(kxMaterials::getMaterials(node), ElementsAre(first.get(), second.get(), third.get()));
    EXPECT_THAT(kxMaterials::getMaterials(below), ElementsAre(first.get(), second.get(), third.get()));
    EXPECT_THAT(kxMaterials::getMaterials(nullptr), IsEmpty());
}

TEST_F(kxMaterialsTest, GivesTheMaterialsOfEnvironmentsButNotOfPools)
{
    kxScenegraph::addToMaterialPool(newMaterial());

    EXPECT_THAT(kxMaterials::getMaterials(kxScenegraph::getRoot()), ElementsAre(kxDefaultEnvironment::getDefault()));
}

TEST_F(kxMaterialsTest, DescendsIntoPartsOnRequest)
{
    const osg::UBRDFMaterialPtr layer = osg::UBRDFMaterial::create();
    const auto uber = uberOf({layer});
    const auto choice = compositeOf<osg::SwitchMaterial>({uber.get()});
    const osg::NodePtr node = addNode(geometryWith(choice.get()));
    const auto before = newMaterial();
    std::set<osg::MaterialPtr> flat{before};
    std::set<osg::MaterialPtr> deep;

    kxMaterials::getMaterialsRecursive(node, flat, false);
    kxMaterials::getMaterialsRecursive(node, deep, true);

    EXPECT_THAT(flat, ElementsAre(choice.get(), before.get()));
    EXPECT_THAT(deep, ElementsAre(layer, uber.get(), choice.get()));
}

TEST_F(kxMaterialsTest, FindsTheNodesOfAMaterial)
{
    const auto material = newMaterial();
    const auto other = newMaterial();
    const osg::NodePtr root = addNode(geometryWith(material));
    const osg::NodePtr below = addNodeBelow(root, geometryWith(other));
    const osg::NodePtr deepest = addNodeBelow(below, geometryWith(material));
    addNodeBelow(root, geometryWith(compositeOf<osg::SwitchMaterial>({material}).get()));
    addNode(geometryWith(material));

    EXPECT_THAT(kxMaterials::getNodesWithMaterial(material, root), ElementsAre(root, deepest));
    EXPECT_THAT(kxMaterials::getNodesWithMaterial(material, below), ElementsAre(deepest));
    EXPECT_THAT(kxMaterials::getNodesWithMaterial(nullptr, root), IsEmpty());
    EXPECT_THAT(kxMaterials::getNodesWithMaterial(material, nullptr), IsEmpty());
}

TEST_F(kxMaterialsTest, GivesThePreviewKeptOnAMaterial)
{
    const auto material = newMaterial();
    EXPECT_FALSE(kxMaterials::getPreviewImage(material));
    EXPECT_FALSE(kxMaterials::getPreviewImage(nullptr));
    const osg::ImageAttachmentPtr attachment = osg::ImageAttachment::create();
    const osg::ImagePtr image = osg::Image::create();
    {
        const osg::CPEditor edit(attachment, osg::ImageAttachment::ImageFieldMask);
        attachment->setImage(image);
    }
    {
        const osg::CPEditor edit(material.get(), osg::Material::AttachmentsFieldMask);
        material->addAttachment(attachment);
    }

    EXPECT_EQ(kxMaterials::getPreviewImage(material), image);
}

TEST_F(kxMaterialsTest, KeepsOneValuePerKey)
{
    const auto material = newMaterial();

    kxMaterials::addValuePair(material, "key", "value");
    kxMaterials::addValuePair(material, "key", "value");
    kxMaterials::addValuePair(material, "other", "2");
    EXPECT_TRUE(kxMaterials::hasValuePair(material, "key", "value"));
    EXPECT_FALSE(kxMaterials::hasValuePair(material, "key", "another"));
    EXPECT_FALSE(kxMaterials::hasValuePair(material, "missing", ""));
    kxMaterials::addValuePair(material, "key", "new");

    EXPECT_EQ(material->getValuePairs(), (osg::StringMap{{"key", "new"}, {"other", "2"}}));
}

TEST_F(kxMaterialsTest, RemovesAKeyAndSaysSoOnRequest)
{
    const auto material = newMaterial();
    kxMaterials::addValuePair(material, "a", "1");
    kxMaterials::addValuePair(material, "b", "2");
    QSignalSpy changes(&kxScenegraph::notifier(), &kxScenegraphNotifier::valuePairsChanged);

    kxMaterials::removeKey(material, "a", false);
    EXPECT_EQ(changes.count(), 0);
    kxMaterials::removeKey(material, "b", true);
    kxMaterials::removeKey(material, "b", true);

    EXPECT_TRUE(material->getValuePairs().empty());
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(kxMaterialsTest, HasNoValuesForNull)
{
    kxMaterials::addValuePair(nullptr, "key", "value");
    kxMaterials::removeKey(nullptr, "key", true);

    EXPECT_FALSE(kxMaterials::hasValuePair(nullptr, "key", "value"));
}

TEST_F(kxMaterialsTest, ListsThePoolInAscendingOrder)
{
    const auto first = newMaterial();
    const auto second = newMaterial();
    kxScenegraph::addToMaterialPool(second);
    kxScenegraph::addToMaterialPool(first);

    const std::set<std::uint32_t> ids = kxMaterials::getMaterialPoolMaterialIds();

    ASSERT_EQ(ids.size(), 4U); // with the default environment and its choice
    EXPECT_EQ(*std::next(ids.begin(), 2), first->getFieldContainerId());
    EXPECT_EQ(*std::next(ids.begin(), 3), second->getFieldContainerId());
}

TEST_F(kxMaterialsTest, AnswersWhatUsersCallTheTypes)
{
    kxKernelServiceFactory::the().startKernel();
    kxMessage message;

    ASSERT_TRUE(kxController::call("getUIMaterialNames", message));

    const auto names = message.get<std::map<std::string, QString>>("names");
    ASSERT_TRUE(names.has_value());
    EXPECT_EQ(names->at("SwitchMaterial"), "Switch Material");
    EXPECT_EQ(names->at("UBRDFMaterial"), "BRDF Material");
    for (const osg::FieldContainerType *type : osg::FieldContainerFactory::the().types()) {
        if (!type->isAbstract() && type->isDerivedFrom(osg::Material::getClassType())) {
            EXPECT_EQ(names->count(type->getCName()), 1U) << type->getCName();
        }
    }
}

using kxMaterialTagsTest = kxtest::SceneTest;

TEST_F(kxMaterialTagsTest, AddsATagOnceAndMakesTheAttachment)
{
    const auto material = newMaterial();

    kxMaterialTags::addTag(material, "Holz");
    kxMaterialTags::addTag(material, "漆");
    kxMaterialTags::addTag(material, "Holz");
    kxMaterialTags::addTag(nullptr, "Holz");

    const auto attachment = osg::findAttachment<osg::TagAttachment>(material.get());
    ASSERT_TRUE(attachment);
    EXPECT_EQ(attachment->getTagString(), "Holz, 漆");
    EXPECT_EQ(material->getAttachments().size(), 1U);
}

using kxUberMaterialUtilsTest = kxMaterialsTest;

TEST_F(kxUberMaterialUtilsTest, GivesTheLayersOfAnUberMaterial)
{
    const osg::UBRDFMaterialPtr bottom = osg::UBRDFMaterial::create();
    const osg::UBRDFMaterialPtr top = osg::UBRDFMaterial::create();
    const auto uber = uberOf({bottom, top});

    EXPECT_THAT(kxUberMaterialUtils::getBRDFMaterials(uber.get()), ElementsAre(bottom, top));
    EXPECT_THAT(kxUberMaterialUtils::getBRDFMaterials(bottom), IsEmpty());
    EXPECT_THAT(kxUberMaterialUtils::getBRDFMaterials(nullptr), IsEmpty());
}

TEST_F(kxUberMaterialUtilsTest, KnowsEnvironmentMaterialsAndTheirSwitches)
{
    const osg::FCRef<osg::USkyEnvironmentMaterial> sky(osg::USkyEnvironmentMaterial::create());

    EXPECT_TRUE(kxUberMaterialUtils::isEnvironmentMaterial(sky.get()));
    EXPECT_TRUE(kxUberMaterialUtils::isEnvironmentMaterial(kxDefaultEnvironment::getSwitch()));
    EXPECT_FALSE(kxUberMaterialUtils::isEnvironmentMaterial(compositeOf<osg::SwitchMaterial>({sky.get()}).get()));
    EXPECT_FALSE(kxUberMaterialUtils::isEnvironmentMaterial(newMaterial()));
    EXPECT_FALSE(kxUberMaterialUtils::isEnvironmentMaterial(nullptr));
}

TEST(kxRaytracingManagerTest, HandsOutTheSettingsInForce)
{
    kxRaytracingUtils &settings = kxRaytracingManager::getRaytracingUtils();
    EXPECT_FALSE(settings.isPhotometric());
    EXPECT_EQ(settings.getPhotometricConversionFactor(), 100.0F);

    settings.setPhotometric(true);
    settings.setPhotometricConversionFactor(250.0F);

    EXPECT_TRUE(kxRaytracingManager::getRaytracingUtils().isPhotometric());
    EXPECT_EQ(kxRaytracingManager::getRaytracingUtils().getPhotometricConversionFactor(), 250.0F);
    settings = kxRaytracingUtils();
}

} // namespace
