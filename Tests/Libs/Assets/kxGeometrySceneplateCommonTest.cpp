// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxGeometrySceneplateCommon.h"

#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxSceneplateAssetItem.h"
#include "EditWatch.h"
#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeKeys.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "NodeFixture.h"
#include "NodeManager.h"
#include "Rendering/kxOSGWidget.h"
#include "SceneChangeListener.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/SynchronizationAttachment.h"
#include "SceneGraph/UberMaterial.h"
#include "Support/CapturedOutput.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTranslator>

#include <gmock/gmock.h>

#include <cstring>
#include <map>
#include <type_traits>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A geometry item with its protected operations made public, of any category.
class OpenItem : public kxGeometryAssetItem
{
public:
    explicit OpenItem(kxAssetCategoryType category = Geometry) { setCategory(category); }

    using kxGeometryAssetItem::insertGeometryAssetRoot;
    using kxGeometryAssetItem::setName;
    using kxGeometryAssetItem::setNodeNameToItemName;
    using kxGeometryAssetItem::setNodeReference;
};

/// A view that notes when its refinement is stopped, and whether updates were still on by then.
class WatchfulView final : public kxOSGWidget
{
public:
    std::vector<bool> cancellations;

private:
    void cancelRefinement() override { cancellations.push_back(kxController::isRenderUpdateEnabled()); }
};

class kxGeometrySceneplateCommonTest : public NodeFixture
{
protected:
    ~kxGeometrySceneplateCommonTest() override
    {
        nodes.load = nullptr;
        nodes.acceptsEverything = false;
        kxController::enableRenderUpdate(true);
    }

    static osg::NodePtr root() { return kxScenegraph::getRoot(); }
    static osg::NodePtr makeNode(const osg::NodeCorePtr &core, const std::string &name)
    {
        const osg::NodePtr node = osg::makeNodeFor(core);
        osg::setName(node, name);
        return node;
    }
    /// Has this loaded from the directory "nodes:/x".
    void setPayload(const osg::NodePtr &node)
    {
        payload = node;
        nodes.load = [node](osg::NodePtr &result) {
            result = node;
            return true;
        };
    }
    /// Loads the payload, which is wrapped or not; the root is kept.
    osg::NodePtr load(kxGeometrySceneplateCommon &item)
    {
        item.setDirectoryUrl(NodeManager::url("/x"));
        EXPECT_TRUE(item.loadNode());
        loaded = item.getNode();
        return loaded;
    }
    static void synchronise(const osg::NodePtr &node, const std::vector<std::string> &partners)
    {
        const auto record = osg::SynchronizationAttachment::create();
        {
            const osg::CPEditor edit(record, osg::SynchronizationAttachment::PartnersFieldMask);
            record->editPartners() = partners;
        }
        const osg::CPEditor edit(node, osg::AttachmentContainer::AttachmentsFieldMask);
        node->addAttachment(record);
    }
    static std::vector<std::string> partnersOf(const osg::NodePtr &node)
    {
        const auto record = osg::findAttachment<osg::SynchronizationAttachment>(node);
        return record ? record->getPartners().values() : std::vector<std::string>{"no record"};
    }
    /// Lit by \a environment; null: by nothing of its own.
    static osg::FCRef<osg::UBRDFMaterial> makeLayer(const osg::MaterialPtr &environment = nullptr)
    {
        osg::FCRef<osg::UBRDFMaterial> layer(osg::UBRDFMaterial::create());
        const osg::CPEditor edit(layer.get(), osg::UBRDFMaterial::EnvironmentFieldMask);
        if (environment)
            layer->setEnvironment(environment);
        return layer;
    }
    static Owned makeLayered(const std::vector<osg::UBRDFMaterialPtr> &layers)
    {
        const osg::FCRef<osg::UberMaterial> uber(osg::UberMaterial::create());
        const osg::CPEditor edit(uber.get(), osg::UberMaterial::BRDFMaterialsFieldMask);
        for (const osg::UBRDFMaterialPtr &layer : layers)
            uber->editBRDFMaterials().push_back(layer);
        return osg::MaterialPtr(uber.get());
    }

    NodeManager &nodes = NodeManager::fresh();
    osg::FCRef<osg::Node> payload;
    osg::FCRef<osg::Node> loaded;
};

} // namespace

