// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/NodeMap.h"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <array>
#include <atomic>

namespace kxRender {

namespace {

void takeRow(const RenderScene &scene, const CameraRays &rays, NodeMap &map, int row)
{
    constexpr int PacketSize = static_cast<int>(RayPacket::Size);
    const float y = static_cast<float>(map.height - row) - 0.5F;
    std::uint32_t *ids = &map.ids[static_cast<std::size_t>(row) * static_cast<std::size_t>(map.width)];
    RayPacket packet;
    packet.isCoherent = true;
    packet.origins.fill(rays.origin());
    for (int x = 0; x < map.width; x += PacketSize) {
        const int count = std::min(PacketSize, map.width - x);
        for (int i = 0; i < PacketSize; ++i) {
            packet.areInUse[static_cast<std::size_t>(i)] = i < count;
            packet.directions[static_cast<std::size_t>(i)] = rays.direction(static_cast<float>(x + i) + 0.5F, y);
        }
        const std::array<std::uint32_t, RayPacket::Size> nodes = scene.nodesAlong(packet);
        std::copy_n(nodes.begin(), count, ids + x);
    }
}

} // namespace

std::optional<NodeMap> NodeMap::take(const RenderScene &scene, const Camera &camera, int width, int height,
                                     const std::function<bool()> &isCancelled)
{
    NodeMap map{width, height, {}};
    map.ids.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const CameraRays rays(camera, static_cast<float>(width), static_cast<float>(height));
    std::atomic<bool> isStopped = false;
    tbb::parallel_for(0, height, [&](int row) {
        if (isStopped || isCancelled())
            isStopped = true;
        else
            takeRow(scene, rays, map, row);
    });
    return isStopped ? std::nullopt : std::optional(std::move(map));
}

} // namespace kxRender
