// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SceneStore.h"

#include "AssetManager/DiskTrouble.h"
#include "AssetManager/EnvironmentStep.h"
#include "AssetManager/SceneNodes.h"
#include "AssetSession/kxSceneOpener.h"
#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxMessageCodes.h"
#include "Kernel/kxModuleBase.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/CameraCore.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/JsonAttachment.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"

#include <QFileInfo>

#include <boost/any.hpp>

#include <algorithm>
#include <functional>

namespace {

/// On the material of the default environment, for the time in the file.
constexpr const char *DefaultKey = "SceneDefaultEnvironment";
constexpr const char *DefaultValue = "IsDefaultEnvironment";
constexpr const char *CameraName = "Scene Camera";

/// Has what was changed for the sake of writing put back when it goes, newest first.
class Restorer
{
public:
    Restorer() = default;
    ~Restorer()
    {
        for (auto step = _steps.rbegin(); step != _steps.rend(); ++step)
            (*step)();
    }
    Restorer(const Restorer &) = delete;
    Restorer &operator=(const Restorer &) = delete;

    void add(std::function<void()> step) { _steps.push_back(std::move(step)); }

private:
    std::vector<std::function<void()>> _steps;
};

/// What goes into the file, and what is made for it.
struct Writing
{
    std::vector<osg::FCRef<osg::FieldContainer>> kept;
    std::vector<osg::FieldContainerPtr> roots;
    Restorer restorer;

