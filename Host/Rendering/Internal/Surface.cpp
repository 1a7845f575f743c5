// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/Surface.h"

#include "SceneGraph/MultiMaterial.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/UberMaterial.h"

namespace kxRender {

namespace {

constexpr float MaxValue = 1e6F;
/// Below it a lobe is so narrow that single precision cannot place it.
constexpr float MinAlpha = 1e-3F;
/// Materials that contain themselves come to an end here.
constexpr int MaxDepth = 16;
constexpr std::size_t MaxLayers = 64;

float inRange(float value, float low, float high, float fallback)
{
    return std::isfinite(value) ? std::clamp(value, low, high) : fallback;
}

V3 colorOf(const osg::Color4f &color, float high)
{
    return {inRange(color[0], 0.0F, high, 0.0F), inRange(color[1], 0.0F, high, 0.0F),
            inRange(color[2], 0.0F, high, 0.0F)};
}

V3 rgb(const std::array<float, 4> &texel)
{
    return {std::max(texel[0], 0.0F), std::max(texel[1], 0.0F), std::max(texel[2], 0.0F)};
}

} // namespace

SurfaceLibrary::Layers SurfaceLibrary::add(const osg::MaterialPtr &material)
{
    const auto known = _layersOfMaterial.find(material.getFieldContainerId());
    if (known != _layersOfMaterial.end())
        return known->second;

    std::vector<osg::UBRDFMaterialPtr> materials;
    collect(material, materials, 0);
    Layers layers{static_cast<std::uint32_t>(_surfaces.size()), 0};
    for (const osg::UBRDFMaterialPtr &layer : materials)
        add(convert(*layer));
    if (materials.empty()) {
        Surface grey;
        grey.base = {0.5F, 0.5F, 0.5F};
        grey.specular = {1.0F, 1.0F, 1.0F};
        add(grey);
    }
    layers.count = static_cast<std::uint32_t>(_surfaces.size()) - layers.first;
    _layersOfMaterial.emplace(material.getFieldContainerId(), layers);
    return layers;
}

void SurfaceLibrary::collect(const osg::MaterialPtr &material, std::vector<osg::UBRDFMaterialPtr> &layers,
                             int depth) const
{
    if (!material || depth > MaxDepth || layers.size() >= MaxLayers)
        return;
    if (const auto surface = osg::UBRDFMaterialPtr::dcast(material)) {
        layers.push_back(surface);
    } else if (const auto uber = osg::UberMaterialPtr::dcast(material)) {
        for (const osg::UBRDFMaterialPtr &layer : uber->getBRDFMaterials())
            collect(layer, layers, depth + 1);
    } else if (const auto chooser = osg::SwitchMaterialPtr::dcast(material)) {
        collect(chooser->getCurrentMaterial(), layers, depth + 1);
    } else if (const auto multi = osg::MultiMaterialPtr::dcast(material)) {
        for (const osg::MaterialPtr &pass : multi->getMaterials())
            collect(pass, layers, depth + 1);
    }
}

void SurfaceLibrary::add(Surface surface)
{
    surface.isUniform = surface.baseMap < 0 && surface.roughnessMap < 0 && surface.metalnessMap < 0 &&
                        surface.transparencyMap < 0 && surface.emissionMap < 0;
    surface.needsTangents = surface.normalMap >= 0 || surface.bumpMap >= 0 || surface.anisotropy != 0.0F;
    textured(surface, 0.0F, 0.0F, surface.uniform);
    surface.uniform.width = GgxWidth(std::sqrt(surface.uniform.alphaX * surface.uniform.alphaY));
    surface.uniform.coatWidth = GgxWidth(surface.uniform.coatAlpha);
    _surfaces.push_back(surface);
}

int SurfaceLibrary::addMap(const osg::TexturePtr &texture)
{
    if (!TextureMap::isUsable(texture))
        return -1;
    const auto [position, isNew] = _mapOfTexture.emplace(texture.getFieldContainerId(), static_cast<int>(_maps.size()));
    if (isNew)
        _maps.emplace_back(texture);
    return position->second;
}

Surface SurfaceLibrary::convert(const osg::UBRDFMaterial &material)
{
    Surface s;
    s.base = colorOf(material.getDiffuseColor(), 1.0F);
    s.opacity = inRange(material.getDiffuseColor()[3], 0.0F, 1.0F, 1.0F);
    s.specular = colorOf(material.getSpecularColor(), 1.0F);
    s.transmission = colorOf(material.getTransmissionColor(), 1.0F);
    s.emission = colorOf(material.getIncandescenceColor(), MaxValue) *
                 inRange(material.getIncandescenceColor()[3], 0.0F, MaxValue, 0.0F);
    s.roughness = inRange(material.getRoughness(), 0.0F, 1.0F, 0.5F);
    s.metalness = inRange(material.getMetalness(), 0.0F, 1.0F, 0.0F);
    s.coat = inRange(material.getClearCoat(), 0.0F, 1.0F, 0.0F);
    s.coatRoughness = inRange(material.getClearCoatRoughness(), 0.0F, 1.0F, 0.03F);
    s.transparency = inRange(material.getTransparency(), 0.0F, 1.0F, 0.0F);
    s.ior = inRange(material.getIndexOfRefraction(), 1.0F, 4.0F, 1.5F);
    s.bump = inRange(material.getBumpStrength(), -100.0F, 100.0F, 1.0F);
    s.sheen = inRange(material.getSheen(), 0.0F, 1.0F, 0.0F);
    s.anisotropy = inRange(material.getAnisotropy(), -1.0F, 1.0F, 0.0F);
    s.isTwoSided = material.getIsTwoSided();
    s.baseMap = addMap(material.getDiffuseTexture());
    s.roughnessMap = addMap(material.getRoughnessTexture());
    s.metalnessMap = addMap(material.getMetalnessTexture());
    s.transparencyMap = addMap(material.getTransparencyTexture());
    s.normalMap = addMap(material.getNormalTexture());
    s.bumpMap = addMap(material.getBumpTexture());
    s.emissionMap = addMap(material.getIncandescenceTexture());
    return s;
}

const SurfacePoint &SurfaceLibrary::textured(const Surface &s, float u, float v, SurfacePoint &p) const
{
    p = {s.base,
         s.specular,
         s.transmission,
         s.emission,
         s.opacity,
         0.0F,
         0.0F,
         s.metalness,
         s.coat,
         0.0F,
         s.transparency,
         s.ior,
         s.sheen,
         s.roughnessMap < 0 ? s.uniform.width : GgxWidth(),
         s.uniform.coatWidth};
    float roughness = s.roughness;
    if (const TextureMap *m = map(s.baseMap)) {
        const auto texel = m->sample(u, v);
        p.base *= rgb(texel);
        p.opacity *= clamp01(texel[3]);
    }
    if (const TextureMap *m = map(s.roughnessMap))
        roughness *= clamp01(m->sample(u, v)[1]);
    if (const TextureMap *m = map(s.metalnessMap))
        p.metalness *= clamp01(m->sample(u, v)[2]);
    if (const TextureMap *m = map(s.transparencyMap))
        p.transparency *= clamp01(m->sample(u, v)[0]);
    if (const TextureMap *m = map(s.emissionMap))
        p.emission *= rgb(m->sample(u, v));
    p.base = {std::min(p.base.x, 1.0F), std::min(p.base.y, 1.0F), std::min(p.base.z, 1.0F)};

    // Burley, "Physically-Based Shading at Disney", 2012: the lobe is stretched, its mean width kept.
    const float alpha = roughness * roughness;
    p.alphaX = alpha;
    p.alphaY = alpha;
    if (s.anisotropy != 0.0F) {
        const float aspect = std::sqrt(1.0F - 0.9F * std::abs(s.anisotropy));
        const float stretch = s.anisotropy > 0.0F ? 1.0F / aspect : aspect;
        p.alphaX *= stretch;
        p.alphaY /= stretch;
    }
    p.alphaX = std::max(MinAlpha, p.alphaX);
    p.alphaY = std::max(MinAlpha, p.alphaY);
    p.coatAlpha = std::max(MinAlpha, s.coatRoughness * s.coatRoughness);
    return p;
}

bool SurfaceLibrary::needTangents(const Layers &layers) const
{
    bool need = false;
    for (std::uint32_t i = 0; i < layers.count; ++i)
        need = need || surface(layers.first + i).needsTangents;
    return need;
}

bool SurfaceLibrary::hasCutOuts(const Layers &layers) const
{
    for (std::uint32_t i = 0; i < layers.count; ++i) {
        const Surface &s = surface(layers.first + i);
        const TextureMap *m = map(s.baseMap);
        if (s.opacity >= 1.0F && (m == nullptr || m->isOpaque()))
            return false;
    }
    return true;
}

float SurfaceLibrary::opacityAt(const Layers &layers, float u, float v) const
{
    float through = 1.0F;
    for (std::uint32_t i = 0; i < layers.count; ++i) {
        const Surface &s = surface(layers.first + i);
        const TextureMap *m = map(s.baseMap);
        through *= 1.0F - s.opacity * (m ? clamp01(m->sample(u, v)[3]) : 1.0F);
    }
    return 1.0F - through;
}

} // namespace kxRender
