// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxEnvironmentNodeAssetItem.h"

#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMultipleEnvironmentsDialog.h"
#include "Assets/kxUrlManager.h"
#include "EditWatch.h"
#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "NodeFixture.h"
#include "NodeManager.h"
#include "Rendering/kxOSGWidget.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/SceneListener.h"
#include "SceneGraph/TagAttachment.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "Support/CapturedOutput.h"

#include <QApplication>
#include <QListWidget>
#include <QSignalSpy>
#include <QTimer>
#include <QTranslator>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char *Key = "EnvironmentAssetMaterial";
constexpr const char *Value = "IsDefaultEnvironmentSwitchChild";
const std::string NodesUuid = "10000000-0000-4000-8000-000000000000";

/// What a back-end does that stores an environment.
bool stored(kxEnvironmentNodeAssetItem &item)
{
    item.setDirectoryUrl(NodeManager::url("/library/new"));
    return true;
}

/// Answers every text with its context.
class ContextTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *, const char *, int) const override { return context; }
    bool isEmpty() const override { return false; }
};

/// A view that notes when its refinement is stopped, and whether updates were still on by then.
class WatchfulView : public kxOSGWidget
{
public:
    std::vector<bool> cancellations;

private:
    void cancelRefinement() override { cancellations.push_back(kxController::isRenderUpdateEnabled()); }
};

/// Notes for each change of tags whether the host was rendering.
class TagWatch final : public osg::SceneListener
{
public:
    TagWatch() { osg::FieldContainerFactory::the().addListener(*this); }
    ~TagWatch() override { osg::FieldContainerFactory::the().removeListener(*this); }
    TagWatch(const TagWatch &) = delete;
    TagWatch &operator=(const TagWatch &) = delete;

    void containerChanged(osg::FieldContainer &container, osg::FieldMask) override
    {
        if (container.getType().isDerivedFrom(osg::TagAttachment::getClassType()))
            wasRendering.push_back(kxController::isRenderUpdateEnabled());
    }

    std::vector<bool> wasRendering;
};

class kxEnvironmentNodeAssetItemTest : public NodeFixture
{
protected:
    ~kxEnvironmentNodeAssetItemTest() override
    {
        nodes.storeEnvironment = nullptr;
        nodes.whenCollecting = nullptr;
    }

    /// Saves to the back-end that does what the test says.
    bool saveElsewhere(const osg::NodePtr &node)
    {
        kxEnvironmentNodeAssetItem item;
        item.initFrom(node, NodesUuid, true);
        return item.save(NodeManager::url("/library"));
    }
    static void registerElsewhere(const std::string &name)
    {
        kxAssetItemDocument document;
        document.setAssetType(Environment);
        document.setAssetUUID(NodesUuid);
        document.setAssetName(name);
        kxAssetItemFactory::the().createOrUpdateItem(document)->setDirectoryUrl(NodeManager::url("/library/old"));
    }
    static osg::NodePtr makeEnvironment(const std::string &name, const osg::MaterialPtr &material)
    {
        const auto core = osg::Environment::create();
        {
            const osg::CPEditor edit(core, osg::Environment::MaterialFieldMask);
            core->setMaterial(material);
        }
        return addNode(kxScenegraph::getRoot(), core, name);
    }
    std::string save(const osg::NodePtr &node)
    {
        kxEnvironmentNodeAssetItem item;
        item.initFrom(node, {}, true);
        EXPECT_TRUE(item.save(url()));
        return item.uuid();
    }
    static kxEnvironmentNodeAssetItem *registered(const std::string &uuid)
    {
        return dynamic_cast<kxEnvironmentNodeAssetItem *>(kxAssetItemFactory::the().findItem(uuid));
    }
    static osg::MaterialPtr materialOf(const osg::NodePtr &node)
    {
        return osg::EnvironmentPtr::dcast(node->getCore())->getMaterial();
    }
    static osg::MaterialPtr paintOf(const osg::NodePtr &square)
    {
        return osg::GeometryPtr::dcast(square->getCore())->getMaterial();
    }
    static bool isMarked(const osg::MaterialPtr &material) { return kxMaterials::hasValuePair(material, Key, Value); }
    static osg::UEnvironmentSwitchMaterialPtr choices() { return kxDefaultEnvironment::getSwitch(); }
    static osg::NodePtr places() { return kxScenegraph::environmentGeometrySwitch(); }
    /// Answers the question for the material as soon as it is asked.
    void answer(bool accepts)
    {
        QTimer::singleShot(0, qApp, [this, accepts] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            ASSERT_TRUE(dialog);
            ++asked;
            if (whileAsked)
                whileAsked(*dialog);
            accepts ? dialog->accept() : dialog->reject();
        });
    }

    NodeManager &nodes = NodeManager::fresh();
    Owned dawn = makeSky("dawn");
    Owned dusk = makeSky("dusk");
    int asked = 0;
    std::function<void(QDialog &dialog)> whileAsked;
};

} // namespace

