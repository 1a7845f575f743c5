// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/CameraView.h"

#include "SceneGraph/EditCP.h"

#include <algorithm>
#include <cmath>

namespace kxRender {

namespace {

using osg::Vec3d;

constexpr double Pi = 3.14159265358979323846;
constexpr double PoleDistance = Pi / 180.0; // nearer than that, left and right would change places suddenly
constexpr double NearestDistance = 1e-4;
constexpr double FarthestDistance = 1e8;

Vec3d sum(const Vec3d &a, const Vec3d &b, double factor = 1.0)
{
    return {a[0] + factor * b[0], a[1] + factor * b[1], a[2] + factor * b[2]};
}

Vec3d scaled(const Vec3d &a, double factor)
{
    return {a[0] * factor, a[1] * factor, a[2] * factor};
}

double dot(const Vec3d &a, const Vec3d &b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vec3d cross(const Vec3d &a, const Vec3d &b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Vec3d normalized(const Vec3d &v, const Vec3d &otherwise)
{
    const double length = std::sqrt(dot(v, v));
    return length > 1e-12 && std::isfinite(length) ? scaled(v, 1.0 / length) : otherwise;
}

/// Any unit vector across a unit vector.
Vec3d across(const Vec3d &v)
{
    return normalized(std::abs(v[0]) < 0.9 ? cross(v, {1.0, 0.0, 0.0}) : cross(v, {0.0, 1.0, 0.0}), {0.0, 0.0, 1.0});
}

} // namespace

CameraView::CameraView(const osg::UberCameraPtr &camera)
    : _from(camera->getFrom()), _at(camera->getAt()), _up(normalized(camera->getUp(), {0.0, 1.0, 0.0})),
      _fieldOfView(std::clamp(camera->getFieldOfView(), 0.01, 3.0))
{
    if (!(dot(sum(_from, _at, -1.0), sum(_from, _at, -1.0)) > 0.0))
        _from = sum(_at, {0.0, 0.0, 1.0});
}

void CameraView::applyTo(const osg::UberCameraPtr &camera) const
{
    if (camera->getFrom() == _from && camera->getAt() == _at)
        return;
    const osg::CPEditor edit(camera, osg::UberCamera::FromFieldMask | osg::UberCamera::AtFieldMask);
    camera->setFrom(_from);
    camera->setAt(_at);
}

Vec3d CameraView::forward() const
{
    return normalized(sum(_at, _from, -1.0), {0.0, 0.0, -1.0});
}

Vec3d CameraView::right() const
{
    return normalized(cross(forward(), _up), across(_up));
}

void CameraView::orbit(double right, double down)
{
    const Vec3d offset = sum(_from, _at, -1.0);
    const double distance = std::sqrt(dot(offset, offset));
    const double height = std::clamp(dot(offset, _up) / distance, -1.0, 1.0);
    const Vec3d outwards = normalized(sum(offset, _up, -height * distance), cross(this->right(), _up));
    const double polar = std::clamp(std::acos(height) - down, PoleDistance, Pi - PoleDistance);
    // The camera goes to the left where what it looks at is to go to the right.
    const Vec3d turned = sum(scaled(outwards, std::cos(right)), cross(_up, outwards), -std::sin(right));
    _from = sum(sum(_at, turned, distance * std::sin(polar)), _up, distance * std::cos(polar));
}

void CameraView::pan(double right, double down)
{
    const Vec3d offset = sum(_from, _at, -1.0);
    const double height = 2.0 * std::sqrt(dot(offset, offset)) * std::tan(_fieldOfView / 2.0);
    const Vec3d sideways = this->right();
    const Vec3d upwards = cross(sideways, forward());
    const Vec3d move = sum(scaled(sideways, -right * height), upwards, down * height);
    _from = sum(_from, move);
    _at = sum(_at, move);
}

void CameraView::zoom(double factor)
{
    const Vec3d offset = sum(_from, _at, -1.0);
    const double distance = std::sqrt(dot(offset, offset));
    const double wanted = std::clamp(distance * factor, NearestDistance, FarthestDistance);
    _from = sum(_at, offset, wanted / distance);
}

} // namespace kxRender