TEST_F(kxGeometrySceneplateCommonTest, LoadsNothingFromAnInvalidOrAForeignPlace)
{
    OpenItem item;
    nodes.acceptsEverything = true;
    EXPECT_FALSE(item.loadNode()) << "the directory is invalid, whoever accepts it";
    nodes.acceptsEverything = false;
    item.setDirectoryUrl(QUrl("unknown:/place"));
    EXPECT_FALSE(item.loadNode());

    EXPECT_THAT(nodes.asked, IsEmpty());
}

TEST_F(kxGeometrySceneplateCommonTest, LoadsWithUpdatesOffAndTheRefinementStoppedOnce)
{
    WatchfulView view;
    std::vector<bool> during;
    nodes.load = [&during](osg::NodePtr &) {
        during.push_back(kxController::isRenderUpdateEnabled());
        return false;
    };
    OpenItem item;
    item.setDirectoryUrl(NodeManager::url("/x"));

    EXPECT_FALSE(item.loadNode());
    EXPECT_TRUE(kxController::isRenderUpdateEnabled());
    kxController::enableRenderUpdate(false);
    EXPECT_FALSE(item.loadNode());
    EXPECT_FALSE(kxController::isRenderUpdateEnabled()) << "as it was";

    EXPECT_THAT(view.cancellations, ElementsAre(true, false)) << "once each, before updates go off";
    EXPECT_THAT(during, ElementsAre(false, false));
}

TEST_F(kxGeometrySceneplateCommonTest, LoadsASceneplateOnlyWhereThatIsTheCategory)
{
    std::vector<bool> wereNull;
    nodes.load = [&wereNull](osg::NodePtr &node) {
        wereNull.push_back(!node);
        return false;
    };
    const osg::FCRef<osg::Node> before(makeNode(osg::Group::create(), "Before"));

    for (const kxAssetCategoryType category : {Undefined, Material, Environment, Geometry, Sceneplate}) {
        OpenItem item(category);
        item.setDirectoryUrl(NodeManager::url("/x"));
        item.setNode(before);
        EXPECT_FALSE(item.loadNode());
    }

    EXPECT_THAT(nodes.asked, ElementsAre("loadNodeFromDir /x", "loadNodeFromDir /x", "loadNodeFromDir /x",
                                         "loadNodeFromDir /x", "loadSceneplateFromDir /x"));
    EXPECT_THAT(wereNull, ElementsAre(true, true, true, true, true));
}

TEST_F(kxGeometrySceneplateCommonTest, SaysThatTheCategoryIsBadAlsoWhenTheLoadFails)
{
    OpenItem item(Undefined);
    item.setDirectoryUrl(NodeManager::url("/x"));
    const kxLogRecorder log;

    EXPECT_FALSE(item.loadNode());

    EXPECT_EQ(log.lines(kxLogLevel::Error), std::vector<std::string>{"Bad category in loadNode"});
}

TEST_F(kxGeometrySceneplateCommonTest, KeepsItsNodeWhenThePayloadFailsOrIsEmpty)
{
    const osg::FCRef<osg::Node> before(makeNode(osg::Group::create(), "Before"));
    const osg::FCRef<osg::Node> half(makeNode(osg::Group::create(), "Half"));
    OpenItem item;
    item.setDirectoryUrl(NodeManager::url("/x"));
    item.setNode(before);
    kxtest::CapturedOutput output;

    nodes.load = [&half](osg::NodePtr &node) {
        node = half;
        return false;
    };
    EXPECT_FALSE(item.loadNode()) << "it says that it failed";
    nodes.load = [](osg::NodePtr &) { return true; };
    EXPECT_FALSE(item.loadNode()) << "there is no node";

    EXPECT_EQ(item.getNode(), before.get());
    EXPECT_EQ(output.text(), "");
    EXPECT_EQ(osg::getName(half), "Half");
}

TEST_F(kxGeometrySceneplateCommonTest, WrapsALoadedLeafThatHasAPlacement)
{
    setPayload(makeNode(osg::Transform3D::create(), "Leaf"));
    OpenItem item;
    item.setName("Chair");

    EXPECT_EQ(describe(load(item)), "Chair(Leaf)");
    const auto placement = osg::Transform3DPtr::dcast(loaded->getCore());
    ASSERT_TRUE(placement);
    EXPECT_EQ(placement->getMatrix(), osg::Matrix());
    EXPECT_TRUE(osg::AssetAttachment::getAssetAttachment(loaded));
    EXPECT_FALSE(osg::AssetAttachment::getAssetAttachment(payload));
}