TEST_F(kxEnvironmentNodeAssetItemTest, CollectsWhatItSavedWithoutShowingProgress)
{
    nodes.storeEnvironment = stored;

    EXPECT_TRUE(saveElsewhere(makeEnvironment("Dawn", dawn.get())));

    EXPECT_THAT(nodes.asked, ElementsAre("saveEnvironmentNodeAsset Dawn /library", "collectItems 2 /library/new"));
}

TEST_F(kxEnvironmentNodeAssetItemTest, RemovesWhatWasRegisteredAfterItWroteTheNew)
{
    registerElsewhere("Old");
    nodes.storeEnvironment = stored;

    EXPECT_TRUE(saveElsewhere(makeEnvironment("Dawn", dawn.get())));

    EXPECT_THAT(nodes.asked,
                ElementsAre("saveEnvironmentNodeAsset Dawn /library",
                            "removeOldItemDirectory Old for Dawn /library/old", "collectItems 2 /library/new"));
}

TEST_F(kxEnvironmentNodeAssetItemTest, LeavesAnItemThatAppearsWhileItWrites)
{
    nodes.storeEnvironment = [](kxEnvironmentNodeAssetItem &item) {
        registerElsewhere("Meanwhile");
        return stored(item);
    };

    EXPECT_TRUE(saveElsewhere(makeEnvironment("Dawn", dawn.get())));

    EXPECT_THAT(nodes.asked, ElementsAre("saveEnvironmentNodeAsset Dawn /library", "collectItems 2 /library/new"));
}

TEST_F(kxEnvironmentNodeAssetItemTest, StopsWhereItCannotBeWrittenOrTheOldCannotBeRemoved)
{
    registerElsewhere("Old");
    const osg::NodePtr node = makeEnvironment("Dawn", dawn.get());

    EXPECT_FALSE(saveElsewhere(node));
    nodes.storeEnvironment = stored;
    nodes.removesOldItems = false;
    EXPECT_FALSE(saveElsewhere(node));

    EXPECT_THAT(nodes.asked,
                ElementsAre("saveEnvironmentNodeAsset Dawn /library", "saveEnvironmentNodeAsset Dawn /library",
                            "removeOldItemDirectory Old for Dawn /library/old"));
    EXPECT_EQ(uuidOfNode(node), "none");
}

TEST_F(kxEnvironmentNodeAssetItemTest, MarksTheNodeAfterTheAssetWasCollected)
{
    const osg::NodePtr node = makeEnvironment("Dawn", dawn.get());
    nodes.storeEnvironment = stored;
    std::string during;
    nodes.whenCollecting = [&] {
        during = uuidOfNode(node);
        nodes.write("/library/new/Dawn.osb", "12345");
    };

    EXPECT_TRUE(saveElsewhere(node));

    EXPECT_EQ(during, "none");
    EXPECT_EQ(uuidOfNode(node), NodesUuid);
    EXPECT_EQ(osg::AssetAttachment::getAssetAttachment(node)->getChecksum(), 5U) << "of what is stored by then";
}

