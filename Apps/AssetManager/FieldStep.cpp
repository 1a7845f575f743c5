// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/FieldStep.h"

#include "SceneGraph/FieldContainerFactory.h"

FieldStep::FieldStep(std::uint32_t containerId, std::string field, osg::FieldValue value)
    : _containerId(containerId), _field(std::move(field)), _after(std::move(value))
{}

QString FieldStep::apply()
{
    const osg::FieldContainerPtr container = osg::FieldContainerFactory::the().getContainer(_containerId);
    const osg::FieldInfo *field = container ? container->getType().findField(_field) : nullptr;
    if (field)
        _before = osg::FieldValue::of(*container, *field);
    return assign(_after);
}

QString FieldStep::revert()
{
    return assign(_before);
}

bool FieldStep::absorb(const SceneStep &later)
{
    const auto *other = dynamic_cast<const FieldStep *>(&later);
    if (!other || other->_containerId != _containerId || other->_field != _field)
        return false;
    _after = other->_after;
    return true;
}

QString FieldStep::assign(const osg::FieldValue &value) const
{
    const osg::FieldContainerPtr container = osg::FieldContainerFactory::the().getContainer(_containerId);
    if (!container)
        return tr("What was to be changed is no longer part of the scene.");
    const osg::FieldInfo *field = container->getType().findField(_field);
    if (field && value.assignTo(*container, *field))
        return {};
    return tr("The property \"%1\" does not take this value.").arg(QString::fromStdString(_field));
}
