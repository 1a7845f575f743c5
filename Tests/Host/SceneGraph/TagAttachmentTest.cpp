// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/TagAttachment.h"

#include "SceneGraph/EditCP.h"

#include <gmock/gmock.h>

namespace {

using namespace osg;
using testing::ElementsAre;

TEST(TagAttachmentTest, JoinsTagsInTheOrderTheyWereAdded)
{
    const FCRef<TagAttachment> tags(TagAttachment::create());
    EXPECT_EQ(tags->getTagString(), "");
    const CPEditor edit(tags.get(), TagAttachment::MaterialsFieldMask);
    tags->addMaterialTag("wood");
    tags->addMaterialTag("Größe");

    EXPECT_EQ(tags->getTagString(), "wood, Größe");
}

TEST(TagAttachmentTest, TakesATagOnce)
{
    const FCRef<TagAttachment> tags(TagAttachment::create());
    const CPEditor edit(tags.get(), TagAttachment::MaterialsFieldMask);
    tags->addMaterialTag("wood");
    tags->addMaterialTag("Wood");
    tags->addMaterialTag("wood");

    EXPECT_THAT(tags->getMaterials().values(), ElementsAre("wood", "Wood"));
    EXPECT_TRUE(tags->hasMaterialTag("wood"));
    EXPECT_FALSE(tags->hasMaterialTag("oak"));
}

} // namespace
