// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SceneActions.h"

#include "AssetManager/EditedAssets.h"
#include "AssetManager/EnvironmentStep.h"
#include "AssetManager/FieldStep.h"
#include "AssetManager/LastingCommand.h"
#include "AssetManager/NameStep.h"
#include "AssetManager/PlacementStep.h"
#include "AssetManager/PoolStep.h"
#include "AssetManager/SceneNodes.h"
#include "AssetManager/SceneStore.h"
#include "AssetManager/WorldPlace.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxSceneplateAssetItem.h"
#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "Kernel/kxUberMaterialUtils.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/Light.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/OverrideMaterialAttachment.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/Transform3D.h"

#include <QPointer>
#include <QUndoStack>

#include <algorithm>
#include <limits>
#include <set>

using osg::FieldValue;

namespace {

constexpr std::int32_t AtTheEnd = std::numeric_limits<std::int32_t>::max();

void note(QStringList &failures, const QString &failure)
{
    if (!failure.isEmpty() && !failures.contains(failure))
        failures.append(failure);
}

kxAssetItem *find(const std::string &uuid)
{
    return kxAssetItemFactory::the().findItem(uuid);
}

QString nameOf(const std::string &uuid)
{
    kxAssetItem *item = find(uuid);
    return item ? QString::fromStdString(item->name()) : QString();
}

QString notLoaded(const std::string &uuid)
{
    if (!find(uuid))
        return SceneActions::tr("An asset was not loaded, because its library is not open or it was deleted.");
    return SceneActions::tr("\"%1\" was not loaded. Its files may be missing or damaged.").arg(nameOf(uuid));
}

QString textFor(const SceneActions::Uuids &uuids)
{
    return uuids.size() == 1 ? SceneActions::tr("Load \"%1\"").arg(nameOf(uuids.front()))
                             : SceneActions::tr("Load %1 assets").arg(uuids.size());
}

/// "verb "name"" of one, "verb 3 objects" of several.
QString textFor(const QString &one, const QString &several, const SceneActions::Nodes &nodes)
{
    return nodes.size() == 1 ? one.arg(SceneNodes::label(nodes.front())) : several.arg(nodes.size());
}

QStringList toStrings(const SceneActions::Uuids &uuids)
{
    QStringList strings;
    for (const std::string &uuid : uuids)
        strings.append(QString::fromStdString(uuid));
    return strings;
}

/// Looked up in two steps, because loading may run an event loop in which the item goes.
template <class Item> osg::FCRef<osg::Node> loadNode(const std::string &uuid)
{
    auto *item = dynamic_cast<Item *>(find(uuid));
    if (!item || !item->loadNode())
        return {};
    item = dynamic_cast<Item *>(find(uuid));
    return item ? osg::FCRef<osg::Node>(item->getNode()) : osg::FCRef<osg::Node>();
}

/// Why a node has to stay where it is; "" where it may go.
QString obstacleOf(const osg::NodePtr &node)
{
    if (SceneNodes::isFixed(node))
        return SceneActions::tr("\"%1\" belongs to every scene and stays where it is.").arg(SceneNodes::label(node));
    return {};
}

/// Why it cannot hang elsewhere; "" where it can.
QString obstacleToLeave(const osg::NodePtr &node)
{
    if (EnvironmentStep::indexOf(node) > 0)
        return SceneActions::tr("\"%1\" is an environment and stays among the environments.")
            .arg(SceneNodes::label(node));
    return obstacleOf(node);
}

QString obstacleToMove(const osg::NodePtr &node, const osg::NodePtr &target)
{
    if (QString obstacle = obstacleToLeave(node); !obstacle.isEmpty())
        return obstacle;
    if (SceneNodes::isPlate(node) != SceneNodes::isPlate(target))
        return SceneActions::tr("\"%1\" cannot be moved between the scene and the plates.")
            .arg(SceneNodes::label(node));
    if (SceneNodes::isAtOrBelow(target, node))
        return SceneActions::tr("\"%1\" cannot become a part of itself.").arg(SceneNodes::label(node));
    return {};
}

bool takesChildren(const osg::NodePtr &node)
{
    return node && node != kxScenegraph::environmentGeometrySwitch() && node != kxScenegraph::getMaterialPoolNode();
}

/// The container and field by which a node is visible or not.
std::pair<std::uint32_t, const char *> visibilityOf(const osg::NodePtr &node)
{
    const osg::NodeCorePtr core = node->getCore();
    if (isOfType(core, osg::Sceneplate::getClassType()))
        return {core.getFieldContainerId(), "IsVisible"};
    if (isOfType(core, osg::Light::getClassType()))
        return {core.getFieldContainerId(), "IsOn"};
    return {0, ""};
}

QString assignTo(SceneCommand &command, const osg::NodePtr &node, const osg::MaterialPtr &material)
{
    if (isOfType(node->getCore(), osg::Environment::getClassType()))
        return SceneActions::tr("\"%1\" is an environment and takes no material. Load an environment asset instead.")
            .arg(SceneNodes::label(node));
    EditedAssets::noteAtOrAbove(command, node);
    return command.perform(std::make_unique<FieldStep>(node->getCore().getFieldContainerId(), "Material",
                                                       FieldValue::reference(material)));
}

/// A material that lies over all others at the node itself is what is meant; one further up hides what is assigned.
QString assignBelow(SceneCommand &command, const osg::NodePtr &node, const osg::MaterialPtr &material)
{
    const osg::NodePtr overriding = SceneNodes::overridingNode(node);
    if (overriding == node) {
        EditedAssets::noteAtOrAbove(command, node);
        const auto record = osg::findAttachment<osg::OverrideMaterialAttachment>(node);
        return command.perform(
            std::make_unique<FieldStep>(record.getFieldContainerId(), "Material", FieldValue::reference(material)));
    }
    const SceneActions::Nodes targets = SceneNodes::materialTargets(node);
    if (targets.empty())
        return SceneActions::tr("\"%1\" has nothing that a material can be put on.").arg(SceneNodes::label(node));
    QStringList failures;
    for (const osg::NodePtr &target : targets)
        note(failures, assignTo(command, target, material));
    if (overriding && failures.isEmpty())
        note(failures,
             SceneActions::tr("The new material of \"%1\" is not seen, because \"%2\" covers it with another.")
                 .arg(SceneNodes::label(node), SceneNodes::label(overriding)));
    return failures.join(' ');
}

} // namespace