    void add(const osg::FieldContainerPtr &root)
    {
        kept.emplace_back(root);
        roots.push_back(root);
    }
};

osg::NodePtr makeEnvironmentNode(const osg::MaterialPtr &material)
{
    const osg::EnvironmentPtr core = osg::Environment::create();
    {
        const osg::CPEditor edit(core, osg::Environment::MaterialFieldMask);
        core->setMaterial(material);
    }
    const osg::NodePtr node = osg::makeNodeFor(core);
    osg::setName(node, osg::getName(material));
    return node;
}

bool isEnvironment(const osg::NodePtr &node)
{
    return node && isOfType(node->getCore(), osg::Environment::getClassType());
}

/// As every new document has it, so that it need not be written.
bool isUntouchedDefault(const osg::NodePtr &node, const osg::MaterialPtr &material)
{
    const osg::FCRef<osg::Material> sky(osg::USkyEnvironmentMaterial::create());
    osg::setName(sky.get(), "Sky");
    return (!node || node->getNChildren() == 0) && !osg::findDifference(material, sky.get());
}

/// Nodes of an environment that follow the default switch are written with the choice that is theirs.
void showOwnChoice(Writing &writing, const osg::NodePtr &node, const osg::MaterialPtr &own)
{
    const osg::FCRef<osg::Material> chooser(kxDefaultEnvironment::getSwitch());
    for (const osg::NodePtr &user : kxMaterials::getNodesWithMaterial(chooser.get(), node)) {
        writing.restorer.add([kept = osg::FCRef<osg::Node>(user), chooser] {
            kxNodeUtils::setMaterial(kept.get(), chooser.get(), false, true);
        });
        kxNodeUtils::setMaterial(user, own, false, true);
    }
}

/// The current one is the last, because who opens the file shows that.
std::vector<std::int32_t> environmentOrder(std::int32_t count, std::int32_t current)
{
    std::vector<std::int32_t> order;
    for (std::int32_t i = count - 1; i >= 0; --i) // the first of them last: without it there is no switch
        if (i != current)
            order.insert(order.begin(), i);
    if (current >= 0 && current < count)
        order.push_back(current);
    return order;
}

void addEnvironments(Writing &writing)
{
    const osg::FCRef<osg::UEnvironmentSwitchMaterial> choices(kxDefaultEnvironment::getSwitch());
    const osg::NodePtr places = kxScenegraph::environmentGeometrySwitch();
    if (!choices || !places)
        return;
    const auto count = static_cast<std::int32_t>(choices->getMaterials().size());
    struct Entry
    {
        osg::NodePtr node;
        osg::MaterialPtr material;
    };
    std::vector<Entry> entries;
    for (const std::int32_t index : environmentOrder(count, choices->getChoice())) {
        const osg::MaterialPtr material = choices->getMaterial(index);
        osg::NodePtr node = places->getChild(static_cast<std::size_t>(index));
        const bool isNeeded = index != 0 || (choices->getChoice() == 0 && count > 1);
        if (!material || (!isNeeded && isUntouchedDefault(node, material)))
            continue;
        if (!isEnvironment(node))
            node = makeEnvironmentNode(material);
        if (index == 0) {
            kxMaterials::addValuePair(material, DefaultKey, DefaultValue);
            writing.restorer.add([kept = osg::FCRef<osg::Material>(material)] {
                kxMaterials::removeKey(kept.get(), DefaultKey, false);
            });
        }
        writing.add(node);
        entries.push_back({node, material});
    }
    // Only now: without its switch at the first node the document has no default switch.
    const auto defaultNode = kxScenegraph::getDefaultEnvironmentNode();
    for (const Entry &entry : entries)
        if (entry.node != defaultNode)
            showOwnChoice(writing, entry.node, entry.material);
    for (const Entry &entry : entries)
        if (entry.node == defaultNode)
            showOwnChoice(writing, entry.node, entry.material);
}

void addChildren(Writing &writing, const osg::NodePtr &parent)
{
    for (std::size_t i = 0; parent && i < parent->getNChildren(); ++i)
        if (const osg::NodePtr child = parent->getChild(i); child && !SceneNodes::isFixed(child))
            writing.add(child);
}

void addMaterials(Writing &writing, const osg::MaterialPool &pool)
{
    const auto choices = kxDefaultEnvironment::getSwitch();
    for (const osg::MaterialPtr &material : pool.getMaterials())
        if (material && (!choices || (material != osg::MaterialPtr(choices) && material != choices->getMaterial(0))))
            writing.add(material);
}

/// What the pool holds beside materials, in a pool made for the file.
void addPool(Writing &writing, const osg::MaterialPool &pool)
{
    if (pool.getCameras().empty() && pool.getConstraints().empty() && pool.getLightLinkSets().empty())
        return;
    const osg::MaterialPoolPtr copy = osg::MaterialPool::create();
    {
        const osg::CPEditor edit(copy, osg::AllFieldMask);
        copy->editCameras() = pool.getCameras();
        copy->editConstraints() = pool.getConstraints();
        copy->editLightLinkSets() = pool.getLightLinkSets();
    }
    writing.add(osg::makeNodeFor(copy));
}

void addCamera(Writing &writing)
{
    const osg::NodePtr camera = kxScenegraph::getCameraNode();
    if (!camera || !camera->getCore())
        return;
    const osg::NodePtr node = osg::makeNodeFor(camera->getCore());
    osg::setName(node, CameraName);
    writing.add(node);
}

/// Environments that light surfaces by default belong to the scene that they are loaded into.
bool isDefaultEnvironment(const osg::FieldContainer &owner, const osg::FieldInfo &field,
                          const osg::MaterialPtr &standard)
{
    return &owner.getType() == &osg::UBRDFMaterial::getClassType() &&
           field.mask == osg::UBRDFMaterial::EnvironmentFieldMask &&
           static_cast<const osg::UBRDFMaterial &>(owner).getEnvironment() == standard;
}

/// What belongs to the actions of the nodes is put on them, and what was put there is taken off afterwards.
void addActions(Writing &writing)
{
    for (const osg::FieldContainerPtr &root : writing.roots) {
        const auto node = osg::NodePtr::dcast(root);
        if (!node)
            continue;
        const bool hadText = static_cast<bool>(osg::findAttachment<osg::JsonAttachment>(node));
        kxMessage message(kxMessageCodes::NodeIsWritten);
        message.set("node", boost::any(node), true);
        message.set("addActionAttachment", true, true);
        kxModuleBase::sendMessage(message, false);
        if (!hadText)
            writing.restorer.add([kept = osg::FCRef<osg::Node>(node)] {
                kxNodeUtils::removeAttachment(kept.get(), osg::JsonAttachment::getClassType());
            });
    }
}

bool isMarkedDefault(const osg::MaterialPtr &material)
{
    return kxMaterials::hasValuePair(material, DefaultKey, DefaultValue);
}

void replaceInPool(const osg::MaterialPtr &old, const osg::MaterialPtr &material)
{
    const osg::MaterialPoolPtr pool = kxScenegraph::getMaterialPool();
    if (!pool)
        return;
    const auto &materials = pool->getMaterials();
    const auto found = std::find(materials.begin(), materials.end(), old);
    if (found == materials.end())
        return;
    const auto index = static_cast<std::size_t>(found - materials.begin());
    const osg::CPEditor edit(pool, osg::MaterialPool::MaterialsFieldMask);
    pool->editMaterials().replace(index, material);
}

/// The written default environment takes the place of the new document's.
void adoptDefaultEnvironment()
{
    const auto choices = kxDefaultEnvironment::getSwitch();
    const auto count = choices ? static_cast<std::int32_t>(choices->getMaterials().size()) : 0;
    for (std::int32_t index = 1; index < count; ++index) {
        const osg::FCRef<osg::Material> material(choices->getMaterial(index));
        if (!isMarkedDefault(material.get()))
            continue;
        const bool isCurrent = choices->getChoice() == index;
        kxMaterials::removeKey(material.get(), DefaultKey, false);
        const osg::FCRef<osg::Node> node(
            kxScenegraph::environmentGeometrySwitch()->getChild(static_cast<std::size_t>(index)));
        EnvironmentStep::removing(index)->apply();
        replaceInPool(choices->getMaterial(0), material.get());
        {
            const osg::CPEditor edit(choices, osg::MultiMaterial::MaterialsFieldMask);
            choices->editMaterials().replace(0, material.get());
        }
        const osg::NodePtr place = kxScenegraph::getDefaultEnvironmentNode();
        while (node && place && node->getNChildren() > 0) {
            const osg::CPEditor edit(place, osg::Node::ChildrenFieldMask);
            place->addChild(node->getChild(0));
        }
        if (isCurrent)
            EnvironmentStep::choose(0);
        return;
    }
}

void adoptCamera(const std::vector<osg::NodePtr> &nodes)
{
    const osg::NodePtr own = kxScenegraph::getCameraNode();
    const auto target = own ? osg::CameraCorePtr::dcast(own->getCore()) : osg::CameraCorePtr();
    for (const osg::NodePtr &node : nodes) {
        const auto core = osg::CameraCorePtr::dcast(node->getCore());
        if (!core || !core->getCamera() || !target || !target->getCamera() || osg::getName(node) != CameraName)
            continue;
        {
            const osg::FieldMask mask = osg::UberCamera::getCombinedCameraAttributesMask() |
                                        osg::UberCamera::getCombinedViewingAttributesMask();
            const osg::CPEditor edit(target->getCamera(), mask);
            target->getCamera()->syncWith(core->getCamera(), mask, true);
        }
        const osg::NodePtr parent = node->getParent();
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->subChild(node);
        return;
    }
}

QString notSaved(const QString &path, const std::string &reason)
{
    const QString name = QFileInfo(path).fileName();
    const QString known = DiskTrouble::sentenceFor(reason);
    if (known.isEmpty())
        return SceneStore::tr("The scene could not be saved as \"%1\": %2").arg(name, QString::fromStdString(reason));
    return SceneStore::tr("The scene could not be saved as \"%1\".").arg(name) + ' ' + known;
}

} // namespace