TEST_F(kxGeometrySceneplateCommonTest, AnnouncesTheNameOfTheRootAndNothingElse)
{
    setPayload(makeNode(osg::Transform3D::create(), "Root"));
    setUuid(addGroup(payload, "Child"), "own-uuid");
    OpenItem item;
    item.initFrom(payload, "own-uuid", true);
    item.setName("Stuhl");
    QCoreApplication::processEvents();
    QSignalSpy names(&kxScenegraph::notifier(), &kxScenegraphNotifier::nameChanged);
    QSignalSpy updates(&kxScenegraph::notifier(), &kxScenegraphNotifier::updateRequested);
    kxtest::CapturedOutput output;

    load(item);
    QCoreApplication::processEvents();

    ASSERT_EQ(names.count(), 1);
    EXPECT_EQ(names[0][0].toUInt(), payload.get().getFieldContainerId());
    EXPECT_EQ(describe(payload), "Stuhl(Child)");
    EXPECT_EQ(uuidOfNode(payload.get()->getChild(0)), "none");
    EXPECT_EQ(updates.count(), 0);
    EXPECT_EQ(output.text(), "[loadNode] updated attachment\n");
}

TEST_F(kxGeometrySceneplateCommonTest, TakesTheKindOfTheLoadedSceneplate)
{
    const auto plate = osg::Sceneplate::create();
    {
        const osg::CPEditor edit(plate, osg::Sceneplate::IsFrontFieldMask);
        plate->setIsFront(false);
    }
    setPayload(makeNode(plate, "Sky"));
    kxSceneplateAssetItem item;

    EXPECT_EQ(load(item), payload.get());

    EXPECT_EQ(item.sceneplateTypeName(), "Backplate");
}

TEST_F(kxGeometrySceneplateCommonTest, DropsSynchronisationsOfWhatItLoadsThatAreNotMutual)
{
    setPayload(makeNode(osg::Transform3D::create(), "Root"));
    const osg::NodePtr a = addGroup(payload, "A");
    const osg::NodePtr b = addGroup(payload, "B");
    const osg::NodePtr c = addGroup(payload, "C");
    const std::string keyA = kxNodeKeys::make(a);
    const std::string keyB = kxNodeKeys::make(b);
    synchronise(a, {keyB, "nobody", kxNodeKeys::make(c)});
    synchronise(b, {keyA});
    synchronise(c, {"nobody"});
    OpenItem item;

    load(item);

    EXPECT_THAT(partnersOf(a), ElementsAre(keyB));
    EXPECT_THAT(partnersOf(b), ElementsAre(keyA));
    EXPECT_THAT(partnersOf(c), ElementsAre("no record"));
}

TEST_F(kxGeometrySceneplateCommonTest, LightsEveryLayerOfTheOverridesInTheirOrder)
{
    const Owned dawn = makeSky("dawn");
    const auto first = makeLayer(dawn);
    const auto second = makeLayer(dawn);
    const auto plain = makeLayer(dawn);
    const Owned low = makeLayered({second});
    const Owned high = makeLayered({nullptr, first});
    setPayload(makeNode(osg::Transform3D::create(), "Root"));
    kxMaterials::setOverrideMaterial(payload, high);
    kxMaterials::setOverrideMaterial(addGroup(payload, "Child"), low);
    kxMaterials::setOverrideMaterial(addGroup(payload, "Plain"), plain.get());
    OpenItem item;
    std::vector<std::pair<std::uint32_t, osg::FieldMask>> changes;
    const SceneChangeListener listener([&changes](osg::FieldContainer &container, osg::FieldMask fields) {
        if (container.getType().isDerivedFrom(osg::UBRDFMaterial::getClassType()))
            changes.emplace_back(container.getFieldContainerId(), fields);
    });

    load(item);

    const osg::FieldMask environment = osg::UBRDFMaterial::EnvironmentFieldMask;
    EXPECT_THAT(changes, ElementsAre(std::pair(second.get().getFieldContainerId(), environment),
                                     std::pair(first.get().getFieldContainerId(), environment)));
    EXPECT_EQ(first->getEnvironment(), kxDefaultEnvironment::getDefault());
    EXPECT_EQ(second->getEnvironment(), kxDefaultEnvironment::getDefault());
    EXPECT_EQ(plain->getEnvironment(), dawn.get()) << "it has no layers";
}