SceneActions::SceneActions(QUndoStack &stack, QObject *parent) : QObject(parent), _stack(stack)
{
    connect(&kxScenegraph::notifier(), &kxScenegraphNotifier::documentChanged, this,
            [this] { LastingCommand::keepOnly(_stack); });
}

SceneActions::~SceneActions() = default;

SceneActions::Command SceneActions::command(const QString &text, int gesture)
{
    const QPointer<SceneActions> self(this);
    const auto report = [self](const QStringList &failures) {
        if (self)
            Q_EMIT self->failed(failures);
    };
    return std::make_unique<SceneCommand>(text, report, gesture);
}

void SceneActions::finish(Command done, const QStringList &failures)
{
    if (!done->isEmpty())
        _stack.push(done.release());
    if (!failures.isEmpty())
        Q_EMIT failed(failures);
}

void SceneActions::assignMaterial(const std::string &uuid, const Nodes &nodes)
{
    const osg::FCRef<osg::Material> material(kxMaterialAssetItem::getMaterialFromUUID(uuid));
    if (!material) {
        Q_EMIT failed({notLoaded(uuid)});
        return;
    }
    assign(material, nodes);
    Q_EMIT assetsLoaded({QString::fromStdString(uuid)});
}

void SceneActions::assignMaterial(std::uint32_t materialId, const Nodes &nodes)
{
    const osg::FCRef<osg::Material> material(
        osg::MaterialPtr::dcast(osg::FieldContainerFactory::the().getContainer(materialId)));
    if (material)
        assign(material, nodes);
}

void SceneActions::assign(const osg::MaterialPtr &material, const Nodes &nodes)
{
    if (kxUberMaterialUtils::isEnvironmentMaterial(material)) {
        Q_EMIT failed({tr("\"%1\" lights the scene and cannot be put on an object. Drag it to the environments.")
                           .arg(QString::fromStdString(osg::getName(material)))});
        return;
    }
    Command assignment = command(tr("Assign \"%1\"").arg(QString::fromStdString(osg::getName(material))));
    QStringList failures;
    for (const osg::NodePtr &node : SceneNodes::topmost(nodes))
        note(failures, assignBelow(*assignment, node, material));
    finish(std::move(assignment), failures);
}

