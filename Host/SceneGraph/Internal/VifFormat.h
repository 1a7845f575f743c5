// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Internal/Pixmap.h"
#include "SceneGraph/Result.h"

#include <string>

namespace osg {

/// The host's own lossless picture format, which Docs/vif.md describes. Reasons do not name the file.
Result<Pixmap> readVif(const std::string &path);
Result<void> writeVif(const std::string &path, const PixmapView &picture);

} // namespace osg
