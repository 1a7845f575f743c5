// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxController.h"

#include "Kernel/kxControllerNotifier.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxModuleBase.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/Switch.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"
#include "Support/SceneTest.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QWidget>

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TestModule : public kxModuleBase
{
public:
    using kxModuleBase::registerHandler;

    std::vector<std::uint64_t> received;
    std::function<void(const kxMessage &)> onReceive;

private:
    void doReceive(const kxMessage &message) override
    {
        received.push_back(message.code());
        if (onReceive)
            onReceive(message);
    }
};

class kxControllerTest : public testing::Test
{
protected:
    ~kxControllerTest() override
    {
        kxController::enableRenderUpdate(true);
        QCoreApplication::processEvents();
        kxController::setModified(false);
        kxController::setMainWindow(nullptr);
    }

    QSignalSpy renderings{&kxController::notifier(), &kxControllerNotifier::renderUpdateRequested};
};

TEST_F(kxControllerTest, HandsACallToItsHandlerAndTheAnswerBack)
{
    TestModule module;
    module.registerHandler(
        "double", [](kxMessage &message) { message.set("result", 2 * message.get<int>("value").value_or(0)); });
    kxMessage message;
    message.set("value", 21);

    const bool isHandled = kxController::call("double", message);

    EXPECT_TRUE(isHandled);
    EXPECT_EQ(message.get<int>("result"), 42);
}

TEST_F(kxControllerTest, ReportsACallWithoutHandlerOnce)
{
    const kxLogRecorder recorder;
    kxMessage message;
    message.set("value", 21);

    EXPECT_FALSE(kxController::call("nobody handles this", message));
    EXPECT_FALSE(kxController::call("nobody handles this", message));
    EXPECT_FALSE(kxController::call("nor this", message));

    EXPECT_THAT(recorder.lines(kxLogLevel::Warning), ElementsAre("No module handles the message 'nobody handles this'.",
                                                                 "No module handles the message 'nor this'."));
    EXPECT_FALSE(message.has("result"));
    EXPECT_EQ(message.get<int>("value"), 21);
}

TEST_F(kxControllerTest, LetsTheNewestHandlerAnswerAndTheOlderOneAfterIt)
{
    TestModule older;
    older.registerHandler("who", [](kxMessage &message) { message.set("name", std::string("older")); });
    auto newer = std::make_unique<TestModule>();
    newer->registerHandler("who", [](kxMessage &message) { message.set("name", std::string("newer")); });
    kxMessage message;

    kxController::call("who", message);
    EXPECT_EQ(message.get<std::string>("name"), "newer");

    newer.reset();
    kxController::call("who", message);
    EXPECT_EQ(message.get<std::string>("name"), "older");
}

TEST_F(kxControllerTest, SurvivesAHandlerThatDeletesItsModule)
{
    auto module = std::make_unique<TestModule>();
    std::string name = "kept by the handler";
    module->registerHandler("leave", [&module, name](kxMessage &message) {
        module.reset();
        message.set("name", name);
    });
    kxMessage message;

    kxController::call("leave", message);

    EXPECT_EQ(message.get<std::string>("name"), "kept by the handler");
    EXPECT_FALSE(kxController::call("leave", message));
}

TEST_F(kxControllerTest, KnowsItsMainWindowAsLongAsThereIsOne)
{
    EXPECT_EQ(kxController::getMainWindow(), nullptr);
    auto window = std::make_unique<QWidget>();

    kxController::setMainWindow(window.get());
    EXPECT_EQ(kxController::getMainWindow(), window.get());

    window.reset();
    EXPECT_EQ(kxController::getMainWindow(), nullptr);
}

TEST_F(kxControllerTest, RendersAtOnceOnRequest)
{
    kxController::updateRender(true);

    EXPECT_EQ(renderings.count(), 1);
}

TEST_F(kxControllerTest, RendersLaterOnceForManyRequests)
{
    kxController::updateRender(false);
    kxController::updateRender(false);
    EXPECT_EQ(renderings.count(), 0);

    QCoreApplication::processEvents();

    EXPECT_EQ(renderings.count(), 1);
}

TEST_F(kxControllerTest, RendersOnceForALaterAndAnImmediateRequest)
{
    kxController::updateRender(false);
    kxController::updateRender(true);

    QCoreApplication::processEvents();

    EXPECT_EQ(renderings.count(), 1);
}

TEST_F(kxControllerTest, HoldsRenderingBackWhileItIsSwitchedOff)
{
    kxController::enableRenderUpdate(false);
    EXPECT_FALSE(kxController::isRenderUpdateEnabled());

    kxController::updateRender(true);
    kxController::updateRender(false);
    QCoreApplication::processEvents();

    EXPECT_EQ(renderings.count(), 0);
}

TEST_F(kxControllerTest, CatchesUpOnceAfterItIsSwitchedOnAgain)
{
    kxController::enableRenderUpdate(false);
    kxController::updateRender(true);
    kxController::updateRender(true);

    kxController::enableRenderUpdate(true);
    EXPECT_TRUE(kxController::isRenderUpdateEnabled());
    EXPECT_EQ(renderings.count(), 0);
    QCoreApplication::processEvents();

    EXPECT_EQ(renderings.count(), 1);
}

