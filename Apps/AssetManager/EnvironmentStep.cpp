// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/EnvironmentStep.h"

#include "AssetManager/PlacementStep.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Switch.h"

#include <algorithm>

namespace {

std::int32_t indexOfChoice(std::uint32_t materialId)
{
    const auto choices = kxDefaultEnvironment::getSwitch();
    if (!choices)
        return -1;
    const auto &materials = choices->getMaterials();
    const auto found = std::find_if(materials.begin(), materials.end(), [materialId](const osg::MaterialPtr &material) {
        return material.getFieldContainerId() == materialId;
    });
    return found == materials.end() ? -1 : static_cast<std::int32_t>(found - materials.begin());
}

} // namespace

std::uint32_t EnvironmentStep::currentChoice()
{
    const auto choices = kxDefaultEnvironment::getSwitch();
    const osg::MaterialPtr current = choices ? choices->getCurrentMaterial() : osg::MaterialPtr();
    return current.getFieldContainerId();
}

std::int32_t EnvironmentStep::indexOf(const osg::NodePtr &node)
{
    const osg::NodePtr places = kxScenegraph::environmentGeometrySwitch();
    const std::int32_t index = places ? places->findChild(node) : -1;
    const auto choices = kxDefaultEnvironment::getSwitch();
    return choices && index < static_cast<std::int32_t>(choices->getMaterials().size()) ? index : -1;
}

void EnvironmentStep::choose(std::int32_t index)
{
    if (const auto choices = kxDefaultEnvironment::getSwitch()) {
        const osg::CPEditor edit(choices, osg::SwitchMaterial::ChoiceFieldMask);
        choices->setChoice(index);
    }
    const osg::NodePtr places = kxScenegraph::environmentGeometrySwitch();
    if (const auto core = places ? osg::SwitchPtr::dcast(places->getCore()) : osg::SwitchPtr()) {
        const osg::CPEditor edit(core, osg::Switch::ChoiceFieldMask);
        core->setChoice(index);
    }
}

EnvironmentStep::EnvironmentStep(Kind kind, std::int32_t index)
    : _kind(kind), _index(index), _material(kxDefaultEnvironment::getSwitch()->getMaterial(index)),
      _node(kxScenegraph::environmentGeometrySwitch()->getChild(static_cast<std::size_t>(index))),
      _choiceWith(currentChoice())
{}

std::unique_ptr<EnvironmentStep> EnvironmentStep::removing(std::int32_t index)
{
    std::unique_ptr<EnvironmentStep> step(new EnvironmentStep(Kind::Removes, index));
    const bool wasCurrent = step->_choiceWith == step->_material.get().getFieldContainerId();
    const osg::MaterialPtr first = kxDefaultEnvironment::getSwitch()->getMaterial(0);
    step->_choiceWithout = wasCurrent ? first.getFieldContainerId() : step->_choiceWith;
    return step;
}

std::unique_ptr<EnvironmentStep> EnvironmentStep::added(std::int32_t index, std::uint32_t choiceBefore)
{
    std::unique_ptr<EnvironmentStep> step(new EnvironmentStep(Kind::Adds, index));
    step->_choiceWithout = choiceBefore;
    return step;
}

QString EnvironmentStep::apply()
{
    return _kind == Kind::Adds ? insert() : remove();
}

QString EnvironmentStep::revert()
{
    return _kind == Kind::Adds ? remove() : insert();
}

QString EnvironmentStep::insert() const
{
    const auto choices = kxDefaultEnvironment::getSwitch();
    const osg::NodePtr places = kxScenegraph::environmentGeometrySwitch();
    if (!choices || !places)
        return tr("The scene has no environments to switch between.");
    const auto index = std::min(_index, static_cast<std::int32_t>(choices->getMaterials().size()));
    if (_node) {
        const osg::CPEditor edit(places, osg::Node::ChildrenFieldMask);
        places->insertChild(index, _node);
    }
    {
        const osg::CPEditor edit(choices, osg::MultiMaterial::MaterialsFieldMask);
        choices->editMaterials().insert(static_cast<std::size_t>(index), _material.get());
    }
    choose(std::max(0, indexOfChoice(_choiceWith)));
    return {};
}

QString EnvironmentStep::remove() const
{
    const std::int32_t index = indexOfChoice(_material.get().getFieldContainerId());
    if (_node)
        PlacementStep(_node.get(), PlacementStep::Place()).apply();
    if (index >= 0) {
        const auto choices = kxDefaultEnvironment::getSwitch();
        const osg::CPEditor edit(choices, osg::MultiMaterial::MaterialsFieldMask);
        choices->editMaterials().erase(static_cast<std::size_t>(index));
    }
    choose(std::max(0, indexOfChoice(_choiceWithout)));
    return {};
}
