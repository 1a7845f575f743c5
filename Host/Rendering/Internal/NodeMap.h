// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/PathTracer.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace kxRender {

/// Which node is seen in each pixel of a picture, in its middle.
struct NodeMap
{
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> ids; ///< rows from the top down; 0: the background

    /// Nothing where \a isCancelled said so.
    static std::optional<NodeMap> take(const RenderScene &scene, const Camera &camera, int width, int height,
                                       const std::function<bool()> &isCancelled);
};

} // namespace kxRender
