// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/FieldContainerFactory.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/SceneListener.h"
#include "SceneGraph/Switch.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <regex>
#include <set>
#include <sstream>

namespace {

using namespace osg;
using testing::ElementsAre;
using testing::IsEmpty;

FieldContainerFactory &factory()
{
    return FieldContainerFactory::the();
}

TEST(FieldContainerFactoryTest, FindsALivingContainerById)
{
    const FCRef<Group> group(Group::create());

    EXPECT_EQ(factory().getContainer(group.get().getFieldContainerId()), group.get());
}

TEST(FieldContainerFactoryTest, AnswersNullForAStaleId)
{
    FCRef<Group> group(Group::create());
    const std::uint32_t id = group.get().getFieldContainerId();
    group.reset();
    const FCRef<Group> another(Group::create());

    EXPECT_EQ(factory().getContainer(id), NullFC);
}

TEST(FieldContainerFactoryTest, AnswersNullForAnIdNeverGivenOut)
{
    EXPECT_EQ(factory().getContainer(0), NullFC);
    EXPECT_EQ(factory().getContainer(0xFFFFFFFF), NullFC);
    EXPECT_EQ(factory().getContainer(FCRef<Group>(Group::create()).get().getFieldContainerId() + 1), NullFC);
}

TEST(FieldContainerFactoryTest, FindsContainersAfterManyOthersCameAndWent)
{
    const FCRef<Group> early(Group::create());
    for (int i = 0; i < 20'000; ++i)
        const FCRef<Group> passing(Group::create());
    const FCRef<Group> late(Group::create());

    EXPECT_EQ(factory().getContainer(early.get().getFieldContainerId()), early.get());
    EXPECT_EQ(factory().getContainer(late.get().getFieldContainerId()), late.get());
}

TEST(FieldContainerFactoryTest, CountsLivingContainers)
{
    const std::size_t before = factory().livingContainerCount();
    FCRef<Group> group(Group::create());
    EXPECT_EQ(factory().livingContainerCount(), before + 1);

    group.reset();

    EXPECT_EQ(factory().livingContainerCount(), before);
}

TEST(FieldContainerFactoryTest, CreatesByTypeName)
{
    const FCRef<FieldContainer> made(factory().createFieldContainer("Switch"));

    ASSERT_TRUE(dcast<SwitchPtr>(made.get()));
    EXPECT_STREQ(made->getType().getCName(), "Switch");
    EXPECT_EQ(made->getRefCount(), 1);
}

TEST(FieldContainerFactoryTest, CreatesNothingOfAnUnknownOrAbstractType)
{
    for (const char *name : {"", "Unknown", "switch", "FieldContainer", "Attachment", "AttachmentContainer", "NodeCore",
                             "Material", "UEnvironmentMaterial"})
        EXPECT_EQ(factory().createFieldContainer(name), NullFC) << name;
}

TEST(FieldContainerFactoryTest, FindsTypesByName)
{
    EXPECT_EQ(factory().findType("Node"), &Node::getClassType());
    EXPECT_EQ(factory().findType("Nodes"), nullptr);
}

TEST(FieldContainerFactoryTest, RegistersATypeOnce)
{
    const std::size_t count = factory().types().size();

    factory().registerType(Node::getClassType());

    EXPECT_EQ(factory().types().size(), count);
}

/// The classes that headers declare, as a reader of the sources finds them.
std::set<std::string> declaredClasses()
{
    std::set<std::string> names{"FieldContainer"};
    const std::regex declaration(R"(\n {4}OSG_(?:ABSTRACT_)?CONTAINER(?:_WITH_LIFECYCLE)?\((\w+),)");
    for (const auto &entry : std::filesystem::directory_iterator(KX_SCENE_GRAPH_SOURCES)) {
        if (entry.path().extension() != ".h" || entry.path().filename() == "FieldMacros.h")
            continue;
        std::stringstream text;
        text << std::ifstream(entry.path()).rdbuf();
        const std::string content = text.str();
        for (std::sregex_iterator match(content.begin(), content.end(), declaration), end; match != end; ++match)
            names.insert((*match)[1]);
    }
    return names;
}

TEST(FieldContainerFactoryTest, KnowsEveryClassThatAHeaderDeclares)
{
    std::set<std::string> registered;
    for (const FieldContainerType *type : factory().types())
        registered.insert(type->getCName());

    EXPECT_EQ(registered, declaredClasses());
    EXPECT_EQ(registered.size(), 40U);
}

struct RecordingListener final : SceneListener
{
    RecordingListener() { factory().addListener(*this); }
    ~RecordingListener() override { factory().removeListener(*this); }

    void containerChanged(FieldContainer &container, FieldMask fields) override
    {
        changes.emplace_back(container.getFieldContainerId(), fields);
    }
    void containerDestroyed(FieldContainer &container) override
    {
        destroyed.push_back(container.getFieldContainerId());
        isWholeWhenItGoes = factory().isAlive(container.getFieldContainerId());
    }

    std::vector<std::pair<std::uint32_t, FieldMask>> changes;
    std::vector<std::uint32_t> destroyed;
    bool isWholeWhenItGoes = false;
};

TEST(FieldContainerFactoryTest, TellsListenersOfChangesAndDestruction)
{
    RecordingListener listener;
    FCRef<Switch> chooser(Switch::create());
    const std::uint32_t id = chooser.get().getFieldContainerId();
    {
        const CPEditor edit(chooser.get(), Switch::ChoiceFieldMask);
        chooser->setChoice(3);
    }
    chooser.reset();

    EXPECT_THAT(listener.changes, ElementsAre(std::pair(id, Switch::ChoiceFieldMask)));
    EXPECT_THAT(listener.destroyed, ElementsAre(id));
    EXPECT_TRUE(listener.isWholeWhenItGoes);
}

TEST(FieldContainerFactoryTest, TellsNothingToAListenerThatWasRemoved)
{
    RecordingListener stays;
    auto goes = std::make_unique<RecordingListener>();
    goes.reset();
    const FCRef<Switch> chooser(Switch::create());
    {
        const CPEditor edit(chooser.get(), Switch::ChoiceFieldMask);
        chooser->setChoice(3);
    }

    EXPECT_EQ(stays.changes.size(), 1U);
}

} // namespace