void SceneActions::loadMaterials(const Uuids &uuids)
{
    Command load = command(textFor(uuids));
    QStringList failures;
    Uuids loaded;
    for (const std::string &uuid : uuids) {
        const osg::FCRef<osg::Material> material(kxMaterialAssetItem::getMaterialFromUUID(uuid));
        if (!material) {
            note(failures, notLoaded(uuid));
            continue;
        }
        loaded.push_back(uuid);
        const osg::FieldContainerPtr entry = material.get();
        if (!PoolStep::Snapshot().holds("Materials", entry.getFieldContainerId()))
            note(failures, load->perform(std::make_unique<PoolStep>(entry)));
    }
    finish(std::move(load), failures);
    if (!loaded.empty())
        Q_EMIT assetsLoaded(toStrings(loaded));
}

void SceneActions::loadGeometry(const Uuids &uuids, const osg::NodePtr &parent)
{
    const bool isPlace = takesChildren(parent) && !SceneNodes::isPlate(parent);
    loadNodes(uuids, isPlace ? parent : kxScenegraph::getRoot(), Geometry);
}

void SceneActions::loadPlates(const Uuids &uuids, const osg::NodePtr &parent)
{
    const bool isOnPlate = parent && isOfType(parent->getCore(), osg::Sceneplate::getClassType());
    const osg::NodePtr holder = isOnPlate ? parent->getParent() : parent; // a plate holds no plates
    const bool isPlace = holder && SceneNodes::isPlate(holder);
    loadNodes(uuids, isPlace ? holder : kxScenegraph::getSceneplateRoot(), Sceneplate);
}

void SceneActions::loadNodes(const Uuids &uuids, const osg::NodePtr &parent, int category)
{
    if (!parent)
        return;
    const std::uint32_t parentId = parent.getFieldContainerId();
    Command load = command(textFor(uuids));
    QStringList failures;
    Uuids loaded;
    for (const std::string &uuid : uuids) {
        const PoolStep::Snapshot before;
        const osg::FCRef<osg::Node> node =
            category == Geometry ? loadNode<kxGeometryAssetItem>(uuid) : loadNode<kxSceneplateAssetItem>(uuid);
        if (!node) {
            note(failures, notLoaded(uuid));
            continue;
        }
        if (auto pool = std::make_unique<PoolStep>(before); !pool->isEmpty())
            load->adopt(std::move(pool));
        EditedAssets::noteAtOrAbove(*load, kxNodeUtils::getNodeFromId(parentId));
        const QString failure =
            load->perform(std::make_unique<PlacementStep>(node, PlacementStep::Place{parentId, AtTheEnd}));
        note(failures, failure);
        if (failure.isEmpty())
            loaded.push_back(uuid);
    }
    finish(std::move(load), failures);
    if (!loaded.empty())
        Q_EMIT assetsLoaded(toStrings(loaded));
}

void SceneActions::loadEnvironment(const Uuids &uuids)
{
    Command load = command(textFor(uuids));
    QStringList failures;
    Uuids loaded;
    for (const std::string &uuid : uuids) {
        const PoolStep::Snapshot before;
        const std::uint32_t choice = EnvironmentStep::currentChoice();
        auto *item = dynamic_cast<kxEnvironmentNodeAssetItem *>(find(uuid));
        const bool isLoaded = item && item->loadEnvironmentNode(true);
        item = isLoaded ? dynamic_cast<kxEnvironmentNodeAssetItem *>(find(uuid)) : nullptr;
        const osg::NodePtr node = item ? item->getEnvironmentNode() : osg::NodePtr();
        if (!node) {
            note(failures, notLoaded(uuid));
            continue;
        }
        loaded.push_back(uuid);
        if (auto pool = std::make_unique<PoolStep>(before); !pool->isEmpty())
            load->adopt(std::move(pool));
        if (const std::int32_t index = EnvironmentStep::indexOf(node); index >= 0)
            load->adopt(EnvironmentStep::added(index, choice));
        else
            load->adopt(std::make_unique<PlacementStep>(node, PlacementStep::Place(), PlacementStep::placeOf(node)));
    }
    finish(std::move(load), failures);
    if (!loaded.empty())
        Q_EMIT assetsLoaded(toStrings(loaded));
}

