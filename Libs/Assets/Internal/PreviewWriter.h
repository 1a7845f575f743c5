// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Image.h"

#include <QString>

#include <string>
#include <vector>

namespace kxAssetsInternal {

/// Writes a preview beside \a basePath in the format with this index, and removes those of the other formats when that
/// succeeded: the newest file is the one that is shown. Null writes nothing. Expects an index in range.
void writePreview(const QString &basePath, const osg::ImagePtr &image, const std::vector<std::string> &formats,
                  int format);

} // namespace kxAssetsInternal
