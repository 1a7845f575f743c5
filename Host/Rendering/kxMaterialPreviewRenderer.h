// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/RenderingExport.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/Material.h"

#include <functional>

/// Renders pictures that show what a material looks like. Main thread only; uses all cores.
///
/// Surfaces are shown on a modelled object in a studio, which lights them instead of the environment they have in their
/// scene; environments as a panorama. The same material, size and sample count give the same bytes.
class KX_RENDERING_EXPORT kxMaterialPreviewRenderer
{
public:
    /// Asked between tiles, on any thread; true stops the rendering.
    using IsCancelled = std::function<bool()>;

    /// An 8-bit RGBA picture. The caller owns one reference. Null for a null material, an environment without a picture
    /// that can be read, sizes below 1, and when it was cancelled. A panorama is half as high as \a height says.
    static osg::ImagePtr renderPreview(const osg::MaterialPtr &material, int width, int height, int samples,
                                       const IsCancelled &isCancelled = {});
};
