// SPDX-License-Identifier: Apache-2.0
#include "RandomScene.h"

#include "Kernel/NodeUtils.h"
#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/CameraCore.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/KeyAttachment.h"
#include "SceneGraph/Light.h"
#include "SceneGraph/MaterialGroup.h"
#include "SceneGraph/MultiMaterial.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/Switch.h"
#include "SceneGraph/SynchronizationAttachment.h"
#include "SceneGraph/TagAttachment.h"
#include "SceneGraph/Transform.h"
#include "SceneGraph/Transform3D.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr int NodeCount = 28;
constexpr int PlateCount = 8;

bool isAtOrBelow(osg::NodePtr node, const osg::NodePtr &root)
{
    while (node && node != root)
        node = node->getParent();
    return static_cast<bool>(node);
}

void attach(const osg::AttachmentContainerPtr &container, const osg::AttachmentPtr &attachment)
{
    const osg::CPEditor edit(container, osg::AttachmentContainer::AttachmentsFieldMask);
    container->addAttachment(attachment);
}

/// The same tree of the same cores, with names and assets, and without keys, which are of one node each.
osg::NodePtr cloneTree(const osg::NodePtr &node)
{
    const osg::NodePtr clone = osg::makeNodeFor(node->getCore());
    osg::setName(clone, osg::getName(node));
    if (const auto asset = osg::AssetAttachment::getAssetAttachment(node))
        attach(clone, osg::deepClone(asset, {}));
    for (std::size_t i = 0; i < node->getNChildren(); ++i) {
        const osg::NodePtr child = cloneTree(node->getChild(i));
        const osg::CPEditor edit(clone, osg::Node::ChildrenFieldMask);
        clone->addChild(child);
    }
    return clone;
}

} // namespace

RandomScene::RandomScene(std::uint32_t seed) : random(seed)
{
    kxScenegraph::newDocument();
    _materials.emplace(random);
    const osg::MaterialPoolPtr pool = kxScenegraph::getMaterialPool();
    for (int i = 0; i < 3; ++i) {
        _cameras.emplace_back(osg::UberCamera::create());
        osg::setName(_cameras.back().get(), "camera" + std::to_string(i));
        const osg::CPEditor edit(pool, osg::MaterialPool::CamerasFieldMask);
        if (i > 0)
            pool->editCameras().push_back(_cameras.back().get());
    }
    addDefaultEnvironments();
    for (int i = 0; i < NodeCount; ++i) {
        const osg::NodePtr parent = anyParent();
        addNode(parent, random.oneIn(15) ? parent->getCore() : makeCore());
    }
    for (int i = 0; i < 2; ++i)
        addClone();
    addConstraints();
    addLightLinkSets();
    addPlates();
    _loose = osg::FCRef<osg::Node>(addNode(nullptr, makeCore()));
    addNode(_loose.get(), makeCore());
}

std::vector<osg::NodePtr> RandomScene::below(const osg::NodePtr &root)
{
    std::vector<osg::NodePtr> nodes{root};
    for (std::size_t i = 0; i < nodes.size(); ++i)
        for (std::size_t k = 0; k < nodes[i]->getNChildren(); ++k)
            nodes.push_back(nodes[i]->getChild(k));
    return nodes;
}

std::vector<osg::NodePtr> RandomScene::nodes()
{
    return below(kxScenegraph::getRoot());
}

std::vector<osg::NodePtr> RandomScene::plates()
{
    return below(kxSceneplateUtils::getSceneplateRoot());
}

std::vector<osg::NodePtr> RandomScene::environments()
{
    std::vector<osg::NodePtr> found = nodes();
    std::erase_if(
        found, [](const osg::NodePtr &node) { return !isOfType(node->getCore(), osg::Environment::getClassType()); });
    return found;
}

std::vector<kxNodePtr> RandomScene::someOf(const std::vector<osg::NodePtr> &nodes)
{
    std::vector<kxNodePtr> chosen;
    for (std::size_t i = random.below(7); i > 0; --i)
        chosen.push_back(random.oneIn(9) ? kxNodePtr() : random.of(nodes));
    return chosen;
}

SceneFingerprint RandomScene::fingerprint(const std::set<std::string> &unordered) const
{
    std::vector<osg::FieldContainerPtr> roots{kxScenegraph::getRoot(), kxSceneplateUtils::getSceneplateRoot(),
                                              _loose.get()};
    roots.insert(roots.end(), _materials->all().begin(), _materials->all().end());
    for (const osg::FCRef<osg::UberCamera> &camera : _cameras)
        roots.emplace_back(camera.get());
    return SceneFingerprint(roots, unordered);
}