void SceneActions::switchEnvironment(int index)
{
    const auto choices = kxDefaultEnvironment::getSwitch();
    if (!choices || !choices->getMaterial(index) || choices->getChoice() == index)
        return;
    Command change =
        command(tr("Switch to \"%1\"").arg(QString::fromStdString(osg::getName(choices->getMaterial(index)))));
    const auto set = [&](const osg::FieldContainerPtr &chooser) {
        change->perform(std::make_unique<FieldStep>(chooser.getFieldContainerId(), "Choice", std::int32_t{index}));
    };
    set(choices);
    if (const osg::NodePtr places = kxScenegraph::environmentGeometrySwitch())
        set(places->getCore());
    finish(std::move(change), {});
}

void SceneActions::removeNodes(const Nodes &nodes)
{
    const Nodes removed = SceneNodes::topmost(nodes);
    if (removed.empty())
        return;
    Command removal = command(textFor(tr("Delete \"%1\""), tr("Delete %1 objects"), removed));
    QStringList failures;
    for (const osg::NodePtr &node : removed) {
        if (const QString obstacle = obstacleOf(node); !obstacle.isEmpty()) {
            note(failures, obstacle);
            continue;
        }
        EditedAssets::noteAtOrAbove(*removal, node->getParent());
        if (const std::int32_t index = EnvironmentStep::indexOf(node); index >= 0)
            note(failures, removal->perform(EnvironmentStep::removing(index)));
        else
            note(failures, removal->perform(std::make_unique<PlacementStep>(node, PlacementStep::Place())));
    }
    finish(std::move(removal), failures);
}

void SceneActions::renameNode(const osg::NodePtr &node, const std::string &name)
{
    rename(node.getFieldContainerId(), name);
}

void SceneActions::rename(std::uint32_t containerId, const std::string &name)
{
    const auto container =
        osg::AttachmentContainerPtr::dcast(osg::FieldContainerFactory::the().getContainer(containerId));
    if (!container || osg::getName(container) == name)
        return;
    if (QString::fromStdString(name).trimmed().isEmpty()) {
        Q_EMIT failed({tr("A name has to have at least one letter or digit.")});
        return;
    }
    Command renaming = command(tr("Rename to \"%1\"").arg(QString::fromStdString(name)));
    const QString failure = renaming->perform(std::make_unique<NameStep>(containerId, name));
    finish(std::move(renaming), failure.isEmpty() ? QStringList() : QStringList(failure));
}

void SceneActions::setVisible(const Nodes &nodes, bool visible)
{
    std::vector<FieldChange> changes;
    for (const osg::NodePtr &node : nodes) {
        if (!osg::FieldContainerFactory::the().isAlive(node.getFieldContainerId()))
            continue;
        const auto [id, field] = visibilityOf(node);
        if (id != 0)
            changes.push_back({id, field, visible});
    }
    setFields(changes, visible ? tr("Show") : tr("Hide"));
}

void SceneActions::moveNodes(const Nodes &nodes, const osg::NodePtr &newParent, int index)
{
    const Nodes moved = SceneNodes::topmost(nodes);
    if (moved.empty() || !osg::FieldContainerFactory::the().isAlive(newParent.getFieldContainerId()))
        return;
    if (!takesChildren(newParent)) {
        Q_EMIT failed({tr("Nothing can be moved into \"%1\".").arg(SceneNodes::label(newParent))});
        return;
    }
    Command move = command(textFor(tr("Move \"%1\""), tr("Move %1 objects"), moved));
    QStringList failures;
    std::int32_t at = index < 0 ? static_cast<std::int32_t>(newParent->getNChildren()) : index;
    for (const osg::NodePtr &node : moved) {
        if (const QString obstacle = obstacleToMove(node, newParent); !obstacle.isEmpty()) {
            note(failures, obstacle);
            continue;
        }
        const std::int32_t old = newParent->findChild(node);
        if (old >= 0 && old < at)
            --at; // places count without the node itself
        if (old == at) {
            ++at;
            continue;
        }
        const WorldPlace place(node);
        EditedAssets::noteAtOrAbove(*move, node->getParent());
        EditedAssets::noteAtOrAbove(*move, newParent);
        note(failures, move->perform(std::make_unique<PlacementStep>(
                           node, PlacementStep::Place{newParent.getFieldContainerId(), at})));
        for (auto &step : place.restoring())
            note(failures, move->perform(std::move(step)));
        at = newParent->findChild(node) + 1;
    }
    finish(std::move(move), failures);
}