TEST_F(kxControllerTest, HoldsBackWhatWasScheduledBeforeItWasSwitchedOff)
{
    kxController::updateRender(false);
    kxController::enableRenderUpdate(false);
    QCoreApplication::processEvents();
    EXPECT_EQ(renderings.count(), 0);

    kxController::enableRenderUpdate(true);
    QCoreApplication::processEvents();

    EXPECT_EQ(renderings.count(), 1);
}

TEST_F(kxControllerTest, TreatsTheSwitchAsAFlag)
{
    kxController::enableRenderUpdate(false);
    kxController::enableRenderUpdate(false);

    kxController::enableRenderUpdate(true);

    EXPECT_TRUE(kxController::isRenderUpdateEnabled());
    QCoreApplication::processEvents();
    EXPECT_EQ(renderings.count(), 0); // nothing was asked for
}

TEST_F(kxControllerTest, AnnouncesTheModifiedMarkWhenItChanges)
{
    QSignalSpy changes(&kxController::notifier(), &kxControllerNotifier::modifiedChanged);

    kxController::setModified(true);
    kxController::setModified(true);
    EXPECT_TRUE(kxController::isModified());
    kxController::setModified(false);
    EXPECT_FALSE(kxController::isModified());

    ASSERT_EQ(changes.count(), 2);
    EXPECT_EQ(changes[0][0].toBool(), true);
    EXPECT_EQ(changes[1][0].toBool(), false);
}

TEST(kxModuleBaseTest, BroadcastsToAllModulesBeforeTheCallReturns)
{
    TestModule first;
    TestModule second;

    kxModuleBase::sendMessage(kxMessage(32768), false);

    EXPECT_THAT(first.received, ElementsAre(32768));
    EXPECT_THAT(second.received, ElementsAre(32768));
}

TEST(kxModuleBaseTest, BroadcastsACopyLaterOnRequest)
{
    TestModule module;
    std::optional<int> value;
    module.onReceive = [&value](const kxMessage &message) { value = message.get<int>("value"); };
    {
        kxMessage message(1);
        message.set("value", 9);
        kxModuleBase::sendMessage(message, true);
    }
    EXPECT_THAT(module.received, IsEmpty());

    QCoreApplication::processEvents();

    EXPECT_THAT(module.received, ElementsAre(1));
    EXPECT_EQ(value, 9);
}

TEST(kxModuleBaseTest, PassesOverAModuleThatGoesDuringTheBroadcast)
{
    TestModule first;
    auto second = std::make_unique<TestModule>();
    TestModule third;
    first.onReceive = [&second](const kxMessage &) { second.reset(); };

    kxModuleBase::sendMessage(kxMessage(2), false);

    EXPECT_EQ(second, nullptr);
    EXPECT_THAT(third.received, ElementsAre(2));
}

TEST(kxModuleBaseTest, PassesOverAModuleThatComesDuringTheBroadcast)
{
    TestModule first;
    std::unique_ptr<TestModule> late;
    first.onReceive = [&late](const kxMessage &) { late = std::make_unique<TestModule>(); };

    kxModuleBase::sendMessage(kxMessage(3), false);

    ASSERT_NE(late, nullptr);
    EXPECT_THAT(late->received, IsEmpty());
}

} // namespace

namespace {

class kxControllerEnvironmentTest : public kxtest::SceneTest
{
protected:
    static std::int32_t placeChoice()
    {
        return osg::SwitchPtr::dcast(kxScenegraph::environmentGeometrySwitch()->getCore())->getChoice();
    }

    osg::FCRef<osg::USkyEnvironmentMaterial> dawn{osg::USkyEnvironmentMaterial::create()};
    osg::FCRef<osg::Node> node{osg::makeNodeFor(osg::Environment::create())};
};

} // namespace

TEST_F(kxControllerEnvironmentTest, AppendsTheChoiceAndItsNode)
{
    const auto choices = kxDefaultEnvironment::getSwitch();

    EXPECT_TRUE(kxController::addToDefaultEnvironment(dawn.get(), node.get(), false));

    EXPECT_EQ(choices->getMaterial(1), dawn.get());
    EXPECT_EQ(kxScenegraph::environmentGeometrySwitch()->getChild(1), node.get());
    EXPECT_EQ(choices->getChoice(), 0);
    EXPECT_EQ(placeChoice(), 0);
    EXPECT_FALSE(kxController::addToDefaultEnvironment(dawn.get(), node.get(), true)) << "it is a choice already";
    EXPECT_EQ(choices->getChoice(), 0);
}

TEST_F(kxControllerEnvironmentTest, MakesItCurrentOnRequest)
{
    EXPECT_TRUE(kxController::addToDefaultEnvironment(dawn.get(), node.get(), true));

    EXPECT_EQ(kxDefaultEnvironment::getSwitch()->getChoice(), 1);
    EXPECT_EQ(placeChoice(), 1);
}

TEST_F(kxControllerEnvironmentTest, ChangesNothingWithoutTheSwitches)
{
    EXPECT_FALSE(kxController::addToDefaultEnvironment(nullptr, node.get(), true));
    remove(kxScenegraph::environmentGeometrySwitch());

    EXPECT_FALSE(kxController::addToDefaultEnvironment(dawn.get(), node.get(), true));

    EXPECT_FALSE(node->getParent());
    kxScenegraph::closeDocument();
    EXPECT_FALSE(kxController::addToDefaultEnvironment(dawn.get(), node.get(), true));
}