TEST_F(kxGeometrySceneplateCommonTest, LeavesWhatOverridesAreMadeOf)
{
    const Owned dawn = makeSky("dawn");
    const auto layer = makeLayer(dawn);
    const Owned choices = makeSwitch("Choices", {makeLayered({layer})});
    setPayload(makeNode(osg::Transform3D::create(), "Root"));
    kxMaterials::setOverrideMaterial(payload, choices);
    OpenItem item;

    load(item);

    EXPECT_EQ(layer->getEnvironment(), dawn.get());
}

TEST_F(kxGeometrySceneplateCommonTest, LeavesTheLightOfOverridesWithoutADefaultEnvironment)
{
    const Owned dawn = makeSky("dawn");
    const auto layer = makeLayer(dawn);
    setPayload(makeNode(osg::Transform3D::create(), "Root"));
    kxMaterials::setOverrideMaterial(payload, makeLayered({layer}));
    {
        const osg::NodePtr places = kxScenegraph::environmentGeometrySwitch();
        const osg::CPEditor edit(root(), osg::Node::ChildrenFieldMask);
        root()->subChild(places);
    }
    OpenItem item;

    load(item);

    EXPECT_EQ(layer->getEnvironment(), dawn.get());
}

TEST_F(kxGeometrySceneplateCommonTest, WrapsANodeAtItsPlaceAmongItsSiblings)
{
    const osg::NodePtr parent = addGroup(root(), "P");
    addGroup(parent, "A");
    const osg::NodePtr inside = addGroup(parent, "B");
    addGroup(parent, "C");
    setUuid(inside, "b-uuid");
    OpenItem item;
    QSignalSpy names(&kxScenegraph::notifier(), &kxScenegraphNotifier::nameChanged);
    osg::NodePtr node = inside;

    EXPECT_TRUE(item.insertGeometryAssetRoot(node));

    EXPECT_EQ(describe(parent), "P(A Asset(B) C)");
    EXPECT_EQ(parent->getChild(1), node) << "the root takes the place of the node";
    const auto placement = osg::Transform3DPtr::dcast(node->getCore());
    ASSERT_TRUE(placement);
    EXPECT_EQ(placement->getMatrix(), osg::Matrix());
    EXPECT_EQ(uuidOfNode(node), "b-uuid");
    EXPECT_EQ(uuidOfNode(inside), "none");
    EXPECT_EQ(inside->getRefCount(), 1);
    ASSERT_EQ(names.count(), 1);
    EXPECT_EQ(names[0][0].toUInt(), node.getFieldContainerId());
}

TEST_F(kxGeometrySceneplateCommonTest, WrapsANodeThatHangsNowhere)
{
    const osg::FCRef<osg::Node> inside(makeNode(osg::Group::create(), "B"));
    OpenItem item;
    osg::NodePtr none;
    osg::NodePtr node = inside;

    EXPECT_FALSE(item.insertGeometryAssetRoot(none));
    EXPECT_TRUE(item.insertGeometryAssetRoot(node));

    const osg::FCRef<osg::Node> made(node);
    EXPECT_FALSE(none);
    EXPECT_EQ(describe(made), "Asset(B)");
    EXPECT_FALSE(made->getParent());
    EXPECT_FALSE(osg::AssetAttachment::getAssetAttachment(made)) << "there was none to move";
}

TEST_F(kxGeometrySceneplateCommonTest, TellsListenersWhichFieldsWrappingChanged)
{
    const osg::NodePtr parent = addGroup(root(), "P");
    const osg::NodePtr inside = addGroup(parent, "B");
    setUuid(inside, "b-uuid");
    OpenItem item;
    std::map<std::uint32_t, osg::FieldMask> changes;
    const SceneChangeListener listener([&changes](osg::FieldContainer &container, osg::FieldMask fields) {
        if (container.getType().isDerivedFrom(osg::Node::getClassType()))
            changes[container.getFieldContainerId()] |= fields;
    });
    osg::NodePtr node = inside;

    item.insertGeometryAssetRoot(node);

    const osg::FieldMask attachments = osg::AttachmentContainer::AttachmentsFieldMask;
    EXPECT_EQ(changes, (std::map<std::uint32_t, osg::FieldMask>{
                           {parent.getFieldContainerId(), osg::Node::ChildrenFieldMask},
                           {inside.getFieldContainerId(), attachments},
                           {node.getFieldContainerId(),
                            osg::Node::CoreFieldMask | osg::Node::ChildrenFieldMask | attachments}}));
}

