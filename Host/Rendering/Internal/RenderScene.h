// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/DeltaLight.h"
#include "Rendering/Internal/EnvironmentLight.h"
#include "Rendering/Internal/Surface.h"
#include "Rendering/Internal/Vector.h"

#include <embree3/rtcore.h>

#include <array>
#include <cstdint>
#include <limits>
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
    bool needsTangents = false;   ///< of its layers
    std::uint32_t lightGroup = 0; ///< what lights it, besides the environment; 0: all lights
    std::uint32_t node = 0;       ///< the id of the node that it stands for; 0: none
};

/// What a ray met.
struct Hit
{
    V3 position;
    V3 geometricNormal; ///< unit, as the triangle is wound
    V3 normal;          ///< unit, between the corners' normals
    V3 tangent;         ///< along u; not unit, not quite perpendicular; only where a layer needs it
    V3 bitangent;
    float u;
    float v;
    const SurfaceLibrary::Layers *layers;
    std::uint32_t lightGroup;
    std::uint32_t node;
};

/// Rays that are traced together.
struct RayPacket
{
    static constexpr std::size_t Size = 8;

    std::array<V3, Size> origins;
    std::array<V3, Size> directions;
    std::array<float, Size> lengths = endless(); ///< what lies farther is not met
    std::array<bool, Size> areInUse{};
    bool isCoherent = false; ///< they begin and point alike

    static constexpr std::array<float, Size> endless()
    {
        std::array<float, Size> lengths{};
        lengths.fill(std::numeric_limits<float>::infinity());
        return lengths;
    }
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
    /// Lights have indices in the order in which they are added.
    void addLight(const DeltaLight &light);
    const DeltaLight &light(std::uint32_t index) const { return _lights[index]; }
    /// What to write into meshes that only these lights light.
    std::uint32_t addLightGroup(std::vector<std::uint32_t> lights);
    const std::vector<std::uint32_t> &lightGroup(std::uint32_t index) const { return _lightGroups[index]; }
    void commit();

    std::optional<Hit> intersect(V3 origin, V3 direction,
                                 float rayLength = std::numeric_limits<float>::infinity()) const;
    /// The same for the packet's rays; what lanes that are not in use are given stays as it was.
    void intersect(const RayPacket &rays, std::array<std::optional<Hit>, RayPacket::Size> &hits) const;
    /// The node of the first surface along a ray that hides more than it lets through; 0 where there is none.
    std::uint32_t nodeAlong(V3 origin, V3 direction) const;
    /// The same for each ray of a packet; 0 also for lanes that are not in use.
    std::array<std::uint32_t, RayPacket::Size> nodesAlong(const RayPacket &rays) const;
    /// The share of light that comes through along each ray: surfaces stop what they do not cut out.
    void transmittance(const RayPacket &rays, std::array<float, RayPacket::Size> &shares) const;

private:
    Hit hitOf(std::uint32_t mesh, std::uint32_t triangle, float b1, float b2) const;
    float cutOutTransmittance(V3 origin, V3 direction, float rayLength) const;

    RTCDevice _device;
    RTCScene _scene;
    SurfaceLibrary _surfaces;
    std::vector<std::unique_ptr<Mesh>> _meshes;
    std::optional<EnvironmentLight> _environment;
    std::vector<DeltaLight> _lights;
    std::vector<std::vector<std::uint32_t>> _lightGroups; ///< the first is that of all lights
    bool _hasCutOuts = false;
};

} // namespace kxRender
