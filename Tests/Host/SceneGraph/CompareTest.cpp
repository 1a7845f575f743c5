// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Compare.h"

#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/Light.h"
#include "SceneGraph/MaterialGroup.h"
#include "SceneGraph/MultiMaterial.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace osg;

FCRef<UBRDFMaterial> makeMaterial(float roughness)
{
    FCRef<UBRDFMaterial> material(UBRDFMaterial::create());
    const CPEditor edit(material.get(), UBRDFMaterial::RoughnessFieldMask);
    material->setRoughness(roughness);
    return material;
}

FCRef<MultiMaterial> makeComposite(const std::vector<MaterialPtr> &materials)
{
    FCRef<MultiMaterial> composite(MultiMaterial::create());
    const CPEditor edit(composite.get(), MultiMaterial::MaterialsFieldMask);
    composite->editMaterials().assign(materials);
    return composite;
}

TEST(CompareTest, FindsNothingBetweenEqualOnes)
{
    EXPECT_EQ(findDifference(makeMaterial(0.5F).get(), makeMaterial(0.5F).get()), std::nullopt);
    const FCRef<UBRDFMaterial> same = makeMaterial(0.5F);
    EXPECT_EQ(findDifference(same.get(), same.get()), std::nullopt);
}

TEST(CompareTest, ComparesNullWithNull)
{
    EXPECT_EQ(findDifference(nullptr, nullptr), std::nullopt);
    EXPECT_EQ(findDifference(nullptr, makeMaterial(0.5F).get()), "UBRDFMaterial");
    EXPECT_EQ(findDifference(makeMaterial(0.5F).get(), nullptr), "UBRDFMaterial");
}

TEST(CompareTest, TellsTypesApart)
{
    EXPECT_EQ(findDifference(FCRef<Group>(Group::create()).get(), FCRef<Light>(Light::create()).get()), "Group");
}

TEST(CompareTest, NamesThePathToADifference)
{
    const auto makeTree = [](float roughness) {
        const MaterialGroupPtr core = MaterialGroup::create();
        FCRef<Node> root(Node::create());
        const CPEditor editCore(core);
        core->setMaterial(makeMaterial(roughness).get());
        const NodePtr child = Node::create();
        const CPEditor editChild(child);
        child->setCore(core);
        const CPEditor edit(root.get());
        root->addChild(Node::create());
        root->addChild(child);
        return root;
    };

    EXPECT_EQ(findDifference(makeTree(0.1F).get(), makeTree(0.2F).get()), "Node.Children[1].Core.Material.Roughness");
}

TEST(CompareTest, ComparesNumbersBitForBit)
{
    EXPECT_EQ(findDifference(makeMaterial(0.0F).get(), makeMaterial(-0.0F).get()), "UBRDFMaterial.Roughness");
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(findDifference(makeMaterial(nan).get(), makeMaterial(nan).get()), std::nullopt);
}

TEST(CompareTest, NoticesMissingAndAdditionalEntries)
{
    const FCRef<UBRDFMaterial> material = makeMaterial(0.5F);
    const auto two = makeComposite({material.get(), nullptr});
    const auto one = makeComposite({material.get()});

    EXPECT_EQ(findDifference(one.get(), two.get()), "MultiMaterial.Materials");
    EXPECT_EQ(findDifference(two.get(), makeComposite({material.get(), makeMaterial(0.5F).get()}).get()),
              "MultiMaterial.Materials[1]");
}

TEST(CompareTest, NoticesAnotherPatternOfSharing)
{
    const FCRef<UBRDFMaterial> shared = makeMaterial(0.5F);
    const auto sharing = makeComposite({shared.get(), shared.get()});
    const auto separate = makeComposite({makeMaterial(0.5F).get(), makeMaterial(0.5F).get()});

    EXPECT_EQ(findDifference(sharing.get(), separate.get()), "MultiMaterial.Materials[1]");
    EXPECT_EQ(findDifference(separate.get(), sharing.get()), "MultiMaterial.Materials[1]");
    const FCRef<UBRDFMaterial> other = makeMaterial(0.5F);
    EXPECT_EQ(findDifference(sharing.get(), makeComposite({other.get(), other.get()}).get()), std::nullopt);
}

TEST(CompareTest, NoticesAnotherOrder)
{
    const FCRef<UBRDFMaterial> a = makeMaterial(0.1F);
    const FCRef<UBRDFMaterial> b = makeMaterial(0.2F);

    EXPECT_EQ(findDifference(makeComposite({a.get(), b.get()}).get(), makeComposite({b.get(), a.get()}).get()),
              "MultiMaterial.Materials[0].Roughness");
}

TEST(CompareTest, PassesOverIgnoredTypes)
{
    const FCRef<UBRDFMaterial> plain = makeMaterial(0.5F);
    const FCRef<UBRDFMaterial> stored = makeMaterial(0.5F);
    AssetAttachment::createAssetAttachment(stored.get());
    setName(plain.get(), "same");
    setName(stored.get(), "same");

    EXPECT_EQ(findDifference(plain.get(), stored.get()), "UBRDFMaterial.Attachments[0]");
    EXPECT_EQ(findDifference(plain.get(), stored.get(), {&AssetAttachment::getClassType()}), std::nullopt);
    EXPECT_EQ(findDifference(plain.get(), stored.get(), {&Attachment::getClassType()}), std::nullopt);
}

TEST(CompareTest, ComparesWhatContainsItself)
{
    const auto first = makeComposite({});
    const auto second = makeComposite({});
    for (const auto &composite : {first, second}) {
        const CPEditor edit(composite.get());
        composite->addMaterial(composite.get());
    }

    EXPECT_EQ(findDifference(first.get(), second.get()), std::nullopt);

    for (const auto &composite : {first, second}) {
        const CPEditor edit(composite.get());
        composite->editMaterials().clear();
    }
}

TEST(CompareTest, ComparesDeepStructuresWithoutRecursion)
{
    const auto makeDeep = [](float roughness) {
        FCRef<Material> material(makeMaterial(roughness).get());
        for (int i = 0; i < 25'000; ++i)
            material = makeComposite({material.get()}).get();
        return material;
    };

    EXPECT_EQ(findDifference(makeDeep(0.5F).get(), makeDeep(0.5F).get()), std::nullopt);
    const auto difference = findDifference(makeDeep(0.5F).get(), makeDeep(0.6F).get());
    EXPECT_TRUE(difference.value().ends_with(".Materials[0].Roughness"));
}

} // namespace