TEST_F(kxGeometrySceneplateCommonTest, NamesOneFieldInEachEditThatWrapsANode)
{
    const osg::NodePtr parent = addGroup(root(), "P");
    const osg::NodePtr inside = addGroup(parent, "B");
    setUuid(inside, "b-uuid");
    OpenItem item;
    osg::NodePtr node = inside;
    const EditWatch watch;

    item.insertGeometryAssetRoot(node);

    EXPECT_THAT(watch.editsOf(parent.getFieldContainerId()), ElementsAre("Node Children"));
    EXPECT_THAT(watch.editsOf(node.getFieldContainerId()),
                ElementsAre("Node Core", "Node Attachments", "Node Children", "Node Attachments"))
        << "the second is its name";
    EXPECT_THAT(watch.editsOf(inside.getFieldContainerId()), ElementsAre("Node Attachments"));
}

TEST_F(kxGeometrySceneplateCommonTest, NamesTheEnvironmentAloneWhereItLightsOverrides)
{
    const auto layer = makeLayer();
    const Owned over = makeLayered({layer.get()});
    const osg::NodePtr chair = addSquare(root(), "Chair");
    kxMaterials::setOverrideMaterial(chair, over.get());
    OpenItem item;
    setPayload(chair);
    const EditWatch watch;

    load(item);

    EXPECT_THAT(watch.editsOf(layer.get().getFieldContainerId()), ElementsAre("UBRDFMaterial Environment"));
}

TEST_F(kxGeometrySceneplateCommonTest, WrapsNotEvenARootThatLosesItsPlacementMeanwhile)
{
    const osg::NodePtr chair = makeNode(osg::Transform3D::create(), "Chair");
    addSquare(chair, "Seat");
    setUuid(chair, "of another asset");
    kxMaterials::setOverrideMaterial(chair->getChild(0), makeLayered({makeLayer().get()}).get());
    setPayload(chair);
    const SceneChangeListener listener([&chair](osg::FieldContainer &container, osg::FieldMask) {
        if (!container.getType().isDerivedFrom(osg::UBRDFMaterial::getClassType()))
            return;
        const osg::CPEditor edit(chair, osg::Node::CoreFieldMask);
        chair->setCore(osg::Group::create());
    });
    OpenItem item;

    load(item);

    ASSERT_FALSE(kxGeometryAssetItem::isValidAssetRoot(chair)) << "somebody took it away when the surface was lit";
    EXPECT_EQ(item.getNode(), chair);
    EXPECT_FALSE(chair->getParent());
}

TEST_F(kxGeometrySceneplateCommonTest, NamesANodeOnlyAfterAKnownItem)
{
    describeComposite("known", "SwitchMaterial", {});
    const osg::NodePtr unmarked = addGroup(root(), "Unmarked");
    const osg::NodePtr stranger = addGroup(root(), "Stranger");
    setUuid(stranger, "stranger");
    const osg::NodePtr known = addGroup(root(), "Known");
    setUuid(known, "known");
    OpenItem item;
    item.setName("Not this one");
    QSignalSpy names(&kxScenegraph::notifier(), &kxScenegraphNotifier::nameChanged);

    item.setNodeNameToItemName(nullptr);
    for (const osg::NodePtr &node : {unmarked, stranger, known})
        item.setNodeNameToItemName(node);

    EXPECT_EQ(osg::getName(unmarked), "Unmarked");
    EXPECT_EQ(osg::getName(stranger), "Stranger");
    EXPECT_EQ(osg::getName(known), "known");
    ASSERT_EQ(names.count(), 1);
    EXPECT_EQ(names[0][0].toUInt(), known.getFieldContainerId());
}

TEST_F(kxGeometrySceneplateCommonTest, TakesTheGivenIdentityBeforeThatOfTheNode)
{
    const osg::NodePtr node = addGroup(root(), "Node");
    setUuid(node, "of-the-node");
    OpenItem item;

    item.initFrom(node, "given", true);
    EXPECT_EQ(item.uuid(), "given");
    item.initFrom(node, {}, true);
    EXPECT_EQ(item.uuid(), "of-the-node");
    item.initFrom(node, "given", false);
    EXPECT_EQ(item.uuid().size(), 36U) << "a new one";
}

