// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetsServiceImpl.h"

#include "AssetManagerModule.h"
#include "ChangeListener.h"
#include "EditWatch.h"
#include "Kernel/kxAssetsInterface.h"
#include "Kernel/kxAssetsService.h"
#include "Kernel/kxInterfaceFactory.h"
#include "Kernel/kxInterfaceObject.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxTypeConverter.h"
#include "NodeFixture.h"
#include "SceneGraph/EditCP.h"
#include "Support/CapturedOutput.h"
#include "VirtualTable.h"

#include <QCoreApplication>
#include <QTranslator>

#include <gmock/gmock.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

/// Stands before the library's object in the factory, and holds up whoever looks for that until a second one comes, or for
/// as long as a second one would have taken.
class Obstacle final : public kxInterfaceObject
{
public:
    const void *interfaceType() const override
    {
        std::unique_lock lock(_mutex);
        ++askers;
        _changed.notify_all();
        if (holdsUp)
            _changed.wait_for(lock, std::chrono::milliseconds(300), [this] { return askers > 1; });
        return this;
    }
    const char *interfaceTypeName() const override { return "Obstacle"; }

    mutable int askers = 0;
    bool holdsUp = false;

private:
    mutable std::mutex _mutex;
    mutable std::condition_variable _changed;
};

class kxAssetsServiceImplTest : public NodeFixture
{
protected:
    kxAssetsServiceImplTest()
    {
        kxKernelServiceFactory::the().startKernel();
        service = kxKernelServiceFactory::the().getService<kxAssetsService>();
        _connection = QObject::connect(service, &kxAssetsService::assetsChanged, service, [this] {
            ++changes;
            if (onChange)
                onChange();
        });
    }
    ~kxAssetsServiceImplTest() override { QObject::disconnect(_connection); }

    static osg::NodePtr root() { return kxScenegraph::getRoot(); }
    static osg::NodePtr addAsset(const osg::NodePtr &parent, const std::string &uuid)
    {
        const osg::NodePtr node = addGroup(parent, uuid);
        setUuid(node, uuid);
        return node;
    }
    static kxdNodePtr script(const osg::NodePtr &node) { return kxTypeConverter::convertNode(node); }
    /// For scripts, of a node that is gone.
    static kxdNodePtr gone()
    {
        const osg::FCRef<osg::Node> node(osg::makeNodeFor(osg::Group::create()));
        return script(node.get());
    }
    static std::vector<std::uint32_t> idsOf(const std::vector<kxdNodePtr> &nodes)
    {
        std::vector<std::uint32_t> ids;
        ids.reserve(nodes.size());
        for (const kxdNodePtr &node : nodes)
            ids.push_back(node->getObjectId());
        return ids;
    }
    static bool isEdited(const osg::NodePtr &node)
    {
        return osg::AssetAttachment::getAssetAttachment(node)->getUserEdited();
    }

    kxAssetsService *service = nullptr;
    AssetManagerModule manager;
    int changes = 0;
    std::function<void()> onChange;
    osg::NodePtr chair = addAsset(root(), "chair");
    osg::NodePtr table = addAsset(root(), "table");
    osg::NodePtr plain = addGroup(root(), "plain");

private:
    QMetaObject::Connection _connection;
};

} // namespace

TEST_F(kxAssetsServiceImplTest, FindsAssetNodesHoweverDeep)
{
    osg::NodePtr parent = root();
    for (int depth = 0; depth < 40; ++depth)
        parent = addGroup(parent, "Group");
    const osg::NodePtr deep = addAsset(parent, "chair");

    EXPECT_THAT(idsOf(service->findAssetNodes({script(chair)}, script(root()))),
                ElementsAre(chair.getFieldContainerId(), deep.getFieldContainerId()));
}

TEST_F(kxAssetsServiceImplTest, IsMadeByTheKernelAndFoundByTypeAndByName)
{
    ASSERT_TRUE(service);
    EXPECT_EQ(kxKernelServiceFactory::the().getService("kxAssetsService"), service);
    EXPECT_EQ(kxKernelServiceFactory::the().getService("kxAssetsServiceImpl"), service);
    EXPECT_TRUE(service->isInitialized()) << "since the kernel is up";
}

