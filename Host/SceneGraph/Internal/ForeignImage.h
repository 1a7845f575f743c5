// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Internal/Pixmap.h"
#include "SceneGraph/Result.h"

#include <string>
#include <vector>

namespace osg {

/// Pictures in the formats of others, through OpenImageIO; \a extension is without dot, in lower case.
///
/// The format of a file that is read follows its extension, and its content where that does not help. Values and alpha
/// are kept as they are stored. Any thread. Reasons do not name the file. Part of the library kxImageCodecs.
Result<Pixmap> readForeignImage(const std::string &path, const std::string &extension);
Result<std::vector<unsigned char>> encodeForeignImage(const std::string &extension, const PixmapView &picture);

} // namespace osg
