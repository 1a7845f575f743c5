// SPDX-License-Identifier: Apache-2.0
#include "SceneChangeListener.h"

#include <utility>

SceneChangeListener::SceneChangeListener(Callback callback) : _callback(std::move(callback))
{
    osg::FieldContainerFactory::the().addListener(*this);
}

SceneChangeListener::~SceneChangeListener()
{
    osg::FieldContainerFactory::the().removeListener(*this);
}

void SceneChangeListener::containerChanged(osg::FieldContainer &container, osg::FieldMask fields)
{
    _callback(container, fields);
}
