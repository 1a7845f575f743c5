// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/GgxTable.h"
#include "Rendering/Internal/TextureMap.h"
#include "Rendering/Internal/Vector.h"
#include "SceneGraph/Material.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <cstdint>
#include <map>
#include <vector>

namespace kxRender {

/// What a surface is at one point, textures looked up.
struct SurfacePoint
{
    V3 base;
    V3 specular;
    V3 transmission;
    V3 emission;
    float opacity;
    float alphaX; ///< GGX
    float alphaY;
    float metalness;
    float coat;
    float coatAlpha;
    float transparency;
    float ior;
    float sheen;
    GgxWidth width{};     ///< of both alphas together, where it is known beforehand
    GgxWidth coatWidth{}; ///< of the coat's alpha
};

/// The values of one BRDF material as the renderer uses them: in range, and with textures as indices (-1: none).
struct Surface
{
    V3 base;
    V3 specular;
    V3 transmission;
    V3 emission;
    float opacity = 1.0F;
    float roughness = 0.5F;
    float metalness = 0.0F;
    float coat = 0.0F;
    float coatRoughness = 0.03F;
    float transparency = 0.0F;
    float ior = 1.5F;
    float bump = 1.0F;
    float sheen = 0.0F;
    float anisotropy = 0.0F;
    bool isTwoSided = true;
    int baseMap = -1;
    int roughnessMap = -1;
    int metalnessMap = -1;
    int transparencyMap = -1;
    int normalMap = -1;
    int bumpMap = -1;
    int emissionMap = -1;
    bool needsTangents = false; ///< what it shows depends on how it is turned around its normal
    bool isUniform = true;      ///< no map changes what a point is
    SurfacePoint uniform{};     ///< then this holds everywhere
};

/// All surfaces and textures of a picture. A material is a run of layers, the first at the bottom: switch materials are
/// followed to what they show, uber and multi-pass materials taken apart.
class SurfaceLibrary
{
public:
    struct Layers
    {
        std::uint32_t first = 0;
        std::uint32_t count = 0;
    };

    /// A neutral grey for null, and for materials that are no surfaces or refer to themselves.
    Layers add(const osg::MaterialPtr &material);

    const Surface &surface(std::uint32_t index) const { return _surfaces[index]; }
    const TextureMap *map(int index) const { return index >= 0 ? &_maps[static_cast<std::size_t>(index)] : nullptr; }
    /// What lies there. \a scratch is written only where textures have a say; what is returned lives as long as it.
    const SurfacePoint &lookUp(const Surface &surface, float u, float v, SurfacePoint &scratch) const
    {
        return surface.isUniform ? surface.uniform : textured(surface, u, v, scratch);
    }
    bool needTangents(const Layers &layers) const;
    /// Whether opacityAt() may be less than 1 anywhere.
    bool hasCutOuts(const Layers &layers) const;
    float opacityAt(const Layers &layers, float u, float v) const;

private:
    int addMap(const osg::TexturePtr &texture);
    const SurfacePoint &textured(const Surface &surface, float u, float v, SurfacePoint &p) const;
    void add(Surface surface);
    Surface convert(const osg::UBRDFMaterial &material);
    void collect(const osg::MaterialPtr &material, std::vector<osg::UBRDFMaterialPtr> &layers, int depth) const;

    std::vector<Surface> _surfaces;
    std::vector<TextureMap> _maps;
    std::map<std::uint32_t, int> _mapOfTexture;
    std::map<std::uint32_t, Layers> _layersOfMaterial;
};

} // namespace kxRender
