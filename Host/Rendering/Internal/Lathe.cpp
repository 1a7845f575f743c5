// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/Lathe.h"

namespace kxRender {

namespace {

/// Across the profile at a point, from its neighbours.
ProfilePoint outward(const std::vector<ProfilePoint> &profile, std::size_t i)
{
    const ProfilePoint &before = profile[i > 0 ? i - 1 : i];
    const ProfilePoint &after = profile[i + 1 < profile.size() ? i + 1 : i];
    const float dr = after.radius - before.radius;
    const float dh = after.height - before.height;
    const float l = std::max(1e-9F, std::hypot(dr, dh));
    return {-dh / l, dr / l};
}

/// How far along the profile each point is, from 0 at the first to 1 at the last.
std::vector<float> shares(const std::vector<ProfilePoint> &profile)
{
    std::vector<float> lengths{0.0F};
    for (std::size_t i = 1; i < profile.size(); ++i)
        lengths.push_back(lengths.back() + std::hypot(profile[i].radius - profile[i - 1].radius,
                                                      profile[i].height - profile[i - 1].height));
    const float whole = std::max(1e-9F, lengths.back());
    for (float &length : lengths)
        length /= whole;
    return lengths;
}

} // namespace

Mesh lathe(const std::vector<ProfilePoint> &profile, int segments, float repeatU, float repeatV)
{
    Mesh mesh;
    const auto rows = static_cast<std::uint32_t>(profile.size());
    const auto columns = static_cast<std::uint32_t>(segments) + 1;
    const std::vector<float> along = shares(profile);
    for (std::uint32_t row = 0; row < rows; ++row) {
        const ProfilePoint normal = outward(profile, row);
        for (std::uint32_t column = 0; column < columns; ++column) {
            const float share = static_cast<float>(column) / static_cast<float>(segments);
            const float phi = 2.0F * Pi * share;
            const V3 radial{std::sin(phi), 0.0F, std::cos(phi)};
            const V3 up{0.0F, 1.0F, 0.0F};
            mesh.positions.push_back(radial * profile[row].radius + up * profile[row].height);
            mesh.normals.push_back(normalize(radial * normal.radius + up * normal.height));
            mesh.coordinates.push_back({repeatU * share, repeatV * (1.0F - along[row])});
        }
    }
    for (std::uint32_t row = 0; row + 1 < rows; ++row)
        for (std::uint32_t column = 0; column + 1 < columns; ++column) {
            const std::uint32_t a = row * columns + column;
            for (const std::uint32_t index : {a, a + columns, a + columns + 1, a, a + columns + 1, a + 1})
                mesh.indices.push_back(index);
        }
    return mesh;
}

void place(Mesh &mesh, float aboutX, float aboutZ, V3 offset)
{
    const float cx = std::cos(aboutX);
    const float sx = std::sin(aboutX);
    const float cz = std::cos(aboutZ);
    const float sz = std::sin(aboutZ);
    const auto turned = [=](V3 p) {
        const V3 q{p.x, cx * p.y - sx * p.z, sx * p.y + cx * p.z};
        return V3{cz * q.x - sz * q.y, sz * q.x + cz * q.y, q.z};
    };
    for (V3 &p : mesh.positions)
        p = turned(p) + offset;
    for (V3 &n : mesh.normals)
        n = turned(n);
}

} // namespace kxRender
