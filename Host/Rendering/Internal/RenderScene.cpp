// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/RenderScene.h"

#include <algorithm>

namespace kxRender {

namespace {

/// Cut-out surfaces one behind the other that a ray passes; what lies behind even more counts as hidden.
constexpr int MaxCutOuts = 64;
constexpr float RelativeOffset = 1e-4F;

RTCRayHit rayFrom(V3 origin, V3 direction, float rayLength)
{
    RTCRayHit query{};
    query.ray.org_x = origin.x;
    query.ray.org_y = origin.y;
    query.ray.org_z = origin.z;
    query.ray.dir_x = direction.x;
    query.ray.dir_y = direction.y;
    query.ray.dir_z = direction.z;
    query.ray.tfar = rayLength;
    query.ray.mask = ~0U;
    query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    query.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
    return query;
}

/// Fills the rays of a packet as Embree takes them, and what it calls valid: -1 for lanes in use.
void fill(const RayPacket &rays, RTCRay8 &packet, std::array<int, RayPacket::Size> &valid)
{
    for (std::size_t i = 0; i < RayPacket::Size; ++i) {
        valid[i] = rays.areInUse[i] ? -1 : 0;
        packet.org_x[i] = rays.origins[i].x;
        packet.org_y[i] = rays.origins[i].y;
        packet.org_z[i] = rays.origins[i].z;
        packet.dir_x[i] = rays.directions[i].x;
        packet.dir_y[i] = rays.directions[i].y;
        packet.dir_z[i] = rays.directions[i].z;
    }
    std::fill_n(packet.tnear, RayPacket::Size, 0.0F);
    std::copy(rays.lengths.begin(), rays.lengths.end(), packet.tfar);
    std::fill_n(packet.time, RayPacket::Size, 0.0F);
    std::fill_n(packet.mask, RayPacket::Size, ~0U);
    std::fill_n(packet.id, RayPacket::Size, 0U);
    std::fill_n(packet.flags, RayPacket::Size, 0U);
}

} // namespace

RenderScene::RenderScene() : _device(rtcNewDevice(nullptr)), _scene(rtcNewScene(_device)), _lightGroups(1)
{
    rtcSetSceneFlags(_scene, RTC_SCENE_FLAG_ROBUST);
}

RenderScene::~RenderScene()
{
    rtcReleaseScene(_scene);
    rtcReleaseDevice(_device);
}

void RenderScene::addMesh(Mesh mesh)
{
    if (mesh.indices.empty())
        return;
    _meshes.push_back(std::make_unique<Mesh>(std::move(mesh)));
    const Mesh &kept = *_meshes.back();
    RTCGeometry geometry = rtcNewGeometry(_device, RTC_GEOMETRY_TYPE_TRIANGLE);
    void *positions = rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3, sizeof(V3),
                                              kept.positions.size());
    std::copy(kept.positions.begin(), kept.positions.end(), static_cast<V3 *>(positions));
    void *indices = rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                            3 * sizeof(std::uint32_t), kept.indices.size() / 3);
    std::copy(kept.indices.begin(), kept.indices.end(), static_cast<std::uint32_t *>(indices));
    rtcCommitGeometry(geometry);
    rtcAttachGeometryByID(_scene, geometry, static_cast<unsigned>(_meshes.size() - 1));
    rtcReleaseGeometry(geometry);
}

void RenderScene::addLight(const DeltaLight &light)
{
    _lightGroups.front().push_back(static_cast<std::uint32_t>(_lights.size()));
    _lights.push_back(light);
}

std::uint32_t RenderScene::addLightGroup(std::vector<std::uint32_t> lights)
{
    _lightGroups.push_back(std::move(lights));
    return static_cast<std::uint32_t>(_lightGroups.size() - 1);
}

void RenderScene::commit()
{
    _hasCutOuts = std::any_of(_meshes.begin(), _meshes.end(),
                              [this](const auto &mesh) { return _surfaces.hasCutOuts(mesh->layers); });
    for (const auto &mesh : _meshes)
        mesh->needsTangents = _surfaces.needTangents(mesh->layers);
    rtcCommitScene(_scene);
}

std::optional<Hit> RenderScene::intersect(V3 origin, V3 direction, float rayLength) const
{
    RTCRayHit query = rayFrom(origin, direction, rayLength);
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    rtcIntersect1(_scene, &context, &query);
    if (query.hit.geomID == RTC_INVALID_GEOMETRY_ID)
        return std::nullopt;
    return hitOf(query.hit.geomID, query.hit.primID, query.hit.u, query.hit.v);
}

void RenderScene::intersect(const RayPacket &rays, std::array<std::optional<Hit>, RayPacket::Size> &hits) const
{
    RTCRayHit8 query;
    alignas(32) std::array<int, RayPacket::Size> valid;
    fill(rays, query.ray, valid);
    std::fill_n(query.hit.geomID, RayPacket::Size, RTC_INVALID_GEOMETRY_ID);
    std::fill_n(query.hit.instID[0], RayPacket::Size, RTC_INVALID_GEOMETRY_ID);
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    if (rays.isCoherent)
        context.flags = RTC_INTERSECT_CONTEXT_FLAG_COHERENT;
    rtcIntersect8(valid.data(), _scene, &context, &query);
    for (std::size_t i = 0; i < RayPacket::Size; ++i)
        if (rays.areInUse[i]) {
            if (query.hit.geomID[i] == RTC_INVALID_GEOMETRY_ID)
                hits[i].reset();
            else
                hits[i] = hitOf(query.hit.geomID[i], query.hit.primID[i], query.hit.u[i], query.hit.v[i]);
        }
}

