// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxSaveEnvironment.h"

#include "Assets/Internal/StandardOutput.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxLightLinkSubSets.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"

using kxAssetsInternal::printLine;

namespace {

constexpr const char *MarkerKey = "EnvironmentAssetMaterial";
constexpr const char *MarkerValue = "IsDefaultEnvironmentSwitchChild";

} // namespace

kxSaveEnvironment::kxSaveEnvironment() : _replaced(std::make_shared<std::map<std::uint32_t, Assignment>>()) {}

kxSaveEnvironment::~kxSaveEnvironment()
{
    unprepare();
}

bool kxSaveEnvironment::prepare(const osg::NodePtr &envNode)
{
    if (!_assigned) { // what copies of an idle object do is theirs
        _replaced = std::make_shared<std::map<std::uint32_t, Assignment>>();
        _environments = kxBRDFEnvironmentSetter();
    }
    prepareLightLinkSets(envNode);
    return prepareEnvironmentSwitches(envNode);
}

void kxSaveEnvironment::unprepare()
{
    unprepareEnvironmentSwitches();
    unprepareLightLinkSets();
}

osg::UEnvironmentMaterialPtr kxSaveEnvironment::getAssignedEnvironmentMaterial() const
{
    return _assigned.get();
}

void kxSaveEnvironment::prepareLightLinkSets(const osg::NodePtr &envNode)
{
    if (!envNode)
        return;
    const osg::MaterialPoolPtr pool = osg::MaterialPool::create();
    unprepareLightLinkSets(); // of an earlier call
    _lightLinkNode = osg::FCRef<osg::Node>(osg::makeNodeFor(pool));
    if (!kxLightLinkSubSets(pool).createSetsFrom(envNode))
        return;
    const osg::CPEditor edit(envNode, osg::Node::ChildrenFieldMask);
    envNode->addChild(_lightLinkNode);
}

void kxSaveEnvironment::unprepareLightLinkSets()
{
    if (!_lightLinkNode)
        return;
    if (const osg::NodePtr parent = _lightLinkNode->getParent()) {
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->subChild(_lightLinkNode);
    }
    _lightLinkNode.reset();
}

int kxSaveEnvironment::getEnvironmentGeometrySwitchIndex(const osg::NodePtr &envNode) const
{
    const osg::NodePtr places = kxScenegraph::environmentGeometrySwitch();
    if (!places)
        return -1;
    for (std::size_t i = 0; i < places->getNChildren(); ++i) {
        const osg::NodePtr child = places->getChild(i);
        if (child == envNode || (child->getCore() && child->getCore() == envNode->getCore()))
            return static_cast<int>(i);
    }
    return -1;
}

/// What each environment switch is to be replaced by, and the one that stands for the environment.
osg::UEnvironmentMaterialPtr kxSaveEnvironment::findChoices(const osg::NodePtr &envNode,
                                                            const std::set<osg::MaterialPtr> &materials,
                                                            Choices &choices) const
{
    const int index = getEnvironmentGeometrySwitchIndex(envNode);
    const osg::UEnvironmentSwitchMaterialPtr defaultSwitch = kxDefaultEnvironment::getSwitch();
    osg::UEnvironmentMaterialPtr found;
    for (const osg::MaterialPtr &material : materials) {
        const auto chooser = osg::UEnvironmentSwitchMaterialPtr::dcast(material);
        if (!chooser)
            continue;
        if (index >= 0 && chooser == defaultSwitch &&
            chooser->getMaterials().size() > static_cast<std::size_t>(index)) {
            found = osg::UEnvironmentMaterialPtr::dcast(chooser->getMaterial(index));
            choices[chooser] = found;
            continue;
        }
        const auto choice = osg::UEnvironmentMaterialPtr::dcast(chooser->getCurrentMaterial());
        if (!choice)
            continue;
        choices[chooser] = choice;
        if (!found)
            found = choice;
    }
    if (found)
        return found;
    for (const osg::MaterialPtr &material : kxMaterials::getMaterials(envNode))
        if (const auto environment = osg::UEnvironmentMaterialPtr::dcast(material))
            return environment;
    return nullptr;
}

void kxSaveEnvironment::replaceSwitches(const osg::NodePtr &envNode, const Choices &choices)
{
    const osg::UEnvironmentSwitchMaterialPtr defaultSwitch = kxDefaultEnvironment::getSwitch();
    for (const auto &[chooser, choice] : choices) {
        if (chooser == defaultSwitch)
            kxMaterials::addValuePair(choice, MarkerKey, MarkerValue);
        for (const osg::NodePtr &node : kxMaterials::getNodesWithMaterial(chooser, envNode)) {
            printLine("[prepareEnvironmentSwitches] replace mat on " + kxNodeUtils::getName(node) + " by " +
                      kxMaterials::getName(choice));
            (*_replaced)[node.getFieldContainerId()] = {chooser, node->getCore()};
            kxNodeUtils::setMaterial(node, choice, false, true);
        }
    }
}

bool kxSaveEnvironment::prepareEnvironmentSwitches(const osg::NodePtr &envNode)
{
    if (!envNode || !isOfType(envNode->getCore(), osg::Environment::getClassType()))
        return false;
    std::set<osg::MaterialPtr> materials;
    kxMaterials::getMaterialsAndOverrideMaterials(envNode, materials, true);
    Choices choices;
    const osg::UEnvironmentMaterialPtr found = findChoices(envNode, materials, choices);
    if (!found) {
        printLine("[prepareEnvironmentSwitches] no env material under envNode found");
        return false;
    }
    _assigned = osg::FCRef<osg::UEnvironmentMaterial>(found);
    printLine("[prepareEnvironmentSwitches] # replacements (switch by choice) = " + std::to_string(choices.size()));
    replaceSwitches(envNode, choices);
    for (const osg::MaterialPtr &material : materials) {
        const auto surface = osg::UBRDFMaterialPtr::dcast(material);
        const auto choice = surface ? choices.find(surface->getEnvironment()) : choices.end();
        if (choice != choices.end())
            _environments.setEnvironment(surface, choice->second);
    }
    return true;
}

void kxSaveEnvironment::unprepareEnvironmentSwitches()
{
    const auto replaced = std::move(*_replaced);
    _replaced->clear();
    for (const auto &[id, assignment] : replaced) {
        const osg::MaterialPtr material = assignment.material.get();
        const osg::NodePtr node = kxNodeUtils::getNodeFromId(id);
        if (!node) {
            const osg::FCRef<osg::Node> standIn(osg::makeNodeFor(assignment.core.get()));
            kxNodeUtils::setMaterial(standIn.get(), material, false, true);
            continue;
        }
        printLine("restore assignment on " + kxNodeUtils::getName(node) + " ---> " + kxMaterials::getName(material));
        kxNodeUtils::setMaterial(node, material, false, true);
    }
    _environments.reset();
    _assigned.reset();
}
