// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/SceneListener.h"

#include <functional>

/// Calls back after each edit of a container, as long as it lives.
class SceneChangeListener final : public osg::SceneListener
{
public:
    using Callback = std::function<void(osg::FieldContainer &container, osg::FieldMask fields)>;

    explicit SceneChangeListener(Callback callback);
    ~SceneChangeListener() override;
    SceneChangeListener(const SceneChangeListener &) = delete;
    SceneChangeListener &operator=(const SceneChangeListener &) = delete;

private:
    void containerChanged(osg::FieldContainer &container, osg::FieldMask fields) override;

    Callback _callback;
};
