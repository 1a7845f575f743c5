// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/RenderingExport.h"

/// How previews are rendered in this process. Main thread only.
class KX_RENDERING_EXPORT kxPreviewSettings
{
public:
    kxPreviewSettings() = delete;

    /// The width in pixels, 512 at first; materials are as high, environments half as high. Clamped to 16..4096.
    static int size();
    static void setSize(int size);
    /// Samples for each pixel, 16 at first. Clamped to 1..65536.
    static int samples();
    static void setSamples(int samples);
};
