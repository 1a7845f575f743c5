// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/RenderingExport.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/UberCamera.h"

#include <functional>
#include <vector>

/// Renders pictures of nodes, lit by the scene's default environment and by the lights among them. Main thread only; uses all
/// cores.
///
/// Of switches the chosen child is shown. The material of a mesh is the override of the highest node above it that has one,
/// else its own, else that of the next material group above it. A light lights what the light-link sets let it, those of the
/// scene's material pool and of pools among the nodes; where no set names it, everything.
class KX_RENDERING_EXPORT kxSceneRenderer
{
public:
    struct Settings
    {
        int width = 512; ///< pixels
        int height = 384;
        int samples = 32; ///< for each pixel
        bool isBackgroundVisible =
            true; ///< the environment is drawn where nothing else is, unless it is invisible itself
        osg::Color4f emptyColor{0.0F, 0.0F, 0.0F, 0.0F}; ///< of what is empty; red, green and blue are for display
        osg::NodePtr
            plates; ///< drawn under and over the image; where there are plates under it, the environment is not drawn
        std::function<bool()> isCancelled; ///< asked between tiles, on any thread; true stops the rendering
    };

    /// An 8-bit RGBA picture; what is empty is transparent. The caller owns one reference. Null for a null camera, sizes
    /// below 1, and when it was cancelled.
    static osg::ImagePtr render(const std::vector<osg::NodePtr> &roots, const osg::UberCameraPtr &camera,
                                const Settings &settings);
};
