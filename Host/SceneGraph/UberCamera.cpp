// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/UberCamera.h"

#include <algorithm>
#include <cmath>

namespace osg {

OSG_CONTAINER_SOURCE(UberCamera)

namespace {

constexpr double Margin = 1.06; // around what is framed

double dot(const Vec3d &a, const Vec3d &b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vec3d difference(const Vec3d &a, const Vec3d &b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Vec3d cross(const Vec3d &a, const Vec3d &b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Vec3d normalized(const Vec3d &v, const Vec3d &otherwise)
{
    const double length = std::sqrt(dot(v, v));
    return length > 0.0 ? Vec3d{v[0] / length, v[1] / length, v[2] / length} : otherwise;
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
    const Vec3d forward = normalized(difference(getAt(), getFrom()), {0.0, 0.0, -1.0});
    const Vec3d right = normalized(cross(forward, getUp()), {1.0, 0.0, 0.0});
    const Vec3d up = cross(right, forward);
    // Every corner has to lie within the angle, upwards and sideways: pictures are hardly ever higher than wide.
    const double slope = std::tan(std::clamp(getFieldOfView(), 0.01, 3.0) / 2.0) / Margin;
    double away = 1e-6;
    double depth = 0.0;
    for (int corner = 0; corner < 8; ++corner) {
        Vec3d toCorner;
        for (std::size_t i = 0; i < 3; ++i)
            toCorner[i] = ((corner >> i) & 1 ? 0.5 : -0.5) * box.size()[i];
        const double reach = std::max(std::abs(dot(toCorner, right)), std::abs(dot(toCorner, up)));
        away = std::max(away, reach / slope - dot(toCorner, forward));
        depth = std::max(depth, std::abs(dot(toCorner, forward)));
    }
    Vec3d at = box.center();
    Vec3d from;
    for (std::size_t i = 0; i < 3; ++i) {
        at[i] += offset[i];
        from[i] = at[i] - forward[i] * away;
    }
    setFrom(from);
    setAt(at);
    if (adaptDepth) {
        setNear(std::max(away - depth, away * 1e-4));
        setFar(away + depth);
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