TEST_F(kxEnvironmentNodeAssetItemTest, IsAnEnvironment)
{
    kxEnvironmentNodeAssetItem item;
    const osg::NodePtr node = makeEnvironment("Hills", dawn.get());

    EXPECT_EQ(item.category(), Environment);
    EXPECT_EQ(item.mimeType(), "application/sarn-environment-asset");
    EXPECT_EQ(item.data(kxAssetCategory::getTypeColumn(), Qt::DisplayRole), "Environment Node");
    EXPECT_EQ(item.data(kxAssetCategory::getTypeColumn(), Qt::ToolTipRole), "Environment Node");
    item.initFrom(node, {}, true);
    EXPECT_EQ(item.getEnvironmentNode(), node);
    EXPECT_EQ(item.name(), "Hills");
    EXPECT_EQ(item.uuid().size(), 36U);
    item.initFrom(kxScenegraph::getRoot(), {}, true);
    EXPECT_FALSE(item.getEnvironmentNode()) << "a group is no environment";
    EXPECT_EQ(item.uuid(), "");
    EXPECT_EQ(item.category(), Environment);
}

TEST_F(kxEnvironmentNodeAssetItemTest, NamesItsKindAndLeavesTheRestToTheBase)
{
    kxEnvironmentNodeAssetItem item;
    item.initFrom(makeEnvironment("Hills", dawn.get()), {}, true);

    EXPECT_EQ(item.data(0, Qt::DisplayRole), QVariant("Hills"));
    EXPECT_EQ(item.data(0, Qt::EditRole), QVariant("Hills"));
    EXPECT_FALSE(item.data(kxAssetCategory::getTypeColumn(), Qt::EditRole).isValid());
    EXPECT_FALSE(item.data(kxAssetCategory::getTypeColumn(), Qt::DecorationRole).isValid());
}

TEST_F(kxEnvironmentNodeAssetItemTest, TranslatesInItsOwnContext)
{
    kxEnvironmentNodeAssetItem item;
    ContextTranslator translator;
    QCoreApplication::installTranslator(&translator);

    const QVariant kind = item.data(kxAssetCategory::getTypeColumn(), Qt::DisplayRole);
    QCoreApplication::removeTranslator(&translator);

    EXPECT_EQ(kind, QVariant("kxEnvironmentNodeAssetItem"));
}

TEST_F(kxEnvironmentNodeAssetItemTest, TakesTheUuidThatItIsGivenOrThatOfItsNode)
{
    const osg::NodePtr node = makeEnvironment("Hills", dawn.get());
    setUuid(node, "own");
    kxEnvironmentNodeAssetItem item;

    item.initFrom(node, {}, true);
    EXPECT_EQ(item.uuid(), "own");
    item.initFrom(node, "given", true);
    EXPECT_EQ(item.uuid(), "given");
    item.initFrom(node, {}, false);
    EXPECT_EQ(item.uuid().size(), 36U) << "a new one";
}

TEST_F(kxEnvironmentNodeAssetItemTest, IsResetByWhatIsNoNode)
{
    const osg::NodePtr node = makeEnvironment("Hills", dawn.get());
    const osg::FCRef<osg::Node> coreless(osg::Node::create());
    for (const osg::AttachmentContainerPtr &other :
         {osg::AttachmentContainerPtr(), osg::AttachmentContainerPtr(dawn.get()),
          osg::AttachmentContainerPtr(node->getCore()), osg::AttachmentContainerPtr(coreless.get())}) {
        kxEnvironmentNodeAssetItem item;
        item.initFrom(node, "u", true);

        item.initFrom(other, "u", true);

        EXPECT_FALSE(item.getEnvironmentNode());
        EXPECT_EQ(item.uuid(), "");
        EXPECT_EQ(item.name(), "unnamed");
        EXPECT_EQ(item.category(), Environment);
    }
}

TEST_F(kxEnvironmentNodeAssetItemTest, ReadsADestroyedNodeAsNone)
{
    const osg::NodePtr node = makeEnvironment("Hills", dawn.get());
    kxEnvironmentNodeAssetItem item;
    item.initFrom(node, {}, true);
    {
        const osg::CPEditor edit(kxScenegraph::getRoot(), osg::Node::ChildrenFieldMask);
        kxScenegraph::getRoot()->subChild(node);
    }

    EXPECT_FALSE(item.getEnvironmentNode());
    EXPECT_FALSE(item.save(url()));
}