osg::NodePtr RandomScene::anyParent()
{
    return random.oneIn(8) ? random.of(nodes()) : random.of(_made);
}

osg::NodePtr RandomScene::addNode(const osg::NodePtr &parent, const osg::NodeCorePtr &core)
{
    const osg::NodePtr node = NodeUtils::createNodeWithCore(core, nullptr, "n" + std::to_string(_count));
    ++_count;
    if (core && osg::getName(core).empty())
        osg::setName(core, osg::getName(node) + "'s");
    decorate(node);
    if (!parent)
        return node;
    _made.push_back(node);
    const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
    parent->insertChild(static_cast<std::int32_t>(random.below(parent->getNChildren() + 1)), node);
    return node;
}

osg::NodeCorePtr RandomScene::makeCore()
{
    switch (random.below(14)) {
    case 0:
        return nullptr;
    case 1:
        return random.of(_made)->getCore();
    case 2:
        return osg::Light::create();
    case 3:
        return makeSwitch();
    case 4:
        return makePool();
    case 5: {
        const auto core = osg::CameraCore::create();
        const osg::CPEditor edit(core, osg::CameraCore::CameraFieldMask);
        core->setCamera(random.of(_cameras).get());
        return core;
    }
    case 6:
        return makeEnvironmentCore();
    case 7:
    case 8:
    case 9:
        return makeSurfaceCore();
    case 10:
        return osg::Group::create();
    default:
        return makePlacement();
    }
}

osg::NodeCorePtr RandomScene::makePlacement()
{
    if (random.oneIn(2)) {
        const auto core = osg::Transform::create();
        const osg::CPEditor edit(core, osg::Transform::MatrixFieldMask);
        core->setMatrix(random.placement());
        return core;
    }
    const auto core = osg::Transform3D::create();
    const osg::CPEditor edit(core, osg::AllFieldMask);
    core->setTranslation(random.vector());
    core->setRotationAsQuaternion(random.rotation());
    core->setScale(random.vector());
    return core;
}

osg::NodeCorePtr RandomScene::makeSurfaceCore()
{
    const osg::MaterialPtr material = random.oneIn(6) ? osg::MaterialPtr() : random.of(_materials->all());
    if (random.oneIn(3)) {
        const auto group = osg::MaterialGroup::create();
        const osg::CPEditor edit(group, osg::MaterialGroup::MaterialFieldMask);
        group->setMaterial(material);
        return group;
    }
    const auto geometry = osg::Geometry::create();
    const osg::CPEditor edit(geometry, osg::AllFieldMask);
    geometry->editPositions() = std::vector<osg::Vec3f>{{0, 0, 0}, {1, 0, random.share()}, {1, 1, 0}};
    geometry->editIndices() = std::vector<std::uint32_t>{0, 1, 2};
    geometry->setMaterial(material);
    return geometry;
}

osg::NodeCorePtr RandomScene::makeSwitch()
{
    const auto core = osg::Switch::create();
    const osg::CPEditor edit(core, osg::Switch::ChoiceFieldMask);
    core->setChoice(static_cast<std::int32_t>(random.below(5)) - 2);
    return core;
}

osg::NodeCorePtr RandomScene::makePool()
{
    const auto pool = osg::MaterialPool::create();
    const osg::CPEditor edit(pool, osg::AllFieldMask);
    for (std::size_t i = random.below(3); i > 0; --i)
        pool->editMaterials().push_back(random.of(_materials->all()));
    if (random.oneIn(2))
        pool->editCameras().push_back(random.of(_cameras).get());
    return pool;
}

osg::NodeCorePtr RandomScene::makeEnvironmentCore()
{
    const auto core = osg::Environment::create();
    const osg::MaterialPtr material = _materials->anyEnvironment();
    const osg::CPEditor edit(core, osg::Environment::MaterialFieldMask);
    core->setMaterial(material);
    return core;
}

