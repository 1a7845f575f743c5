// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldContainerType.h"
#include "SceneGraph/SceneListener.h"

#include <functional>

/// Calls back whenever a container of this type changes, with the fields of one edit.
class ChangeListener : public osg::SceneListener
{
public:
    ChangeListener(const osg::FieldContainerType &type, std::function<void(osg::FieldMask)> callback);
    ~ChangeListener() override;
    ChangeListener(const ChangeListener &) = delete;
    ChangeListener &operator=(const ChangeListener &) = delete;

    void containerChanged(osg::FieldContainer &container, osg::FieldMask fields) override;

private:
    const osg::FieldContainerType &_type;
    std::function<void(osg::FieldMask)> _callback;
};