TEST_F(kxAssetsServiceImplTest, TakesTheReferencesOfTheseNodesOnly)
{
    const osg::NodePtr below = addAsset(chair, "cushion");

    service->removeAssetReference({script(chair), nullptr, gone(), script(plain)});

    EXPECT_EQ(uuidOfNode(chair), "none");
    EXPECT_EQ(uuidOfNode(below), "cushion");
    EXPECT_EQ(uuidOfNode(table), "table");
    EXPECT_EQ(changes, 1);
    service->removeAssetReference({});
    EXPECT_EQ(changes, 1) << "nothing was to be done";
    EXPECT_THAT(manager.calls, IsEmpty());
}

TEST_F(kxAssetsServiceImplTest, TellsOfAnyListWhoseReferencesItTook)
{
    std::string uuidThen;
    onChange = [&] { uuidThen = uuidOfNode(chair); };

    service->removeAssetReference({script(chair)});
    EXPECT_EQ(uuidThen, "none") << "told afterwards";
    service->removeAssetReference({nullptr});

    EXPECT_EQ(changes, 2);
}

TEST_F(kxAssetsServiceImplTest, SelectsTheFirstFoundAssetInPlaceOfTheOthersAndAddsTheRest)
{
    manager.known = {"table", "lamp"};
    const osg::NodePtr lamp = addAsset(root(), "lamp");
    {
        const auto attachment = osg::AssetAttachment::getAssetAttachment(chair);
        const osg::CPEditor edit(attachment, osg::AssetAttachment::UrlFieldMask);
        attachment->setUrl("file:///möbel/GEO_chair");
    }

    const QStringList errors =
        service->selectAssets({script(chair), nullptr, script(plain), script(table), gone(), script(lamp)});

    ASSERT_THAT(manager.selections, SizeIs(3));
    EXPECT_EQ(manager.selections[0].uuid, "chair");
    EXPECT_TRUE(manager.selections[0].clearsSelection);
    EXPECT_EQ(manager.selections[1].uuid, "table");
    EXPECT_TRUE(manager.selections[1].clearsSelection) << "nothing was found before";
    EXPECT_EQ(manager.selections[2].uuid, "lamp");
    EXPECT_FALSE(manager.selections[2].clearsSelection);
    EXPECT_EQ(errors, QStringList{QString::fromUtf8(
                          "Could not find asset.\nLast known storage location: file:///möbel/GEO_chair.")});
    EXPECT_EQ(changes, 0);
    EXPECT_THAT(service->selectAssets({}), IsEmpty());
}

TEST_F(kxAssetsServiceImplTest, KeepsWhatItSelectedWhenALaterAssetIsNotFound)
{
    manager.known = {"chair", "lamp"};
    const osg::NodePtr lamp = addAsset(root(), "lamp");

    const QStringList errors = service->selectAssets({script(chair), script(table), script(lamp)});

    ASSERT_THAT(manager.selections, SizeIs(3));
    EXPECT_TRUE(manager.selections[0].clearsSelection);
    EXPECT_FALSE(manager.selections[1].clearsSelection);
    EXPECT_FALSE(manager.selections[2].clearsSelection) << "the lamp joins the chair";
    EXPECT_THAT(errors, SizeIs(1));
}

TEST_F(kxAssetsServiceImplTest, TakesTheAnswerForOneAssetForNoOther)
{
    manager.answerSelection = [this](kxMessage &message) {
        if (manager.selections.size() == 1)
            message.set("found", true);
    };

    EXPECT_THAT(service->selectAssets({script(chair), script(table)}), SizeIs(1)) << "nobody answered for the table";
}

TEST_F(kxAssetsServiceImplTest, TranslatesWhatItReportsInTheContextOfItsClass)
{
    struct ContextTranslator : QTranslator
    {
        QString translate(const char *context, const char *text, const char *, int) const override
        {
            return QString(context) + ": " + text;
        }
        bool isEmpty() const override { return false; }
    } translator;
    QCoreApplication::installTranslator(&translator);

    const QStringList errors = service->selectAssets({script(chair)});
    QCoreApplication::removeTranslator(&translator);

    EXPECT_EQ(errors, QStringList{"kxAssetsServiceImpl: Could not find asset.\nLast known storage location: ."});
}