TEST_F(kxEnvironmentNodeAssetItemTest, SavesTheNodeAndAsksForAPreview)
{
    const osg::NodePtr node = makeEnvironment("Hills", dawn.get());
    kxtest::CapturedOutput output;

    const std::string uuid = save(node);

    EXPECT_EQ(output.text(),
              "--------------\nkxLocalUrlManager::saveEnvironmentNodeAsset Hills\n   save environment to path: " +
                  _folder.file("ENV_Hills/") +
                  "\n[prepareEnvironmentSwitches] # replacements (switch by choice) = 0\n--------------\n");
    ASSERT_EQ(_host.previewRequests.size(), 1U);
    EXPECT_THAT(_host.previewRequests[0], ElementsAre(dawn.get()));
    EXPECT_EQ(_host.progressRequests, std::vector<bool>{false});
    ASSERT_TRUE(registered(uuid));
    EXPECT_EQ(uuidOfNode(node), uuid);
    EXPECT_TRUE(registered(uuid)->hasSameChecksum(node));
}

TEST_F(kxEnvironmentNodeAssetItemTest, SaysWhenItCannotBePrepared)
{
    const osg::NodePtr node = makeEnvironment("Empty", nullptr);
    kxEnvironmentNodeAssetItem item;
    item.initFrom(node, {}, true);
    const kxLogRecorder log;

    EXPECT_FALSE(item.save(url()));

    EXPECT_EQ(log.lines(kxLogLevel::Error), std::vector<std::string>{"Failed to prepare environment node for saving."});
    EXPECT_FALSE(item.save(QUrl("unknown:/place")));
    EXPECT_FALSE(kxEnvironmentNodeAssetItem().save(url())) << "without a node";
}

TEST_F(kxEnvironmentNodeAssetItemTest, ComesBackIntoTheSwitchWithoutAQuestion)
{
    const osg::NodePtr node = makeEnvironment("Hills", choices());
    ASSERT_TRUE(kxController::addToDefaultEnvironment(dawn.get(), node, false));
    const std::string uuid = save(node);
    EXPECT_EQ(materialOf(node), choices()) << "as it was";
    kxScenegraph::newDocument();
    kxtest::CapturedOutput output;

    const osg::NodePtr loaded = kxEnvironmentNodeAssetItem::loadEnvironmentNodeFromUUID(uuid);

    ASSERT_TRUE(loaded);
    EXPECT_EQ(output.text(),
              "[loadEnvironmentNode] loaded mat: dawn\n[loadEnvironmentNode] #loaded env mats 1\n"
              "[loadEnvironmentNode] pre update scenegraph\n"
              "[loadEnvironmentNode] post update scenegraph\n[loadEnvironmentNode] updated attachment\n");
    ASSERT_EQ(choices()->getMaterials().size(), 2U);
    const osg::MaterialPtr choice = choices()->getMaterial(1);
    EXPECT_EQ(osg::getName(choice), "dawn");
    EXPECT_TRUE(choice->getValuePairs().empty()) << "the mark is gone";
    EXPECT_THAT(tagsOf(choice), ElementsAre(kxAssetCategory::getTagPrefix(Environment) + "Hills"));
    EXPECT_EQ(places()->getChild(1), loaded);
    EXPECT_EQ(choices()->getChoice(), 1) << "made current";
    EXPECT_EQ(materialOf(loaded), choices()) << "the node follows the switch";
    EXPECT_EQ(uuidOfNode(loaded), uuid);
    EXPECT_FALSE(osg::AssetAttachment::getAssetAttachment(loaded)->getUserEdited());
    EXPECT_TRUE(kxController::isModified());
}

TEST_F(kxEnvironmentNodeAssetItemTest, KeepsItsNodeAndTheUpdatesWhenNothingCanBeLoaded)
{
    const std::string uuid = save(makeEnvironment("Hills", dawn.get()));
    ASSERT_TRUE(registered(uuid)->loadEnvironmentNode(false));
    const osg::NodePtr before = registered(uuid)->getEnvironmentNode();
    const std::size_t children = kxScenegraph::getRoot()->getNChildren();
    writeFile("ENV_Hills/Hills.osb", "no scene");
    kxController::setModified(false);

    for (const bool wasEnabled : {false, true}) {
        kxController::enableRenderUpdate(wasEnabled);
        EXPECT_FALSE(registered(uuid)->loadEnvironmentNode(true));
        EXPECT_EQ(kxController::isRenderUpdateEnabled(), wasEnabled);
    }

    EXPECT_EQ(registered(uuid)->getEnvironmentNode(), before);
    EXPECT_EQ(kxEnvironmentNodeAssetItem::loadEnvironmentNodeFromUUID(uuid), before) << "however the loading went";
    EXPECT_EQ(kxScenegraph::getRoot()->getNChildren(), children);
    EXPECT_FALSE(kxController::isModified());
}

