// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/DeltaLight.h"

namespace kxRender {

namespace {

constexpr float MaxIntensity = 1e9F;
/// Nearer than this there is no direction towards a light, and no finite light from it.
constexpr float MinDistance = 1e-6F;

float limited(float value, float high)
{
    return std::isfinite(value) ? std::clamp(value, 0.0F, high) : 0.0F;
}

V3 intensityOf(const osg::Light &light)
{
    const osg::Color4f color = light.getColor();
    const auto channel = [&](std::size_t i) {
        return limited(limited(color[i], MaxIntensity) * limited(light.getIntensity(), MaxIntensity), MaxIntensity);
    };
    return {channel(0), channel(1), channel(2)};
}

V3 toSingle(const osg::Vec3d &v)
{
    return {static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2])};
}

} // namespace

std::optional<DeltaLight> DeltaLight::from(const osg::Light &light, const osg::Matrix &toWorld)
{
    DeltaLight result;
    result._intensity = intensityOf(light);
    if (!light.getIsOn() || maxOf(result._intensity) <= 0.0F ||
        light.getKind() > static_cast<std::uint32_t>(osg::LightKind::Spot))
        return std::nullopt;
    result._kind = static_cast<osg::LightKind>(light.getKind());
    result._position = toSingle(transformPoint(toWorld, {0.0, 0.0, 0.0}));
    if (!isFinite(result._position))
        return std::nullopt;
    if (result._kind == osg::LightKind::Point)
        return result;
    // Apart from the place, so that lights far out aim as well as others.
    const double scale = std::hypot(toWorld.at(0, 2), toWorld.at(1, 2), toWorld.at(2, 2));
    if (!std::isfinite(scale) || scale <= 0.0)
        return std::nullopt;
    result._axis =
        normalize(toSingle({-toWorld.at(0, 2) / scale, -toWorld.at(1, 2) / scale, -toWorld.at(2, 2) / scale}));
    result._outerAngle = limited(light.getOuterConeAngle(), Pi);
    result._innerAngle = limited(light.getInnerConeAngle(), result._outerAngle);
    return result;
}

/// The irradiance that a point gives falls with the square of the distance: Lambert, "Photometria", 1760.
DeltaLight::Arrival DeltaLight::at(V3 position) const
{
    if (_kind == osg::LightKind::Directional)
        return {-_axis, std::numeric_limits<float>::infinity(), _intensity};
    const V3 toLight = _position - position;
    const float distance = length(toLight);
    if (!(distance > MinDistance))
        return {{}, 0.0F, {}};
    const V3 direction = toLight / distance;
    const float share = _kind == osg::LightKind::Spot ? spotShare(-direction) : 1.0F;
    return {direction, distance, _intensity * (share / (distance * distance))};
}

float DeltaLight::spotShare(V3 toPoint) const
{
    // By the tangent: near the axis a cosine in single precision no longer tells angles apart.
    const float angle = fastAtan2(length(cross(_axis, toPoint)), dot(_axis, toPoint));
    if (angle <= _innerAngle)
        return 1.0F;
    if (angle >= _outerAngle)
        return 0.0F;
    const float t = (_outerAngle - angle) / (_outerAngle - _innerAngle);
    return t * t * (3.0F - 2.0F * t);
}

} // namespace kxRender