TEST_F(kxAssetsServiceImplTest, DoesNotReplaceInTheUrlWhatLooksLikeAPlace)
{
    {
        const auto attachment = osg::AssetAttachment::getAssetAttachment(chair);
        const osg::CPEditor edit(attachment, osg::AssetAttachment::UrlFieldMask);
        attachment->setUrl("file:///100%1/%2");
    }

    EXPECT_EQ(service->selectAssets({script(chair)}),
              QStringList{"Could not find asset.\nLast known storage location: file:///100%1/%2."});
}

TEST_F(kxAssetsServiceImplTest, TakesNoAnswerForNotFoundAndReportsOneOfTheWrongType)
{
    manager.answerSelection = [](kxMessage &) {};
    EXPECT_THAT(service->selectAssets({script(chair)}), SizeIs(1));

    manager.answerSelection = [](kxMessage &message) { message.set("found", 1); };
    kxtest::CapturedOutput errors(kxtest::CapturedOutput::StandardError);
    EXPECT_THAT(service->selectAssets({script(chair)}), SizeIs(1));
    EXPECT_EQ(errors.text(), "kxMessage::get : Attribute 'found' has wrong type (is:'int' != req:'bool')!\n");
}

TEST_F(kxAssetsServiceImplTest, AsksToOverwriteByTheIdsInTheirOrder)
{
    service->overwriteAssets({script(table), script(plain), script(chair)});

    EXPECT_THAT(manager.overwritten, ElementsAre(ElementsAre(table.getFieldContainerId(), plain.getFieldContainerId(),
                                                             chair.getFieldContainerId())));
    EXPECT_EQ(changes, 0);
    service->overwriteAssets({});
    EXPECT_THAT(manager.overwritten, SizeIs(1));
}

TEST_F(kxAssetsServiceImplTest, AsksToOverwriteWhateverTheListHolds)
{
    const kxdNodePtr destroyed = gone();

    service->overwriteAssets({nullptr, destroyed, script(chair), nullptr, script(chair)});
    service->overwriteAssets({nullptr});

    EXPECT_THAT(manager.overwritten, ElementsAre(ElementsAre(destroyed->getObjectId(), chair.getFieldContainerId(),
                                                             chair.getFieldContainerId()),
                                                 IsEmpty()));
}

TEST_F(kxAssetsServiceImplTest, FindsAllNodesOfTheSameAssets)
{
    const osg::NodePtr second = addAsset(plain, "chair");
    const std::uint32_t a = chair.getFieldContainerId();
    const std::uint32_t b = second.getFieldContainerId();

    EXPECT_THAT(idsOf(service->findAssetNodes({script(chair), script(plain), script(second)}, script(root()))),
                ElementsAre(a, b, a, b));
    EXPECT_THAT(idsOf(service->findAssetNodes({script(chair)}, script(plain))), ElementsAre(b));
    EXPECT_THAT(service->findAssetNodes({script(chair)}, nullptr), IsEmpty());
    EXPECT_THAT(service->findAssetNodes({script(chair)}, gone()), IsEmpty());
    EXPECT_THAT(service->findAssetNodes({nullptr, gone()}, script(root())), IsEmpty());
    EXPECT_THAT(service->findAssetNodes({}, script(root())), IsEmpty());
    EXPECT_EQ(changes, 0);
}

TEST_F(kxAssetsServiceImplTest, MarksAssetsAsEdited)
{
    service->markAssetsEdited({script(chair), nullptr, script(plain), gone()});

    EXPECT_TRUE(isEdited(chair));
    EXPECT_FALSE(isEdited(table));
    EXPECT_EQ(changes, 1);
    service->markAssetsEdited({});
    EXPECT_EQ(changes, 2) << "also for nothing";
}

TEST_F(kxAssetsServiceImplTest, MarksEachAssetByOneEditOfThatFieldAndTellsOfAllOnce)
{
    std::vector<osg::FieldMask> edits;
    const ChangeListener listener(osg::AssetAttachment::getClassType(),
                                  [&edits](osg::FieldMask fields) { edits.push_back(fields); });
    std::size_t editsThen = 0;
    onChange = [&] { editsThen = edits.size(); };
    EditWatch watch;

    service->markAssetsEdited({script(table), script(chair)});

    EXPECT_THAT(watch.take(), ElementsAre("AssetAttachment UserEdited", "AssetAttachment UserEdited"));
    const auto mark = osg::AssetAttachment::UserEditedFieldMask;
    EXPECT_THAT(edits, ElementsAre(mark, mark));
    EXPECT_EQ(editsThen, 2U);
    EXPECT_EQ(changes, 1);
    EXPECT_THAT(manager.calls, IsEmpty());
}

