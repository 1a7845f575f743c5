// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/UberCamera.h"

#include <algorithm>
#include <cmath>

namespace osg {

OSG_CONTAINER_SOURCE(UberCamera)

namespace {

double lengthOf(const Vec3d &v)
{
    return std::hypot(v[0], v[1], v[2]);
}

} // namespace

FieldMask UberCamera::getCombinedCameraAttributesMask()
{
    return FieldOfViewFieldMask | NearFieldMask | FarFieldMask;
}

FieldMask UberCamera::getCombinedViewingAttributesMask()
{
    return FromFieldMask | AtFieldMask | UpFieldMask;
}

void UberCamera::zoomTo(const Volume &box, bool adaptDepth, const Vec3d &offset)
{
    if (box.isEmpty())
        return;
    Vec3d direction;
    for (std::size_t i = 0; i < 3; ++i)
        direction[i] = getAt()[i] - getFrom()[i];
    const double distance = lengthOf(direction);
    if (!(distance > 0.0))
        direction = {0.0, 0.0, -1.0};
    // The sphere around the box, seen under the narrower angle of any picture that is not higher than wide.
    const double radius = std::max(lengthOf(box.size()) / 2.0, 1e-6);
    const double away = radius / std::sin(std::clamp(getFieldOfView(), 0.01, 3.0) / 2.0);
    Vec3d at = box.center();
    Vec3d from;
    for (std::size_t i = 0; i < 3; ++i) {
        at[i] += offset[i];
        from[i] = at[i] - direction[i] / (distance > 0.0 ? distance : 1.0) * away;
    }
    setFrom(from);
    setAt(at);
    if (adaptDepth) {
        setNear(std::max(away - radius, away * 1e-4));
        setFar(away + radius);
    }
}

void UberCamera::syncWith(const UberCameraPtr &other, FieldMask mask, bool announce)
{
    if (!other)
        return;
    const auto copies = [&](FieldMask field, bool differs) { return (mask & field) != 0 && (announce || differs); };
    if (copies(FromFieldMask, getFrom() != other->getFrom()))
        setFrom(other->getFrom());
    if (copies(AtFieldMask, getAt() != other->getAt()))
        setAt(other->getAt());
    if (copies(UpFieldMask, getUp() != other->getUp()))
        setUp(other->getUp());
    if (copies(FieldOfViewFieldMask, getFieldOfView() != other->getFieldOfView()))
        setFieldOfView(other->getFieldOfView());
    if (copies(NearFieldMask, getNear() != other->getNear()))
        setNear(other->getNear());
    if (copies(FarFieldMask, getFar() != other->getFar()))
        setFar(other->getFar());
}

} // namespace osg
