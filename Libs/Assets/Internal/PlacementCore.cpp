// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/PlacementCore.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/Transform.h"
#include "SceneGraph/Transform3D.h"

#include <cmath>

namespace kxAssetsInternal {

namespace {

constexpr double Tolerance = 1e-6;

osg::FCRef<osg::Transform3D> decomposed(const osg::Matrix &matrix)
{
    const osg::Decomposition parts = osg::decompose(matrix);
    osg::FCRef<osg::Transform3D> core(osg::Transform3D::create());
    const osg::CPEditor edit(core.get(), osg::AllFieldMask);
    core->setTranslation(parts.translation);
    core->setRotationAsQuaternion(parts.rotation);
    core->setScale(parts.scale);
    return core;
}

} // namespace

bool isNearlyEqual(const osg::Matrix &a, const osg::Matrix &b)
{
    for (std::size_t i = 0; i < a.values.size(); ++i)
        if (!(a.values[i] - b.values[i] <= Tolerance && b.values[i] - a.values[i] <= Tolerance))
            return false;
    return true;
}

osg::NodeCorePtr placementCore(const osg::Matrix &matrix)
{
    bool isFinite = true;
    for (const double value : matrix.values)
        isFinite = isFinite && std::isfinite(value);
    if (isFinite) {
        osg::FCRef<osg::Transform3D> core = decomposed(matrix);
        if (isNearlyEqual(core->getMatrix(), matrix)) {
            const osg::Transform3DPtr result = core.take();
            result->subRefWithoutDestroying();
            return result;
        }
    }
    const osg::TransformPtr core = osg::Transform::create();
    const osg::CPEditor edit(core, osg::AllFieldMask);
    core->setMatrix(matrix);
    return core;
}

} // namespace kxAssetsInternal