TEST_F(kxEnvironmentNodeAssetItemTest, LoadsNothingFromWhereNobodyStoresAssets)
{
    const osg::NodePtr node = makeEnvironment("Hills", dawn.get());
    kxEnvironmentNodeAssetItem item;
    item.initFrom(node, {}, true);
    WatchfulView view;
    for (const QUrl &directory : {QUrl(), QUrl("http://["), QUrl("unknown:/place")}) {
        item.setDirectoryUrl(directory);
        EXPECT_FALSE(item.loadEnvironmentNode(true));
    }

    EXPECT_EQ(item.getEnvironmentNode(), node);
    EXPECT_TRUE(view.cancellations.empty()) << "nothing is to be rendered less for that";
}

TEST_F(kxEnvironmentNodeAssetItemTest, StopsTheRefinementOfTheViewsFirst)
{
    const std::string uuid = save(makeEnvironment("Hills", dawn.get()));
    WatchfulView view;

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    EXPECT_EQ(view.cancellations, std::vector<bool>{true});
    EXPECT_TRUE(kxController::isRenderUpdateEnabled());
}

TEST_F(kxEnvironmentNodeAssetItemTest, PausesRenderingWhileThePayloadLoads)
{
    setTags(dawn.get(), {"evening"});
    const std::string uuid = save(makeEnvironment("Hills", dawn.get()));
    const TagWatch watch;

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    ASSERT_FALSE(watch.wasRendering.empty());
    EXPECT_FALSE(watch.wasRendering.front()) << "when the payload's tags are read";
    EXPECT_TRUE(watch.wasRendering.back()) << "when the asset's tag is put on";
}

TEST_F(kxEnvironmentNodeAssetItemTest, RefreshesTheSceneBetweenItsTwoLines)
{
    const std::string uuid = save(makeEnvironment("Hills", dawn.get()));
    kxtest::CapturedOutput output;
    int updates = 0;
    const auto connection =
        QObject::connect(&kxScenegraph::notifier(), &kxScenegraphNotifier::updateRequested, [&updates, &output] {
            ++updates;
            EXPECT_THAT(output.text(), testing::EndsWith("\n[loadEnvironmentNode] pre update scenegraph\n"));
        });

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));
    QObject::disconnect(connection);

    EXPECT_EQ(updates, 1) << "at once";
}

TEST_F(kxEnvironmentNodeAssetItemTest, TakesTheFirstMarkedMaterialAndSaysThatItsMarkIsGone)
{
    const Owned noon = makeSky("noon");
    const osg::NodePtr node = makeEnvironment("Hills", dusk.get());
    addSquare(node, "Dome", dawn.get());
    addSquare(node, "Lamp", noon.get());
    kxMaterials::addValuePair(dawn.get(), Key, Value);
    kxMaterials::addValuePair(noon.get(), Key, Value);
    const std::string uuid = save(node);
    QSignalSpy changes(&kxScenegraph::notifier(), &kxScenegraphNotifier::valuePairsChanged);

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    const osg::NodePtr loaded = registered(uuid)->getEnvironmentNode();
    const osg::MaterialPtr chosen = choices()->getMaterial(1);
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(osg::getName(chosen), "dawn");
    EXPECT_EQ(paintOf(loaded->getChild(0)), choices());
    EXPECT_FALSE(isMarked(chosen));
    EXPECT_TRUE(isMarked(paintOf(loaded->getChild(1)))) << "it was not looked for any further";
    ASSERT_EQ(changes.count(), 1);
    EXPECT_EQ(changes[0][0].toUInt(), chosen.getFieldContainerId());
}

TEST_F(kxEnvironmentNodeAssetItemTest, ChoosesNothingWithoutADefaultSwitch)
{
    const osg::NodePtr node = makeEnvironment("Hills", dusk.get());
    addSquare(node, "Dome", dawn.get());
    kxMaterials::addValuePair(dusk.get(), Key, Value);
    const std::string uuid = save(node);
    kxNodeUtils::setMaterial(kxScenegraph::getDefaultEnvironmentNode(), dawn.get(), false, true);
    ASSERT_TRUE(places());

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    const osg::NodePtr loaded = registered(uuid)->getEnvironmentNode();
    EXPECT_EQ(loaded->getParent(), kxScenegraph::getRoot());
    EXPECT_TRUE(isMarked(materialOf(loaded)));
}