Hit RenderScene::hitOf(std::uint32_t meshIndex, std::uint32_t triangle, float b1, float b2) const
{
    const Mesh &mesh = *_meshes[meshIndex];
    const std::uint32_t *corner = &mesh.indices[std::size_t{triangle} * 3];
    const float b0 = 1.0F - b1 - b2;
    const V3 p0 = mesh.positions[corner[0]];
    const V3 e1 = mesh.positions[corner[1]] - p0;
    const V3 e2 = mesh.positions[corner[2]] - p0;

    Hit hit{};
    hit.layers = &mesh.layers;
    hit.lightGroup = mesh.lightGroup;
    hit.node = mesh.node;
    hit.position = p0 + e1 * b1 + e2 * b2;
    hit.geometricNormal = normalize(cross(e1, e2));
    hit.normal =
        mesh.normals.empty()
            ? hit.geometricNormal
            : normalize(mesh.normals[corner[0]] * b0 + mesh.normals[corner[1]] * b1 + mesh.normals[corner[2]] * b2);
    if (mesh.coordinates.empty()) {
        if (!mesh.needsTangents)
            return hit;
        const Frame frame = frameAround(hit.normal);
        hit.tangent = frame.x;
        hit.bitangent = frame.y;
        return hit;
    }
    const auto &t0 = mesh.coordinates[corner[0]];
    const auto &t1 = mesh.coordinates[corner[1]];
    const auto &t2 = mesh.coordinates[corner[2]];
    hit.u = t0[0] * b0 + t1[0] * b1 + t2[0] * b2;
    hit.v = t0[1] * b0 + t1[1] * b1 + t2[1] * b2;
    if (!mesh.needsTangents)
        return hit;
    const float du1 = t1[0] - t0[0];
    const float dv1 = t1[1] - t0[1];
    const float du2 = t2[0] - t0[0];
    const float dv2 = t2[1] - t0[1];
    const float determinant = du1 * dv2 - du2 * dv1;
    if (std::abs(determinant) < 1e-12F) {
        const Frame frame = frameAround(hit.normal);
        hit.tangent = frame.x;
        hit.bitangent = frame.y;
    } else {
        hit.tangent = (e1 * dv2 - e2 * dv1) / determinant;
        hit.bitangent = (e2 * du1 - e1 * du2) / determinant;
    }
    return hit;
}

std::uint32_t RenderScene::nodeAlong(V3 origin, V3 direction) const
{
    for (int i = 0; i < MaxCutOuts; ++i) {
        const std::optional<Hit> hit = intersect(origin, direction);
        if (!hit)
            return 0;
        if (_surfaces.opacityAt(*hit->layers, hit->u, hit->v) >= 0.5F)
            return hit->node;
        origin = hit->position + direction * (RelativeOffset * (1.0F + length(hit->position)));
    }
    return 0;
}

std::array<std::uint32_t, RayPacket::Size> RenderScene::nodesAlong(const RayPacket &rays) const
{
    std::array<std::optional<Hit>, RayPacket::Size> hits;
    intersect(rays, hits);
    std::array<std::uint32_t, RayPacket::Size> nodes{};
    for (std::size_t i = 0; i < RayPacket::Size; ++i) {
        if (!hits[i])
            continue;
        const bool isHiding = _surfaces.opacityAt(*hits[i]->layers, hits[i]->u, hits[i]->v) >= 0.5F;
        nodes[i] = isHiding ? hits[i]->node : nodeAlong(rays.origins[i], rays.directions[i]);
    }
    return nodes;
}

void RenderScene::transmittance(const RayPacket &rays, std::array<float, RayPacket::Size> &shares) const
{
    if (_hasCutOuts) {
        for (std::size_t i = 0; i < RayPacket::Size; ++i)
            if (rays.areInUse[i])
                shares[i] = cutOutTransmittance(rays.origins[i], rays.directions[i], rays.lengths[i]);
        return;
    }
    RTCRay8 query;
    alignas(32) std::array<int, RayPacket::Size> valid;
    fill(rays, query, valid);
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    rtcOccluded8(valid.data(), _scene, &context, &query);
    for (std::size_t i = 0; i < RayPacket::Size; ++i)
        if (rays.areInUse[i])
            shares[i] = query.tfar[i] < 0.0F ? 0.0F : 1.0F;
}

float RenderScene::cutOutTransmittance(V3 origin, V3 direction, float rayLength) const
{
    float through = 1.0F;
    float left = rayLength;
    for (int i = 0; i < MaxCutOuts; ++i) {
        const std::optional<Hit> hit = intersect(origin, direction, left);
        if (!hit)
            return through;
        through *= 1.0F - _surfaces.opacityAt(*hit->layers, hit->u, hit->v);
        if (through <= 0.0F)
            return 0.0F;
        const V3 next = hit->position + direction * (RelativeOffset * (1.0F + length(hit->position)));
        left -= dot(next - origin, direction);
        if (left <= 0.0F)
            return through;
        origin = next;
    }
    return 0.0F;
}

} // namespace kxRender
