// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxActions.h"

#include "Kernel/kxFastGeometryLoader.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxModuleBase.h"
#include "Kernel/kxNodeUtils.h"
#include "SceneGraph/JsonAttachment.h"
#include "Support/SceneTest.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class kxActionsTest : public kxtest::SceneTest
{
protected:
    kxActionsTest()
    {
        door = addNode(osg::Group::create(), "Door");
        addNodeBelow(door, osg::Group::create(), "Frame");
        handle = addNodeBelow(door, osg::Group::create(), "Handle");
        lamp = addNode(osg::Group::create(), "Lamp");
    }

    static std::string textOf(const osg::NodePtr &node)
    {
        const auto attachment = osg::findAttachment<osg::JsonAttachment>(node);
        return attachment ? attachment->getText() : "none";
    }
    static void setText(const osg::NodePtr &node, const std::string &text)
    {
        const auto attachment = osg::JsonAttachment::create();
        {
            const osg::CPEditor edit(attachment, osg::JsonAttachment::TextFieldMask);
            attachment->setText(text);
        }
        const osg::CPEditor edit(node, osg::AttachmentContainer::AttachmentsFieldMask);
        node->addAttachment(attachment);
    }

    osg::NodePtr door;
    osg::NodePtr handle;
    osg::NodePtr lamp;
};

TEST_F(kxActionsTest, BelongToNodesAndGoWithThem)
{
    const kxActions::Action show{"click", "show", lamp, "on"};
    kxActions::add(handle, show);
    kxActions::add(handle, show);
    kxActions::add(handle, {"hover", "hide", nullptr, ""});
    kxActions::add(nullptr, show);

    ASSERT_EQ(kxActions::of(handle).size(), 2U) << "each once";
    EXPECT_EQ(kxActions::of(handle)[0], show);
    EXPECT_THAT(kxActions::of(lamp), IsEmpty());
    EXPECT_THAT(kxActions::of(nullptr), IsEmpty());
    remove(lamp);
    EXPECT_FALSE(kxActions::of(handle)[0].target) << "destroyed";
    kxActions::removeAll(handle);
    EXPECT_THAT(kxActions::of(handle), IsEmpty());
}

TEST_F(kxActionsTest, StandAsTextAtTheNodeThatIsWritten)
{
    kxActions::add(handle, {"click", "turn", door, "90"});
    kxActions::add(door, {"open", "log", nullptr, "x"});
    kxActions::add(handle, {"click", "show", lamp, ""});

    kxActions::attachTo(door);

    EXPECT_EQ(textOf(door), R"({"actions":[{"command":"log","node":"","trigger":"open","value":"x"},)"
                            R"({"command":"turn","node":"1","target":"","trigger":"click","value":"90"}]})")
        << "the lamp is elsewhere";
    EXPECT_EQ(textOf(handle), "none");
    kxActions::attachTo(lamp);
    EXPECT_EQ(textOf(lamp), "none") << "nothing to say";
    kxActions::attachTo(nullptr);
}

TEST_F(kxActionsTest, LeavesOtherTextInItsPlace)
{
    setText(door, R"({"author":"Jo","actions":[1]})");
    setText(lamp, "free text");
    kxActions::add(lamp, {"click", "glow", nullptr, ""});

    kxActions::attachTo(door);
    kxActions::attachTo(lamp);

    EXPECT_EQ(textOf(door), R"({"author":"Jo"})") << "actions that are gone go here too";
    EXPECT_EQ(textOf(lamp),
              R"({"actions":[{"command":"glow","node":"","trigger":"click","value":""}],"text":"free text"})");
}

TEST_F(kxActionsTest, BringsTheTextOfPartsUpToDate)
{
    kxActions::add(handle, {"click", "turn", nullptr, ""});
    kxActions::attachTo(handle);
    ASSERT_NE(textOf(handle), "none");
    kxActions::removeAll(handle);

    kxActions::attachTo(door);

    EXPECT_EQ(textOf(handle), "{}") << "an action that was taken away does not come back with a file";
}

TEST_F(kxActionsTest, LeavesTextOfPartsAloneThatHoldsNoActions)
{
    setText(handle, R"({"author":"Jo"})");
    kxActions::add(handle, {"click", "turn", nullptr, ""});

    kxActions::attachTo(door);

    EXPECT_EQ(textOf(handle), R"({"author":"Jo"})");
    EXPECT_NE(textOf(door), "none");
}

TEST_F(kxActionsTest, ReadsWhatItWrote)
{
    kxActions::add(handle, {"click", "turn", door, "90"});
    kxActions::attachTo(door);
    kxActions::removeAll(handle);

    kxActions::readFrom(door);
    kxActions::readFrom(door);

    EXPECT_THAT(kxActions::of(handle), ElementsAre(kxActions::Action{"click", "turn", door, "90"}));
}

TEST_F(kxActionsTest, PassesOverWhatItDoesNotUnderstand)
{
    for (const char *text : {"", "no json", "[]", R"({"actions":7})", R"({"actions":[7,{"node":"9"}]})",
                             R"({"actions":[{"node":"0/0/0"},{"node":"x"},{"node":"-1"}]})",
                             R"({"actions":[{"node":"0","target":"5"}]})"}) {
        setText(door, text);
        kxActions::readFrom(door);
        EXPECT_THAT(kxActions::of(door), IsEmpty()) << text;
        EXPECT_THAT(kxActions::of(door->getChild(0)), IsEmpty()) << text;
        kxNodeUtils::removeAttachment(door, osg::JsonAttachment::getClassType());
    }
    kxActions::readFrom(nullptr);
}

TEST_F(kxActionsTest, AreWrittenOnRequestAndComeBackWithTheFile)
{
    kxKernelServiceFactory::the().startKernel();
    kxActions::add(handle, {"click", "turn", door, "90"});
    kxMessage message(0x100000000);
    message.set("node", door);
    kxModuleBase::sendMessage(message, false);
    EXPECT_EQ(textOf(door), "none") << "nobody asked for it";
    message.set("addActionAttachment", true);

    kxModuleBase::sendMessage(message, false);

    EXPECT_NE(textOf(door), "none");
    const kxtest::TemporaryFolder folder;
    const std::string file = folder.file("door.osb");
    ASSERT_TRUE(kxNodeUtils::writeNode(door, file.c_str(), true));
    const osg::FCRef<osg::Node> loaded(kxFastGeometryLoader().load(file.c_str()));
    ASSERT_TRUE(loaded);
    EXPECT_THAT(kxActions::of(loaded->getChild(1)),
                ElementsAre(kxActions::Action{"click", "turn", loaded.get(), "90"}));
}

} // namespace
