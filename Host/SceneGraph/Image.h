// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace osg {

/// How one channel of one pixel is stored.
enum class PixelType : std::uint32_t { UInt8 = 0, Half = 1, Float = 2 };

/// A picture: rows from the bottom up, channels interleaved, no padding.
///
/// May be created, filled and released on any thread known to the scene graph, as long as no other thread knows it.
class KX_SCENEGRAPH_EXPORT Image final : public AttachmentContainer
{
    OSG_CONTAINER(Image, AttachmentContainer)

    OSG_FIELD(std::uint32_t, Width, 0)
    OSG_FIELD(std::uint32_t, Height, 0)
    OSG_FIELD(std::uint32_t, Channels, 0) ///< 1 grey, 2 grey and alpha, 3 RGB, 4 RGBA
    OSG_FIELD(std::uint32_t, DataType, 0) ///< a PixelType
    OSG_MFIELD(std::uint8_t, Pixels)      ///< as long as byteCount() says

public:
    /// The pixel formats of reformat(), with the numbers that OpenGL gives them.
    enum PixelFormat : std::uint32_t { Luminance = 0x1909, LuminanceAlpha = 0x190A, Rgb = 0x1907, Rgba = 0x1908 };

    /// Makes the picture this size, with all bytes 0. False, and nothing changes, for sizes beyond 65,535 pixels a side
    /// or channels beyond 4.
    bool set(std::uint32_t width, std::uint32_t height, std::uint32_t channels, PixelType type);

    bool isEmpty() const { return getPixels().empty(); }
    PixelType pixelType() const { return static_cast<PixelType>(getDataType()); }
    std::size_t bytesPerPixel() const;
    /// What the header fields ask for; differs from the length of Pixels only in a damaged image.
    std::size_t byteCount() const;
    /// True where the sizes are in range and the pixels are all there.
    bool isValid() const;

    /// One pixel as RGBA in the range of the stored values (8 bit: 0 to 1), grey spread, alpha 1 where there is none.
    Vec4f pixel(std::uint32_t x, std::uint32_t y) const;

    /// Converts to \a format, in place or into \a target: added alpha is opaque, grey is the Rec. 709 luminance of RGB.
    /// False, and nothing changes, for an invalid image or unknown format.
    bool reformat(std::uint32_t format, const FCPtr<AttachmentContainerPtr, Image> &target = nullptr);

    /// Reads by the file's extension: "vif" is the host's own format, everything else goes through OpenImageIO.
    /// False with one log line that names the file and the reason; the image keeps what it had.
    bool read(const std::string &path);
    /// Writes by the extension, whole or not at all. False with one log line that names the file and the reason.
    bool write(const std::string &path) const;

    /// Where read() found the picture; "" when it came from elsewhere. Not kept in files, which must stay movable.
    const std::string &source() const { return _source; }
    void setSource(const std::string &path) { _source = path; }

    /// The same for images with equal size, format and pixels.
    std::uint64_t contentHash() const;

    void copyUndeclared(const FieldContainer &original) override;

private:
    std::string _source;
};

using ImagePtr = Image::Ptr;

} // namespace osg
