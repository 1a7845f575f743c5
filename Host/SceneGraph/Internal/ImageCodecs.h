// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Internal/Pixmap.h"
#include "SceneGraph/Result.h"

#include <string>
#include <vector>

namespace osg {

/// What the library kxImageCodecs offers. It is loaded when the first foreign picture comes along: the decoders bring
/// some 250 libraries with them, and loading those takes a fifth of a second, which most programs never need.
struct ImageCodecs
{
    using Bytes = std::vector<unsigned char>;

    Result<Pixmap> (*read)(const std::string &path, const std::string &extension);
    Result<Bytes> (*encode)(const std::string &extension, const PixmapView &picture);

    /// The only thing that the library exports, by this name: a function that returns the address of a table like this.
    static constexpr const char *EntryPoint = "kxImageCodecs";
    using Entry = const ImageCodecs *(*)();

    /// Loads the library where that has not been done. Any thread. The reason says why it cannot be had.
    static Result<const ImageCodecs *> load();
};

} // namespace osg
