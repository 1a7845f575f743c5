// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxOffscreenView.h"

kxOffscreenView::kxOffscreenView() = default;

kxOffscreenView::~kxOffscreenView() = default;
