// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/WorldPlace.h"

#include "AssetManager/FieldStep.h"
#include "SceneGraph/Transform.h"
#include "SceneGraph/Transform3D.h"

#include <algorithm>
#include <cmath>

namespace {

bool isAlmost(const osg::Matrix &a, const osg::Matrix &b)
{
    for (std::size_t i = 0; i < a.values.size(); ++i)
        if (!(std::abs(a.values[i] - b.values[i]) <= 1e-9 * std::max(1.0, std::abs(a.values[i]))))
            return false;
    return true;
}

} // namespace

WorldPlace::WorldPlace(const osg::NodePtr &node) : _node(node), _toWorld(node->getToWorld()) {}

std::vector<std::unique_ptr<SceneStep>> WorldPlace::restoring() const
{
    std::vector<std::unique_ptr<SceneStep>> steps;
    const osg::NodePtr parent = _node->getParent();
    const osg::NodeCorePtr core = _node->getCore();
    const auto toLocal = inverted(parent ? parent->getToWorld() : osg::Matrix());
    if (!toLocal || !core || core->getRefCount() > 1)
        return steps;
    const osg::Matrix local = *toLocal * _toWorld;
    if (isAlmost(local, osg::getCoreMatrix(core)))
        return steps;
    const auto set = [&](const char *field, const osg::FieldValue &value) {
        steps.push_back(std::make_unique<FieldStep>(core.getFieldContainerId(), field, value));
    };
    if (isOfType(core, osg::Transform::getClassType())) {
        set("Matrix", local);
    } else if (isOfType(core, osg::Transform3D::getClassType())) {
        const osg::Decomposition parts = osg::decompose(local);
        set("Translation", parts.translation);
        set("RotationAsQuaternion", parts.rotation);
        set("Scale", parts.scale);
    }
    return steps;
}