/// Choices of the default switch with their nodes; a choice may be no environment, and a place may have another material.
void RandomScene::addDefaultEnvironments()
{
    for (int i = 0; i < 3; ++i) {
        const osg::NodePtr node = addNode(nullptr, makeEnvironmentCore());
        _made.push_back(node);
        if (const auto core = osg::EnvironmentPtr::dcast(node->getCore()); !random.oneIn(4)) {
            const osg::CPEditor edit(core, osg::Environment::MaterialFieldMask);
            core->setMaterial(kxDefaultEnvironment::getDefault());
        }
        // A surface here would refer to itself by way of the environment that lights it.
        const osg::FCRef<osg::Material> none(osg::MultiMaterial::create());
        const osg::MaterialPtr choice =
            random.oneIn(8) ? none.get() : osg::MaterialPtr(random.of(_materials->environments()));
        if (kxController::addToDefaultEnvironment(choice, node, random.oneIn(2)))
            continue;
        const osg::CPEditor edit(kxScenegraph::getRoot(), osg::Node::ChildrenFieldMask);
        kxScenegraph::getRoot()->addChild(node);
    }
}

void RandomScene::decorate(const osg::NodePtr &node)
{
    if (random.oneIn(2)) {
        char text[37];
        std::snprintf(text, sizeof text, "00000000-0000-4000-8000-%012d", _count);
        _keys.emplace_back(text);
        const auto key = osg::KeyAttachment::create();
        {
            const osg::CPEditor edit(key, osg::AllFieldMask);
            key->setKey(text);
        }
        attach(node, key);
    }
    if (random.oneIn(6))
        kxMaterials::setOverrideMaterial(node, random.of(_materials->all()));
    if (random.oneIn(6)) {
        const auto asset = osg::AssetAttachment::createAssetAttachment(node);
        const osg::CPEditor edit(asset, osg::AllFieldMask);
        asset->setChecksum(static_cast<std::uint32_t>(_count));
        asset->setUserEdited(random.oneIn(2));
    }
    if (random.oneIn(8))
        attach(node, osg::TagAttachment::create());
    if (!_keys.empty() && random.oneIn(8)) {
        const auto partners = osg::SynchronizationAttachment::create();
        {
            const osg::CPEditor edit(partners, osg::AllFieldMask);
            partners->editPartners() = someKeys();
        }
        attach(node, partners);
    }
}

/// Never beside the original, so that what is called the same is told apart by its place.
void RandomScene::addClone()
{
    const osg::NodePtr original = random.of(_made);
    const osg::NodePtr parent = random.of(_made);
    if (isAtOrBelow(parent, original) || parent == original->getParent())
        return;
    const osg::NodePtr clone = cloneTree(original);
    const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
    parent->addChild(clone);
}

std::vector<std::string> RandomScene::someKeys()
{
    std::vector<std::string> keys;
    for (std::size_t i = random.below(3) + 1; i > 0; --i)
        keys.push_back(random.of(_keys));
    return keys;
}

void RandomScene::addConstraints()
{
    const osg::MaterialPoolPtr pool = kxScenegraph::getMaterialPool();
    for (int i = 0; i < 5; ++i) {
        const auto constraint = osg::Constraint::create();
        osg::setName(constraint, "constraint" + std::to_string(i));
        {
            const osg::CPEditor edit(constraint, osg::AllFieldMask);
            constraint->setKind(static_cast<std::uint32_t>(random.below(4)));
            constraint->editEnds() = someKeys();
        }
        const osg::CPEditor edit(pool, osg::MaterialPool::ConstraintsFieldMask);
        pool->editConstraints().push_back(constraint);
    }
}

void RandomScene::addLightLinkSets()
{
    const osg::MaterialPoolPtr pool = kxScenegraph::getMaterialPool();
    for (int i = 0; i < 4; ++i) {
        const auto set = osg::LightLinkSet::create();
        osg::setName(set, "set" + std::to_string(i));
        {
            const osg::CPEditor edit(set, osg::AllFieldMask);
            set->editLights() = _keys; // some of them are lights
            set->editMembers() = someKeys();
            set->setIsExclusive(random.oneIn(2));
        }
        const osg::CPEditor edit(pool, osg::MaterialPool::LightLinkSetsFieldMask);
        pool->editLightLinkSets().push_back(set);
    }
}

osg::NodeCorePtr RandomScene::makePlate()
{
    if (random.oneIn(4))
        return makeSwitch();
    if (random.oneIn(3))
        return osg::Group::create();
    const auto plate = osg::Sceneplate::create();
    const osg::ImagePtr image = RandomMaterials::makeImage(random);
    const osg::CPEditor edit(plate, osg::AllFieldMask);
    plate->setIsFront(random.oneIn(2));
    plate->setOpacity(random.share());
    plate->setImage(image);
    return plate;
}

void RandomScene::addPlates()
{
    for (int i = 0; i < PlateCount; ++i) {
        const osg::NodeCorePtr core = makePlate();
        addNode(random.of(plates()), core);
    }
}