TEST_F(kxEnvironmentNodeAssetItemTest, ChoosesNothingWithoutPlaces)
{
    const osg::NodePtr node = makeEnvironment("Hills", dusk.get());
    addSquare(node, "Dome", dawn.get());
    kxMaterials::addValuePair(dusk.get(), Key, Value);
    const std::string uuid = save(node);
    const osg::NodePtr root = kxScenegraph::getRoot();
    {
        const osg::CPEditor edit(root, osg::Node::ChildrenFieldMask);
        root->addChild(kxScenegraph::getDefaultEnvironmentNode());
        root->subChild(places());
    }
    ASSERT_TRUE(choices());

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    const osg::NodePtr loaded = registered(uuid)->getEnvironmentNode();
    EXPECT_EQ(root->getChild(root->getNChildren() - 1), loaded) << "the last child";
    EXPECT_TRUE(isMarked(materialOf(loaded)));
}

TEST_F(kxEnvironmentNodeAssetItemTest, ChoosesNothingWhereNoEnvironmentMaterialIsAssigned)
{
    const osg::NodePtr node = makeEnvironment("Hills", nullptr);
    kxMaterials::setOverrideMaterial(node, choices());
    const std::string uuid = save(node);

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    const osg::NodePtr loaded = registered(uuid)->getEnvironmentNode();
    EXPECT_EQ(loaded->getParent(), kxScenegraph::getRoot());
    EXPECT_FALSE(osg::AssetAttachment::getAssetAttachment(loaded)->getUserEdited());
    EXPECT_EQ(choices()->getMaterials().size(), 1U);
}

TEST_F(kxEnvironmentNodeAssetItemTest, TakesASingleMaterialWithoutAQuestion)
{
    const std::string uuid = save(makeEnvironment("Hills", dawn.get()));

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(false));

    EXPECT_EQ(choices()->getMaterials().size(), 2U);
    EXPECT_EQ(choices()->getChoice(), 0) << "not made current";
    EXPECT_FALSE(osg::AssetAttachment::getAssetAttachment(registered(uuid)->getEnvironmentNode())->getUserEdited());
}

TEST_F(kxEnvironmentNodeAssetItemTest, AsksWhichOfSeveralMaterials)
{
    const osg::NodePtr node = makeEnvironment("Hills", dusk.get());
    addSquare(node, "Ground", dawn.get());
    const std::string uuid = save(node);
    whileAsked = [](const QDialog &dialog) {
        EXPECT_TRUE(dialog.isModal());
        ASSERT_TRUE(QApplication::overrideCursor());
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::ArrowCursor);
    };
    answer(true);
    const EditWatch watch;

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    EXPECT_EQ(asked, 1);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the dialog is gone";
    EXPECT_EQ(osg::getName(choices()->getMaterial(1)), "dawn") << "the first by name";
    const auto mark = osg::AssetAttachment::getAssetAttachment(registered(uuid)->getEnvironmentNode());
    EXPECT_TRUE(mark->getUserEdited());
    EXPECT_EQ(watch.editsOf(mark.getFieldContainerId()).back(), "AssetAttachment UserEdited");
}

TEST_F(kxEnvironmentNodeAssetItemTest, GivesUpWhenTheQuestionIsCancelled)
{
    const osg::NodePtr node = makeEnvironment("Hills", dusk.get());
    addSquare(node, "Ground", dawn.get());
    const std::string uuid = save(node);
    const std::size_t children = kxScenegraph::getRoot()->getNChildren();
    kxController::setModified(false);
    answer(false);

    EXPECT_FALSE(registered(uuid)->loadEnvironmentNode(true));

    EXPECT_EQ(asked, 1);
    EXPECT_FALSE(registered(uuid)->getEnvironmentNode());
    EXPECT_EQ(choices()->getMaterials().size(), 1U);
    EXPECT_EQ(kxScenegraph::getRoot()->getNChildren(), children) << "what was loaded is not hung anywhere";
    EXPECT_FALSE(kxController::isModified());
}

