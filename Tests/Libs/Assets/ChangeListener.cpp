// SPDX-License-Identifier: Apache-2.0
#include "ChangeListener.h"

#include "SceneGraph/FieldContainerFactory.h"

#include <utility>

ChangeListener::ChangeListener(const osg::FieldContainerType &type, std::function<void(osg::FieldMask)> callback)
    : _type(type), _callback(std::move(callback))
{
    osg::FieldContainerFactory::the().addListener(*this);
}

ChangeListener::~ChangeListener()
{
    osg::FieldContainerFactory::the().removeListener(*this);
}

void ChangeListener::containerChanged(osg::FieldContainer &container, osg::FieldMask fields)
{
    if (container.getType().isDerivedFrom(_type))
        _callback(fields);
}