QString SceneStore::save(const QString &path)
{
    const osg::MaterialPoolPtr pool = kxScenegraph::getMaterialPool();
    const osg::MaterialPtr standard = kxDefaultEnvironment::getDefault();
    Writing writing;
    addChildren(writing, kxScenegraph::getRoot());
    addChildren(writing, kxScenegraph::getSceneplateRoot());
    if (pool) {
        addMaterials(writing, *pool);
        addPool(writing, *pool);
    }
    addCamera(writing);
    addEnvironments(writing);
    osg::SceneWriteOptions options;
    options.isCompressed = true;
    options.leavesOut = [&standard](const osg::FieldContainer &owner, const osg::FieldInfo &field) {
        return isDefaultEnvironment(owner, field, standard);
    };
    addActions(writing);
    const osg::Result<void> written = osg::writeSceneFile(path.toStdString(), writing.roots, options);
    if (!written)
        return notSaved(path, written.reason());
    kxController::setModified(false);
    return {};
}

QString SceneStore::open(const QString &path)
{
    const osg::Result<osg::SceneRoots> roots = osg::readSceneFile(path.toStdString());
    if (!roots)
        return tr("\"%1\" could not be opened: %2")
            .arg(QFileInfo(path).fileName(), QString::fromStdString(roots.reason()));
    kxScenegraph::newDocument();
    const kxSceneOpener::Contents contents = kxSceneOpener::add(roots.value());
    adoptDefaultEnvironment();
    adoptCamera(contents.nodes);
    kxScenegraph::update(false);
    kxController::updateRender(false);
    kxController::setModified(false);
    return {};
}