TEST_F(kxEnvironmentNodeAssetItemTest, GoesOnWithoutAChoiceWhenNothingIsSelected)
{
    const osg::NodePtr node = makeEnvironment("Hills", dusk.get());
    addSquare(node, "Ground", dawn.get());
    const std::string uuid = save(node);
    whileAsked = [](QDialog &dialog) { dialog.findChild<QListWidget *>("_envList")->clearSelection(); };
    answer(true);

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    const osg::NodePtr loaded = registered(uuid)->getEnvironmentNode();
    ASSERT_TRUE(loaded);
    EXPECT_EQ(choices()->getMaterials().size(), 1U);
    EXPECT_EQ(loaded->getParent(), kxScenegraph::getRoot());
    EXPECT_TRUE(osg::AssetAttachment::getAssetAttachment(loaded)->getUserEdited()) << "a person decided";
}

TEST_F(kxEnvironmentNodeAssetItemTest, GivesUpWhenItIsDeletedWhileItAsks)
{
    const osg::NodePtr node = makeEnvironment("Hills", dusk.get());
    addSquare(node, "Ground", dawn.get());
    const std::string uuid = save(node);
    whileAsked = [](QDialog &) { kxAssetItemFactory::the().deleteAllItems(); };
    for (const bool accepts : {true, false}) {
        kxUrlManager::getUrlManager(url())->collectItems(url(), Undefined, nullptr);
        ASSERT_TRUE(registered(uuid));
        answer(accepts);

        EXPECT_FALSE(kxEnvironmentNodeAssetItem::loadEnvironmentNodeFromUUID(uuid));
    }
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(choices()->getMaterials().size(), 1U);
}

TEST_F(kxEnvironmentNodeAssetItemTest, HangsBelowTheRootWhenTheSwitchRefuses)
{
    const std::string uuid = save(makeEnvironment("Hills", dawn.get()));
    {
        const osg::CPEditor edit(places(), osg::Node::CoreFieldMask);
        places()->setCore(osg::Group::create());
    }

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    const osg::NodePtr loaded = registered(uuid)->getEnvironmentNode();
    EXPECT_EQ(loaded->getParent(), kxScenegraph::getRoot());
    EXPECT_EQ(osg::getName(materialOf(loaded)), "dawn") << "it does not follow a switch that it is not in";
    EXPECT_EQ(choices()->getMaterials().size(), 1U);
}

TEST_F(kxEnvironmentNodeAssetItemTest, TagsAllItsMaterialsAndHangsThoseOfTheChoiceOnTheSwitch)
{
    const osg::NodePtr node = makeEnvironment("Hills", dawn.get());
    addSquare(node, "Dome", dawn.get());
    const Owned paint = makeSurface("Paint");
    addSquare(node, "Floor", paint.get());
    const std::string uuid = save(node);
    kxtest::CapturedOutput output;

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    EXPECT_THAT(output.text(), HasSubstr("[loadEnvironmentNode] loaded mat: Paint\n"));
    EXPECT_THAT(output.text(), HasSubstr("[loadEnvironmentNode] #loaded env mats 1\n"));
    const osg::NodePtr loaded = registered(uuid)->getEnvironmentNode();
    EXPECT_EQ(osg::GeometryPtr::dcast(loaded->getChild(0)->getCore())->getMaterial(), choices());
    const osg::MaterialPtr floor = osg::GeometryPtr::dcast(loaded->getChild(1)->getCore())->getMaterial();
    EXPECT_EQ(osg::getName(floor), "Paint");
    EXPECT_THAT(tagsOf(floor), ElementsAre(kxAssetCategory::getTagPrefix(Environment) + "Hills"));
}

TEST_F(kxEnvironmentNodeAssetItemTest, MovesToAnotherFolder)
{
    const osg::NodePtr node = makeEnvironment("Hills", dawn.get());
    const std::string uuid = save(node);
    kxEnvironmentNodeAssetItem item;
    item.initFrom(node, {}, true);

    EXPECT_TRUE(item.save(url("other")));

    EXPECT_FALSE(_folder.contains("ENV_Hills"));
    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 1);
    EXPECT_EQ(registered(uuid)->directoryUrl(), url("other/ENV_Hills"));
    EXPECT_TRUE(registered(uuid)->hasSameChecksum(node));
}

