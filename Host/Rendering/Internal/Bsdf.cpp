// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/Bsdf.h"

#include "Rendering/Internal/GgxTable.h"

namespace kxRender {

namespace {

constexpr float CoatF0 = 0.04F; // index 1.5
constexpr float MaxSheen = 0.5F;
constexpr float MinCosine = 1e-4F;

float schlick(float cosine)
{
    const float c = 1.0F - clamp01(cosine);
    const float c2 = c * c;
    return c2 * c2 * c;
}

GgxAlbedo albedoOf(const GgxWidth &width, float alpha, float cosine)
{
    return (width.isKnown() ? width : GgxWidth(alpha)).albedo(cosine);
}

V3 sampleCosine(float u, float v)
{
    const float r = std::sqrt(u);
    const auto [cosine, sine] = turned(v);
    return {r * cosine, r * sine, std::sqrt(std::max(0.0F, 1.0F - u))};
}

} // namespace

float fresnelDielectric(float cosine, float eta)
{
    const float c = clamp01(cosine);
    const float sin2 = eta * eta * (1.0F - c * c);
    if (sin2 >= 1.0F)
        return 1.0F;
    const float t = std::sqrt(1.0F - sin2);
    const float parallel = (c - eta * t) / (c + eta * t);
    const float perpendicular = (eta * c - t) / (eta * c + t);
    return 0.5F * (parallel * parallel + perpendicular * perpendicular);
}

Bsdf::Bsdf(const SurfacePoint &point, V3 toViewer, bool isInside)
    : _p(point), _v(toViewer), _ggx{point.alphaX, point.alphaY}, _coatGgx{point.coatAlpha, point.coatAlpha},
      _eta(isInside ? point.ior : 1.0F / point.ior),
      _glass(isInside ? 1.0F : point.transparency * (1.0F - point.metalness))
{
    _v.z = std::max(_v.z, MinCosine);
    _lambda = _ggx.lambda(_v);
    if (_glass >= 1.0F)
        return; // nothing lies below the boundary
    const float r = (point.ior - 1.0F) / (point.ior + 1.0F);
    const V3 dielectric = point.specular * (r * r);
    _f0 = mix(dielectric, point.base, point.metalness);
    // What reflects nothing straight on reflects nothing at a glance either.
    _f90 = clamp01(50.0F * maxOf(_f0));
    const GgxAlbedo albedo = albedoOf(point.width, std::sqrt(point.alphaX * point.alphaY), _v.z);
    _gain = V3{1.0F, 1.0F, 1.0F} + _f0 * (1.0F / std::max(albedo.white, 0.1F) - 1.0F);
    const float dielectric90 = clamp01(50.0F * maxOf(dielectric));
    const float reflected = clamp01(albedo.of(maxOf(dielectric), dielectric90) *
                                    (1.0F + maxOf(dielectric) * (1.0F / std::max(albedo.white, 0.1F) - 1.0F)));
    _diffuse = point.base * ((1.0F - point.metalness) * (1.0F - reflected));
    const float edge = 1.0F - _v.z;
    _sheen = MaxSheen * point.sheen * edge * edge * edge;
    float coat = 0.0F;
    if (point.coat > 0.0F) {
        coat = point.coat * albedoOf(point.coatWidth, point.coatAlpha, _v.z).of(CoatF0, 1.0F);
        _coatLambda = _coatGgx.lambda(_v);
        _underCoat = 1.0F - coat;
    }

    const float specular = _underCoat * (1.0F - _sheen) * albedo.of(luminance(_f0), _f90);
    const float diffuse = _underCoat * (_sheen + (1.0F - _sheen) * luminance(_diffuse));
    const float sum = coat + specular + diffuse;
    if (sum > 0.0F) {
        _coatShare = coat / sum;
        _specularShare = specular / sum;
    }
}

std::pair<V3, float> Bsdf::evaluate(V3 l) const
{
    V3 value;
    float pdf = 0.0F;
    if (_glass < 1.0F && l.z > MinCosine) {
        const auto [opaque, opaquePdf] = evaluateOpaque(l);
        value += opaque * (1.0F - _glass);
        pdf += opaquePdf * (1.0F - _glass);
    }
    if (_glass > 0.0F && std::abs(l.z) > MinCosine) {
        const auto [glass, glassPdf] = evaluateGlass(l);
        value += glass * _glass;
        pdf += glassPdf * _glass;
    }
    return {value, pdf};
}

std::pair<V3, float> Bsdf::evaluateOpaque(V3 l) const
{
    const V3 h = normalize(_v + l);
    const float vh = std::max(dot(_v, h), MinCosine);
    const float fresnel = schlick(vh);
    const float cosinePdf = l.z / Pi;

    const V3 white{1.0F, 1.0F, 1.0F};
    const float perCosine = 1.0F / (4.0F * _v.z);
    const float density = _ggx.density(h) * perCosine;
    V3 value = (white * _sheen + _diffuse * (1.0F - _sheen)) * cosinePdf;
    const float shape = density / (1.0F + _lambda + _ggx.lambda(l));
    value += (_f0 * (1.0F - fresnel) + white * (_f90 * fresnel)) * _gain * (shape * (1.0F - _sheen));
    value *= _underCoat;
    // The density of a direction is that of its visible normal, divided by four cosines towards it; the cosines cancel.
    float pdf = _specularShare * density / (1.0F + _lambda) + (1.0F - _coatShare - _specularShare) * cosinePdf;
    if (_p.coat > 0.0F) {
        const float coatDensity = _coatGgx.density(h) * perCosine;
        const float coatShape = coatDensity / (1.0F + _coatLambda + _coatGgx.lambda(l));
        value += white * (_p.coat * (CoatF0 + (1.0F - CoatF0) * fresnel) * coatShape);
        pdf += _coatShare * coatDensity / (1.0F + _coatLambda);
    }
    return {value, pdf};
}

std::pair<V3, float> Bsdf::evaluateGlass(V3 l) const
{
    const bool isReflected = l.z > 0.0F;
    V3 h = normalize(isReflected ? _v + l : _v * _eta + l);
    if (h.z < 0.0F)
        h = -h;
    const float vh = dot(_v, h);
    const float lh = dot(l, h);
    if (vh <= MinCosine || (isReflected ? lh <= 0.0F : lh >= 0.0F))
        return {{}, 0.0F};
    const float fresnel = fresnelDielectric(vh, _eta);
    const float density = _ggx.visibleDensity(_v, h);
    const V3 lit{l.x, l.y, std::abs(l.z)};
    const float shadowing = (1.0F + _lambda) / (1.0F + _lambda + _ggx.lambda(lit));
    if (isReflected) {
        const float pdf = fresnel * density / (4.0F * vh);
        return {V3{1.0F, 1.0F, 1.0F} * (pdf * shadowing), pdf};
    }
    const float denominator = _eta * vh + lh;
    const float jacobian = -lh / std::max(denominator * denominator, 1e-12F);
    const float pdf = (1.0F - fresnel) * density * jacobian;
    // A body is entered and left: each boundary gives half of the colour. Radiance that is squeezed by the refraction on
    // the way in is spread again on the way out, so neither is counted.
    const V3 tint{std::sqrt(_p.transmission.x), std::sqrt(_p.transmission.y), std::sqrt(_p.transmission.z)};
    return {tint * (pdf * shadowing), pdf};
}

/// Null where a tilted micro-facet sends light to the wrong side: it is lost there, as the shadowing says. The density of
/// the same direction through the other boundary would be a wrong one.
V3 Bsdf::chooseThroughGlass(float lobe, float u, float v) const
{
    const V3 h = _ggx.sampleVisible(_v, u, v);
    const float vh = dot(_v, h);
    if (lobe < fresnelDielectric(vh, _eta)) {
        const V3 reflected = h * (2.0F * vh) - _v;
        return reflected.z > 0.0F ? reflected : V3{};
    }
    const float sin2 = _eta * _eta * (1.0F - vh * vh);
    const V3 refracted = h * (_eta * vh - std::sqrt(std::max(0.0F, 1.0F - sin2))) - _v * _eta;
    return refracted.z < 0.0F ? refracted : V3{};
}

V3 Bsdf::chooseDirection(float lobe, float u, float v) const
{
    if (lobe < _glass)
        return chooseThroughGlass(lobe / _glass, u, v);
    lobe = (lobe - _glass) / (1.0F - _glass);
    if (lobe >= _coatShare + _specularShare)
        return sampleCosine(u, v);
    const V3 h = (lobe < _coatShare ? _coatGgx : _ggx).sampleVisible(_v, u, v);
    const V3 reflected = h * (2.0F * dot(_v, h)) - _v;
    return reflected.z > 0.0F ? reflected : V3{};
}

Bsdf::Sample Bsdf::sample(float lobe, float u, float v) const
{
    Sample sample;
    const V3 chosen = chooseDirection(lobe, u, v);
    if (dot(chosen, chosen) <= 0.0F)
        return sample;
    sample.direction = normalize(chosen);
    const auto [value, pdf] = evaluate(sample.direction);
    if (!(pdf > 1e-12F) || !isFinite(value) || !std::isfinite(pdf))
        return sample;
    sample.pdf = pdf;
    sample.weight = value / pdf;
    return sample;
}

} // namespace kxRender
