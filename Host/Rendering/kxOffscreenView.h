// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/kxOSGWidget.h"

/// The main view of a program without windows: it has a camera and what to show, and shows nothing by itself.
class KX_RENDERING_EXPORT kxOffscreenView final : public kxOSGWidget
{
public:
    kxOffscreenView();
    ~kxOffscreenView() override;

private:
    void cancelRefinement() override {}
};
