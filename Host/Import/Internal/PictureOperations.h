// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Image.h"

namespace kximport {

/// A copy without alpha channel; null for a picture that has none, or is not valid.
osg::ImagePtr withoutAlpha(const osg::Image &image);

/// A copy whose alpha is 1 from \a threshold (0 to 1) on and 0 below; null unless the picture has 8-bit alpha.
osg::ImagePtr withHardAlpha(const osg::Image &image, float threshold);

/// The colours of \a colors (null: white) with the opacity of \a opacity: its alpha where that says anything, else its
/// red channel. The size is that of \a colors. Null unless both are valid pictures with 8 bits.
osg::ImagePtr withOpacity(const osg::ImagePtr &colors, const osg::Image &opacity);

/// A copy whose green channel is the inverse of \a channel (0 to 3) of \a image: roughness from glossiness. Null unless
/// the picture is a valid one with 8 bits and this channel.
osg::ImagePtr invertedToGreen(const osg::Image &image, std::size_t channel);

} // namespace kximport
