// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/Film.h"

#include <QImage>

namespace kxRender {

/// The film developed into a premultiplied picture whose rows run downwards; touches nothing of the scene graph. Uses
/// the cores that the caller runs on. A null picture without memory for it.
QImage pictureOf(const Film &film, float exposure);

} // namespace kxRender