TEST_F(kxEnvironmentNodeAssetItemTest, FailsWhereItsOldDirectoryCannotBeRemoved)
{
    const osg::NodePtr node = makeEnvironment("Hills", dawn.get());
    const std::string uuid = save(node);
    kxEnvironmentNodeAssetItem item;
    item.initFrom(node, {}, true);
    kxtest::CapturedOutput output;

    EXPECT_FALSE(item.save(url("ENV_Hills"))) << "below which it was to be written";

    EXPECT_THAT(output.text(), testing::EndsWith("\ndeleting old directory failed.\n"));
    EXPECT_EQ(osg::AssetAttachment::getAssetAttachment(node)->getUrl(), url("ENV_Hills").toString().toStdString());
    EXPECT_EQ(registered(uuid)->directoryUrl(), url("ENV_Hills"));
}

TEST_F(kxEnvironmentNodeAssetItemTest, TagsCompositesAndNotTheirParts)
{
    const Owned part = makeSurface("Part");
    const osg::NodePtr node = makeEnvironment("Hills", dawn.get());
    addSquare(node, "Floor", makeMultiPass("Composite", {part}).get());
    const std::string uuid = save(node);
    kxtest::CapturedOutput output;

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    EXPECT_THAT(output.text(), HasSubstr("loaded mat: Composite\n"));
    EXPECT_THAT(output.text(), testing::Not(HasSubstr("loaded mat: Part\n")));
    const osg::MaterialPtr floor = paintOf(registered(uuid)->getEnvironmentNode()->getChild(0));
    EXPECT_THAT(tagsOf(floor), ElementsAre(kxAssetCategory::getTagPrefix(Environment) + "Hills"));
    EXPECT_THAT(tagsOf(kxMaterials::getSubMaterials(floor).at(0)), ElementsAre("(no attachment)"));
}

TEST_F(kxEnvironmentNodeAssetItemTest, LeavesTheSceneAsItWasWhenThePayloadCannotBeWritten)
{
    const osg::NodePtr node = makeEnvironment("Hills", choices());
    ASSERT_TRUE(kxController::addToDefaultEnvironment(dawn.get(), node, false));
    kxEnvironmentNodeAssetItem item;
    item.initFrom(node, {}, true);
    writeAsset("ENV_Hills", "<category>Environments</category><uuid>" + item.uuid() + "</uuid><name>Hills</name>");
    writeFile("ENV_Hills/Hills.osb/in the way", "x");
    const kxLogRecorder log;

    EXPECT_FALSE(item.save(url()));

    EXPECT_THAT(log.lines(kxLogLevel::Error), ElementsAre(HasSubstr("Failed to write file '")));
    EXPECT_EQ(materialOf(node), choices());
    EXPECT_TRUE(item.directoryUrl().isEmpty());
}

TEST_F(kxEnvironmentNodeAssetItemTest, HangsBelowTheRootWithoutPlacesForEnvironments)
{
    const std::string uuid = save(makeEnvironment("Hills", dawn.get()));
    {
        const osg::CPEditor edit(kxScenegraph::getRoot(), osg::Node::ChildrenFieldMask);
        kxScenegraph::getRoot()->subChild(places());
    }

    EXPECT_TRUE(registered(uuid)->loadEnvironmentNode(true));

    const osg::NodePtr loaded = registered(uuid)->getEnvironmentNode();
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->getParent(), kxScenegraph::getRoot());
    EXPECT_EQ(osg::getName(materialOf(loaded)), "dawn");
}

TEST_F(kxEnvironmentNodeAssetItemTest, SaysWhatItCannotFind)
{
    const std::string material = store(makeSurface("Red"));
    kxtest::CapturedOutput output;

    EXPECT_FALSE(kxEnvironmentNodeAssetItem::loadEnvironmentNodeFromUUID("nobody"));
    EXPECT_FALSE(kxEnvironmentNodeAssetItem::loadEnvironmentNodeFromUUID(material));
    EXPECT_FALSE(kxEnvironmentNodeAssetItem().loadEnvironmentNode(true));

    EXPECT_EQ(output.text(), "[Env::loadEnvironmentNodeFromUUID] did not find item with uuid 'nobody'\n");
}
