// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/AttachmentContainer.h"

#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/JsonAttachment.h"
#include "SceneGraph/NameAttachment.h"

#include <gtest/gtest.h>

namespace {

using namespace osg;

class AttachmentContainerTest : public testing::Test
{
protected:
    void add(const AttachmentPtr &attachment)
    {
        const CPEditor edit(group.get(), AttachmentContainer::AttachmentsFieldMask);
        group->addAttachment(attachment);
    }

    FCRef<Group> group{Group::create()};
};

TEST_F(AttachmentContainerTest, FindsAnAttachmentByItsType)
{
    const JsonAttachmentPtr json = JsonAttachment::create();
    add(json);

    EXPECT_EQ(findAttachment<JsonAttachment>(group.get()), json);
    EXPECT_EQ(group->findAttachment(JsonAttachment::getClassType()), json);
}

TEST_F(AttachmentContainerTest, CreatesNothingByLookingUp)
{
    EXPECT_EQ(findAttachment<JsonAttachment>(group.get()), NullFC);
    EXPECT_EQ(AssetAttachment::getAssetAttachment(group.get()), NullFC);
    EXPECT_EQ(getName(group.get()), "");

    EXPECT_TRUE(group->getAttachments().empty());
}

TEST_F(AttachmentContainerTest, HoldsOneOfEachType)
{
    const JsonAttachmentPtr second = JsonAttachment::create();
    add(JsonAttachment::create());
    add(NameAttachment::create());
    add(second);

    EXPECT_EQ(group->getAttachments().size(), 2U);
    EXPECT_EQ(findAttachment<JsonAttachment>(group.get()), second);
}

TEST_F(AttachmentContainerTest, KeepsAnAttachmentThatIsAddedAgain)
{
    const JsonAttachmentPtr json = JsonAttachment::create();
    add(json);
    add(json);

    EXPECT_EQ(json->getRefCount(), 1);
}

TEST_F(AttachmentContainerTest, IgnoresNull)
{
    add(nullptr);

    EXPECT_TRUE(group->getAttachments().empty());
    EXPECT_EQ(findAttachment<JsonAttachment>(nullptr), NullFC);
    EXPECT_EQ(AssetAttachment::getAssetAttachment(nullptr), NullFC);
    EXPECT_EQ(AssetAttachment::createAssetAttachment(nullptr), NullFC);
    EXPECT_EQ(getName(nullptr), "");
    setName(nullptr, "name");
}

TEST_F(AttachmentContainerTest, RemovesByType)
{
    add(JsonAttachment::create());
    add(NameAttachment::create());
    const CPEditor edit(group.get(), AttachmentContainer::AttachmentsFieldMask);

    group->removeAttachment(JsonAttachment::getClassType());
    group->removeAttachment(AssetAttachment::getClassType());

    EXPECT_EQ(group->getAttachments().size(), 1U);
    EXPECT_EQ(findAttachment<JsonAttachment>(group.get()), NullFC);
}

TEST_F(AttachmentContainerTest, CreatesAnAssetAttachmentOnce)
{
    const AssetAttachmentPtr asset = AssetAttachment::createAssetAttachment(group.get());

    EXPECT_TRUE(asset);
    EXPECT_EQ(AssetAttachment::createAssetAttachment(group.get()), asset);
    EXPECT_EQ(AssetAttachment::getAssetAttachment(group.get()), asset);
    EXPECT_EQ(asset->getRefCount(), 1);
}

TEST_F(AttachmentContainerTest, KeepsTheExactName)
{
    for (const char *name : {"Käse", "木", "", "two  words ", "a/b"}) {
        setName(group.get(), name);
        EXPECT_EQ(getName(group.get()), name);
    }
    EXPECT_EQ(group->getAttachments().size(), 1U);
}

} // namespace
