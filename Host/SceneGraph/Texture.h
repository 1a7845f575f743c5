// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Image.h"

#include <cstdint>

namespace osg {

enum class TextureWrap : std::uint32_t { Repeat = 0, Clamp = 1, Mirror = 2 };

/// A picture laid onto a surface by its texture coordinates.
class KX_SCENEGRAPH_EXPORT Texture final : public AttachmentContainer
{
    OSG_CONTAINER(Texture, AttachmentContainer)

    OSG_FIELD(ImagePtr, Image)
    OSG_FIELD(Vec2f, Offset) ///< (u', v') = rotation(scale x (u, v)) + offset
    OSG_FIELD(Vec2f, Scale, {1.0F, 1.0F})
    OSG_FIELD(float, Rotation, 0.0F)   ///< radians, anticlockwise
    OSG_FIELD(std::uint32_t, WrapU, 0) ///< a TextureWrap
    OSG_FIELD(std::uint32_t, WrapV, 0) ///< a TextureWrap
    OSG_FIELD(bool, IsSrgb, true)      ///< the colour channels of 8-bit pixels are sRGB-encoded
};

using TexturePtr = Texture::Ptr;

} // namespace osg
