// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/RenderingExport.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/UberCamera.h"

#include <cstdint>
#include <vector>

/// A view of the scene. Main thread only.
///
/// Programs without a window have none, and every operation here is made for that.
class KX_RENDERING_EXPORT kxOSGWidget
{
public:
    /// The view with this number, -1 for the main one; null when there is none.
    static kxOSGWidget *getMGLW(int index);
    /// Stops the refinement of every view; a change that follows starts it anew. Without a view nothing happens.
    static void cancelAntialiasing();

    /// Sets the nodes that a view shows; nothing happens without that view.
    static void setRenderRoots(int index, const std::vector<osg::NodePtr> &roots);

    /// What the view looks through: the camera of the scene. Null without a scene.
    virtual osg::UberCameraPtr getUberCamera() const;
    /// The nodes that are shown, destroyed ones left out; empty: the whole scene.
    std::vector<osg::NodePtr> getRenderRoots() const;
    void setRenderRoots(const std::vector<osg::NodePtr> &roots);

    /// Whether the view may show that it shows a part of the scene only.
    bool isIsolateViewOverlayVisible() const { return _isIsolateViewOverlayVisible; }
    void setIsolateViewOverlayVisible(bool visible);

    kxOSGWidget(const kxOSGWidget &) = delete;
    kxOSGWidget &operator=(const kxOSGWidget &) = delete;

protected:
    /// The first one that is made is the main view.
    kxOSGWidget();
    virtual ~kxOSGWidget();

    /// Stops at the next sample.
    virtual void cancelRefinement() = 0;

private:
    /// Called after other render roots, or another visibility of the overlay, were set. Does nothing by default.
    virtual void renderRootsChanged() {}
    virtual void overlayChanged() {}

    std::vector<std::uint32_t> _renderRoots;
    bool _isIsolateViewOverlayVisible = true;
};
