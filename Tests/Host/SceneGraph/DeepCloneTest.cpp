// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/DeepClone.h"

#include "SceneGraph/Compare.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/MultiMaterial.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/Texture.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <gtest/gtest.h>

namespace {

using namespace osg;

FCRef<MultiMaterial> makeComposite(const std::vector<MaterialPtr> &materials)
{
    FCRef<MultiMaterial> composite(MultiMaterial::create());
    const CPEditor edit(composite.get(), MultiMaterial::MaterialsFieldMask);
    composite->editMaterials().assign(materials);
    return composite;
}

TEST(DeepCloneTest, GivesNullForNull)
{
    EXPECT_EQ(deepClone(FieldContainerPtr(), {}), NullFC);
}

TEST(DeepCloneTest, CopiesEverythingThatIsReached)
{
    const auto original = makeComposite({UBRDFMaterial::create(), UBRDFMaterial::create()});

    const MultiMaterialPtr copy = deepClone(original.get(), {});
    EXPECT_EQ(copy->getRefCount(), 0);
    const FCRef<MultiMaterial> owner(copy);

    EXPECT_NE(copy->getMaterial(0), original->getMaterial(0));
    EXPECT_EQ(copy->getMaterial(0)->getRefCount(), 1);
    EXPECT_EQ(findDifference(original.get(), copy), std::nullopt);
}

TEST(DeepCloneTest, LeavesTheOriginalAlone)
{
    const auto original = makeComposite({UBRDFMaterial::create()});
    const std::size_t before = FieldContainerFactory::the().livingContainerCount();

    FCRef<MultiMaterial> copy(deepClone(original.get(), {}));
    EXPECT_EQ(original->getMaterial(0)->getRefCount(), 1);
    copy.reset();

    EXPECT_EQ(FieldContainerFactory::the().livingContainerCount(), before);
}

TEST(DeepCloneTest, SharesWithinTheCopyWhatWasShared)
{
    const FCRef<UBRDFMaterial> shared(UBRDFMaterial::create());
    const auto original = makeComposite({shared.get(), shared.get()});

    const FCRef<MultiMaterial> copy(deepClone(original.get(), {}));

    EXPECT_EQ(copy->getMaterial(0), copy->getMaterial(1));
    EXPECT_NE(copy->getMaterial(0), shared.get());
}

TEST(DeepCloneTest, RefersToWhatTheListShares)
{
    const FCRef<UBRDFMaterial> shared(UBRDFMaterial::create());
    const auto original = makeComposite({shared.get(), UBRDFMaterial::create()});

    const FCRef<MultiMaterial> copy(deepClone(original.get(), {shared.get(), FieldContainerPtr()}));

    EXPECT_EQ(copy->getMaterial(0), shared.get());
    EXPECT_NE(copy->getMaterial(1), original->getMaterial(1));
    EXPECT_EQ(shared->getRefCount(), 3);
}

TEST(DeepCloneTest, ConnectsCopiedNodesWithTheirParents)
{
    const FCRef<Node> above(Node::create());
    const NodePtr root = Node::create();
    {
        const CPEditor editAbove(above.get());
        above->addChild(root);
        const CPEditor edit(root);
        root->addChild(makeNodeFor(Group::create()));
    }

    const FCRef<Node> copy(deepClone(root, {}));

    EXPECT_EQ(copy->getParent(), NullFC);
    EXPECT_EQ(copy->getChild(0)->getParent(), copy.get());
    EXPECT_EQ(root->getChild(0)->getParent(), root);
}

TEST(DeepCloneTest, TakesNoChildAwayThatIsShared)
{
    const FCRef<Node> root(Node::create());
    const NodePtr child = Node::create();
    {
        const CPEditor edit(root.get());
        root->addChild(child);
    }

    const FCRef<Node> copy(deepClone(root.get(), {child}));

    EXPECT_EQ(copy->getNChildren(), 0U);
    EXPECT_EQ(child->getParent(), root.get());
}

TEST(DeepCloneTest, KeepsWhereAPictureCameFrom)
{
    const FCRef<Texture> texture(Texture::create());
    {
        const CPEditor edit(texture.get());
        texture->setImage(Image::create());
    }
    texture->getImage()->setSource("wood.png");

    EXPECT_EQ(FCRef<Texture>(deepClone(texture.get(), {}))->getImage()->source(), "wood.png");
}

TEST(DeepCloneTest, CopiesDeepStructuresWithoutRecursion)
{
    FCRef<Material> material(UBRDFMaterial::create());
    for (int i = 0; i < 25'000; ++i)
        material = makeComposite({material.get()}).get();

    const FCRef<Material> copy(deepClone(material.get(), {}));

    EXPECT_EQ(findDifference(material.get(), copy.get()), std::nullopt);
}

} // namespace
