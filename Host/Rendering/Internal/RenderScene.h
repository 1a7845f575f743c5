// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/EnvironmentLight.h"
#include "Rendering/Internal/Surface.h"
#include "Rendering/Internal/Vector.h"

#include <embree3/rtcore.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace kxRender {

/// Triangles with what is needed to shade them. Normals and coordinates are one for each position.
struct Mesh
{
    std::vector<V3> positions;
    std::vector<V3> normals;
    std::vector<std::array<float, 2>> coordinates;
    std::vector<std::uint32_t> indices;
    SurfaceLibrary::Layers layers;
};

/// What a ray met.
struct Hit
{
    V3 position;
    V3 geometricNormal; ///< unit, as the triangle is wound
    V3 normal;          ///< unit, between the corners' normals
    V3 tangent;         ///< along u; not unit, not quite perpendicular
    V3 bitangent;
    float u;
    float v;
    const SurfaceLibrary::Layers *layers;
};

/// Everything that one picture needs; complete and unchanging once commit() was called, and then safe from any thread.
class RenderScene
{
public:
    RenderScene();
    ~RenderScene();
    RenderScene(const RenderScene &) = delete;
    RenderScene &operator=(const RenderScene &) = delete;

    SurfaceLibrary &surfaces() { return _surfaces; }
    const SurfaceLibrary &surfaces() const { return _surfaces; }

    void addMesh(Mesh mesh);
    void setEnvironment(EnvironmentLight light) { _environment = std::move(light); }
    const EnvironmentLight *environment() const { return _environment ? &*_environment : nullptr; }
    void commit();

    std::optional<Hit> intersect(V3 origin, V3 direction) const;
    /// The share of light that comes through in this direction: surfaces stop what they do not cut out.
    float transmittance(V3 origin, V3 direction) const;

private:
    Hit hitOf(const RTCRayHit &query) const;
    bool isBlocked(V3 origin, V3 direction) const;

    RTCDevice _device;
    RTCScene _scene;
    SurfaceLibrary _surfaces;
    std::vector<std::unique_ptr<Mesh>> _meshes;
    std::optional<EnvironmentLight> _environment;
    bool _hasCutOuts = false;
};

} // namespace kxRender