TEST_F(kxAssetsServiceImplTest, AsksOnceForTheChangesOfAllAssets)
{
    std::size_t queriesThen = 0;
    onChange = [&] { queriesThen = manager.queried.size(); };

    service->queryAssetChanges({script(chair), script(table), script(chair), script(plain), nullptr, gone()});

    ASSERT_THAT(manager.queried, SizeIs(1));
    EXPECT_EQ(manager.queried[0], (std::set{osg::AssetAttachment::getAssetAttachment(chair),
                                            osg::AssetAttachment::getAssetAttachment(table)}));
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(queriesThen, 1U) << "told afterwards";
    service->queryAssetChanges({script(plain), nullptr});
    service->queryAssetChanges({});
    EXPECT_THAT(manager.queried, SizeIs(1));
    EXPECT_EQ(changes, 1);
}

TEST_F(kxAssetsServiceImplTest, LoadsSceneplatesThroughTheInterfaceObject)
{
    service->loadSceneplateAssets({"b", QString::fromUtf8("ä")}, script(plain));
    service->loadSceneplateAssets({"c"}, gone());
    service->loadSceneplateAssets({}, nullptr);

    EXPECT_THAT(manager.plates, ElementsAre(Pair("b", plain.getFieldContainerId()),
                                            Pair(QString::fromUtf8("ä"), plain.getFieldContainerId()), Pair("c", 0U)));
    EXPECT_THAT(manager.calls, ElementsAre("loadSceneplateAsset", "loadSceneplateAsset", "broadcast 32768",
                                           "loadSceneplateAsset", "broadcast 32768"));
    EXPECT_EQ(changes, 0);
}

TEST_F(kxAssetsServiceImplTest, AsksForTheInterfaceObjectOnceInAProcess)
{
    service->loadSceneplateAssets({"a"}, nullptr);
    auto *object = kxInterfaceFactory::the().get<kxAssetsInterface>();
    kxInterfaceFactory::the().unregisterObject(object);

    service->loadSceneplateAssets({"b"}, nullptr);
    EXPECT_TRUE(kxInterfaceFactory::the().registerObject(object));

    EXPECT_THAT(manager.plates, ElementsAre(Pair("a", 0U), Pair("b", 0U)));
}

TEST_F(kxAssetsServiceImplTest, AsksForTheInterfaceObjectOnceAlsoFromTwoThreads)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // in a process in which nobody has asked yet
    EXPECT_EXIT(
        {
            auto *object = kxInterfaceFactory::the().get<kxAssetsInterface>();
            kxInterfaceFactory::the().unregisterObject(object);
            Obstacle obstacle;
            kxInterfaceFactory::the().registerObject(&obstacle);
            kxInterfaceFactory::the().registerObject(object);
            obstacle.askers = 0;
            obstacle.holdsUp = true;

            std::thread other([this] { service->loadSceneplateAssets({}, nullptr); });
            service->loadSceneplateAssets({}, nullptr);
            other.join();
            std::_Exit(obstacle.askers);
        },
        testing::ExitedWithCode(1), "");
}

TEST_F(kxAssetsServiceImplTest, KeepsTheOrderOfItsVirtualOperations)
{
    const std::ptrdiff_t first = tableEntryOf(&kxAssetsService::removeAssetReference);

    EXPECT_GT(first, tableEntryOf(&QObject::eventFilter)) << "after what it inherits";
    EXPECT_EQ(tableEntryOf(&kxAssetsService::selectAssets), first + 1);
    EXPECT_EQ(tableEntryOf(&kxAssetsService::overwriteAssets), first + 2);
    EXPECT_EQ(tableEntryOf(&kxAssetsService::findAssetNodes), first + 3);
    EXPECT_EQ(tableEntryOf(&kxAssetsService::markAssetsEdited), first + 4);
    EXPECT_EQ(tableEntryOf(&kxAssetsService::queryAssetChanges), first + 5);
    EXPECT_EQ(tableEntryOf(&kxAssetsService::loadSceneplateAssets), first + 6);
}

TEST_F(kxAssetsServiceImplTest, HoldsNothingItself)
{
    EXPECT_EQ(sizeof(kxAssetsServiceImpl), sizeof(kxAssetsService));
}
