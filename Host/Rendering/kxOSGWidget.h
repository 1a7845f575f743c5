// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/RenderingExport.h"

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

    kxOSGWidget(const kxOSGWidget &) = delete;
    kxOSGWidget &operator=(const kxOSGWidget &) = delete;

protected:
    /// The first one that is made is the main view.
    kxOSGWidget();
    virtual ~kxOSGWidget();

    /// Stops at the next sample.
    virtual void cancelRefinement() = 0;
};