TEST_F(kxGeometrySceneplateCommonTest, ResetsItselfAndNothingElseForWhatIsNoNode)
{
    const osg::NodePtr node = addGroup(root(), "Node");
    const Owned paint = makeSurface("Paint");
    for (const osg::AttachmentContainerPtr &other :
         {osg::AttachmentContainerPtr(), osg::AttachmentContainerPtr(paint.get())}) {
        kxSceneplateAssetItem item;
        item.initFrom(node, {}, true);
        item.setDirectoryUrl(url("x"));

        item.initFrom(other, "given", true);

        EXPECT_FALSE(item.getNode());
        EXPECT_EQ(item.sceneplateTypeName(), "Unknown") << "by the reset of its class";
        EXPECT_EQ(item.category(), Sceneplate);
        EXPECT_EQ(item.name(), "unnamed");
        EXPECT_EQ(item.uuid(), "");
        EXPECT_TRUE(item.directoryUrl().isEmpty());
    }
}

TEST_F(kxGeometrySceneplateCommonTest, HasANodeOnlyWhereItsReferenceIsOne)
{
    const osg::NodePtr node = addGroup(root(), "Node");
    const Owned paint = makeSurface("Paint");
    OpenItem item;

    item.setNode(node);
    EXPECT_EQ(item.getNode(), node);
    item.setNodeReference(paint.get().getFieldContainerId());
    EXPECT_FALSE(item.getNode()) << "it is a material's";
    item.setNode(node);
    item.setNode(nullptr);
    EXPECT_FALSE(item.getNode());
}

TEST_F(kxGeometrySceneplateCommonTest, HoldsNothingOfItsNode)
{
    const osg::NodePtr node = addGroup(root(), "Node");
    {
        OpenItem item;
        item.initFrom(node, {}, true);
        EXPECT_EQ(node->getRefCount(), 1) << "its parent's";
    }
    EXPECT_EQ(node->getRefCount(), 1);
    EXPECT_EQ(node->getParent(), root());
}

TEST_F(kxGeometrySceneplateCommonTest, ShowsWhatEveryItemShowsInTheOtherColumns)
{
    OpenItem item;
    item.setName("Chair");

    EXPECT_EQ(item.data(kxAssetCategory::getNameColumn(), Qt::DisplayRole), "Chair");
    EXPECT_EQ(item.data(kxAssetCategory::getNameColumn(), Qt::ToolTipRole), "Chair");
    EXPECT_FALSE(item.data(kxAssetCategory::getTypeColumn(), Qt::EditRole).isValid());
}

TEST_F(kxGeometrySceneplateCommonTest, TranslatesItsTypeInTheContextOfItsClass)
{
    struct ContextTranslator : QTranslator
    {
        QString translate(const char *context, const char *text, const char *, int) const override
        {
            return QLatin1String(context) + QLatin1Char('/') + QLatin1String(text);
        }
        bool isEmpty() const override { return false; }
    } translator;
    QCoreApplication::installTranslator(&translator);

    const QVariant type = OpenItem().data(kxAssetCategory::getTypeColumn(), Qt::DisplayRole);
    QCoreApplication::removeTranslator(&translator);

    EXPECT_EQ(type, "kxGeometrySceneplateCommon/Node");
}

namespace {

/// The number of a virtual operation in its table, of which the destructor takes the first two places.
template <class Member> std::ptrdiff_t slotOf(Member member)
{
    std::ptrdiff_t offset = 0;
    std::memcpy(&offset, &member, sizeof offset);
    return (offset - 1) / static_cast<std::ptrdiff_t>(sizeof(void *)) - 1;
}

} // namespace

TEST_F(kxGeometrySceneplateCommonTest, AddsItsVirtualOperationsInOrder)
{
    EXPECT_EQ(slotOf(&kxGeometrySceneplateCommon::renderPreview), 24);
    EXPECT_EQ(slotOf(&kxGeometrySceneplateCommon::setNode), 25);
    EXPECT_EQ(slotOf(&kxGeometrySceneplateCommon::makeNodeValidForSave), 26);
    EXPECT_TRUE(std::is_abstract_v<kxGeometrySceneplateCommon>);
}
