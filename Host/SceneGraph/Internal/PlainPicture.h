// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Internal/Pixmap.h"

#include <optional>
#include <string>

namespace osg {

/// The commonest pictures without the library for all pictures, whose loading takes longer than decoding a texture: PNG
/// of up to 8 bits that is not interlaced, and JPEG of grey or colour.
///
/// Nothing for everything else, and for files with any fault, of which the other library knows more to say. What is read is
/// what that one would give.
std::optional<Pixmap> readPlainPicture(const std::string &path);

} // namespace osg