osg::NodePtr SceneActions::group(const Nodes &nodes)
{
    Nodes grouped = SceneNodes::topmost(nodes);
    QStringList failures;
    std::erase_if(grouped, [&failures](const osg::NodePtr &node) {
        const QString obstacle = obstacleToLeave(node);
        note(failures, obstacle);
        return !obstacle.isEmpty() || !node->getParent();
    });
    const osg::NodePtr parent =
        kxScenegraph::findFirstEqualParent(std::vector<kxNodePtr>(grouped.begin(), grouped.end()));
    Command grouping = command(textFor(tr("Group \"%1\""), tr("Group %1 objects"), grouped));
    osg::FCRef<osg::Node> holder;
    if (parent && takesChildren(parent)) {
        const bool isPlate = SceneNodes::isPlate(parent);
        holder = osg::FCRef<osg::Node>(osg::makeNodeFor(isPlate ? osg::NodeCorePtr(osg::Group::create())
                                                                : osg::NodeCorePtr(osg::Transform3D::create())));
        kxNodeUtils::setName(holder, tr("Group").toStdString(), false, nullptr);
        osg::NodePtr first = grouped.front();
        while (first->getParent() != parent)
            first = first->getParent();
        EditedAssets::noteAtOrAbove(*grouping, parent);
        const PlacementStep::Place target{parent.getFieldContainerId(), parent->findChild(first)};
        note(failures, grouping->perform(std::make_unique<PlacementStep>(holder, target)));
        for (const osg::NodePtr &node : grouped) {
            const WorldPlace place(node);
            note(failures, grouping->perform(std::make_unique<PlacementStep>(
                               node, PlacementStep::Place{holder.get().getFieldContainerId(), AtTheEnd})));
            for (auto &step : place.restoring())
                note(failures, grouping->perform(std::move(step)));
        }
    }
    finish(std::move(grouping), failures);
    return holder ? kxNodeUtils::getNodeFromId(holder.get().getFieldContainerId()) : osg::NodePtr();
}

void SceneActions::setField(const std::vector<std::uint32_t> &containerIds, const std::string &field,
                            const FieldValue &value, const QString &text, int gesture)
{
    std::vector<FieldChange> changes;
    changes.reserve(containerIds.size());
    for (const std::uint32_t id : containerIds)
        changes.push_back({id, field, value});
    setFields(changes, text, gesture);
}

void SceneActions::setFields(const std::vector<FieldChange> &changes, const QString &text, int gesture)
{
    Command edit = command(text, gesture);
    QStringList failures;
    for (const FieldChange &change : changes) {
        const osg::FieldContainerPtr container = osg::FieldContainerFactory::the().getContainer(change.containerId);
        const osg::FieldInfo *field = container ? container->getType().findField(change.field) : nullptr;
        if (field && FieldValue::of(*container, *field) == change.value)
            continue;
        const QString failure =
            edit->perform(std::make_unique<FieldStep>(change.containerId, change.field, change.value));
        note(failures, failure);
        if (failure.isEmpty())
            EditedAssets::noteField(*edit, change.containerId, change.field);
    }
    finish(std::move(edit), failures);
}

void SceneActions::newScene()
{
    kxScenegraph::newDocument();
}

bool SceneActions::openScene(const QString &path)
{
    const QString failure = SceneStore::open(path);
    if (!failure.isEmpty())
        Q_EMIT failed({failure});
    return failure.isEmpty();
}

bool SceneActions::saveScene(const QString &path)
{
    const QString failure = SceneStore::save(path);
    if (!failure.isEmpty())
        Q_EMIT failed({failure});
    return failure.isEmpty();
}
