// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/ForeignImage.h"

#include "SceneGraph/Internal/ImageCodecs.h"
#include "SceneGraph/Internal/RegularFile.h"

#include <OpenImageIO/filesystem.h>
#include <OpenImageIO/imageio.h>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace osg {

namespace {

// Plain pictures compress well, but not without end: a claim beyond this is a trap.
constexpr std::uint64_t UnsuspiciousBytes = std::uint64_t{256} << 20;
constexpr std::uint64_t MaxForeignRatio = 2048;

/// Formats that tell themselves apart by content, for files with a wrong extension or none.
constexpr std::array<const char *, 8> ContentFormats{"png", "jpeg", "openexr", "tiff", "hdr", "webp", "bmp", "gif"};

/// Gives the decoders the file by descriptor, because their own opening gives some characters of a name a meaning.
class FileProxy final : public OIIO::Filesystem::IOProxy
{
public:
    explicit FileProxy(const RegularFile &file) : IOProxy("", Read), _file(file) {}

    const char *proxytype() const override { return "kx"; }
    std::size_t read(void *target, std::size_t size) override
    {
        const std::size_t count = pread(target, size, m_pos);
        m_pos += static_cast<std::int64_t>(count);
        return count;
    }
    std::size_t pread(void *target, std::size_t size, std::int64_t offset) override
    {
        if (offset < 0)
            return 0;
        return _file.readAt(static_cast<std::uint64_t>(offset), {static_cast<std::byte *>(target), size});
    }
    std::size_t size() const override { return static_cast<std::size_t>(_file.size()); }

private:
    const RegularFile &_file;
};

/// A file in the form that a decoder takes it in.
class Source
{
public:
    explicit Source(const RegularFile &file) : _file(file), _proxy(file) {}

    /// From the start. The JPEG decoder takes nothing but files that it opens itself, and memory.
    OIIO::Filesystem::IOProxy &rewoundFor(const OIIO::ImageInput &input)
    {
        if (std::string_view(input.format_name()) == "jpeg") {
            if (!_memory)
                readAll();
            _memory->seek(0);
            return *_memory;
        }
        _proxy.seek(0);
        return _proxy;
    }

private:
    void readAll()
    {
        _content.resize(static_cast<std::size_t>(_file.size()));
        _content.resize(_file.readAt(0, std::as_writable_bytes(std::span(_content))));
        _memory.emplace(_content.data(), _content.size());
    }

    const RegularFile &_file;
    FileProxy _proxy;
    std::vector<unsigned char> _content;
    std::optional<OIIO::Filesystem::IOMemReader> _memory;
};

/// Decoders speak several lines; the first says it.
std::string firstLine(const std::string &text)
{
    const std::string line = text.substr(0, text.find('\n'));
    return line.empty() ? "The picture cannot be decoded" : line;
}

bool isPictureExtension(const std::string &extension)
{
    const bool isPlain = !extension.empty() && std::all_of(extension.begin(), extension.end(),
                                                           [](unsigned char c) { return std::isalnum(c) != 0; });
    // These write to a terminal, or nothing at all.
    return isPlain && extension != "null" && extension != "nul" && extension != "term";
}

void limitDecoders()
{
    static std::once_flag isDone;
    std::call_once(isDone, [] {
        OIIO::attribute("limits:imagesize_MB", static_cast<int>(MaxPictureBytes >> 20));
        OIIO::attribute("limits:channels", 1024);
    });
}

/// True for a PNG file that ends within a chunk: its decoder complains about that on standard error, past every log.
bool isCutOffPng(const RegularFile &file)
{
    static constexpr std::string_view Signature("\x89PNG\r\n\x1a\n", 8);
    static constexpr int MaxChunks = 100'000;
    const auto read = [&file](std::uint64_t offset) {
        std::string bytes(8, '\0');
        bytes.resize(file.readAt(offset, std::as_writable_bytes(std::span(bytes))));
        return bytes;
    };
    if (read(0) != Signature)
        return false;
    std::uint64_t offset = Signature.size();
    for (int i = 0; i < MaxChunks; ++i) {
        const std::string header = offset < file.size() ? read(offset) : std::string();
        if (header.size() < 8)
            return true;
        std::uint64_t length = 0;
        for (std::size_t byte = 0; byte < 4; ++byte)
            length = length << 8 | static_cast<unsigned char>(header[byte]);
        offset += length + 12;
        if (header.substr(4) == "IEND")
            return offset > file.size();
    }
    return false;
}

using Input = std::unique_ptr<OIIO::ImageInput>;

/// Opens the file with one decoder; \a reason is set where it refuses.
Input openWith(Input input, const std::string &path, Source &source, std::string &reason)
{
    OIIO::ImageSpec found;
    OIIO::ImageSpec config;
    config.attribute("oiio:UnassociatedAlpha", 1);
    const bool takesProxy = input->supports("ioproxy") != 0;
    if (takesProxy)
        input->set_ioproxy(&source.rewoundFor(*input));
    if (input->open(takesProxy ? std::string("picture") : path, found, config))
        return input;
    reason = firstLine(input->geterror());
    return nullptr;
}

Input openInput(const std::string &path, const std::string &extension, Source &source, std::string &reason)
{
    if (isPictureExtension(extension))
        if (Input input = OIIO::ImageInput::create(extension))
            if (Input opened = openWith(std::move(input), path, source, reason))
                return opened;
    for (const char *format : ContentFormats)
        if (Input input = OIIO::ImageInput::create(format)) {
            std::string ignored;
            if (Input opened = openWith(std::move(input), path, source, reason.empty() ? reason : ignored))
                return opened;
        }
    if (reason.empty())
        reason = "The format is not known";
    OIIO::geterror(); // what the attempts left behind belongs to nobody else
    return nullptr;
}

PixelType pixelTypeFor(const OIIO::TypeDesc &format)
{
    if (format.basetype == OIIO::TypeDesc::UINT8)
        return PixelType::UInt8;
    return format.basetype == OIIO::TypeDesc::HALF ? PixelType::Half : PixelType::Float;
}

OIIO::TypeDesc formatFor(PixelType type)
{
    switch (type) {
    case PixelType::UInt8:
        return OIIO::TypeDesc::UINT8;
    case PixelType::Half:
        return OIIO::TypeDesc::HALF;
    case PixelType::Float:
        break;
    }
    return OIIO::TypeDesc::FLOAT;
}

/// Depth and other extra channels are left behind.
std::uint32_t channelsToRead(const OIIO::ImageSpec &spec)
{
    const auto count = static_cast<std::uint32_t>(std::max(spec.nchannels, 0));
    if (count <= 3)
        return count;
    return spec.alpha_channel == 3 || (count == 4 && spec.z_channel < 0) ? 4 : 3;
}

Result<Pixmap> readPixels(OIIO::ImageInput &input, std::uint64_t fileSize)
{
    const OIIO::ImageSpec &spec = input.spec();
    if (spec.width <= 0 || spec.height <= 0 || spec.depth > 1 || spec.deep)
        return Failure{"Not a flat picture"};
    Pixmap picture{static_cast<std::uint32_t>(spec.width),
                   static_cast<std::uint32_t>(spec.height),
                   channelsToRead(spec),
                   pixelTypeFor(spec.format),
                   {}};
    const auto size = pictureBytes(picture.width, picture.height, picture.channels, picture.type);
    if (!size || *size > MaxPictureBytes || *size > UnsuspiciousBytes + MaxForeignRatio * fileSize)
        return Failure{"The picture claims an impossible size"};

    picture.pixels.resize(static_cast<std::size_t>(*size));
    const std::size_t row = picture.pixels.size() / picture.height;
    const bool isRead = input.read_image(0, 0, 0, static_cast<int>(picture.channels), formatFor(picture.type),
                                         picture.pixels.data() + row * (picture.height - 1), OIIO::AutoStride,
                                         -static_cast<OIIO::stride_t>(row));
    if (!isRead)
        return Failure{firstLine(input.geterror())};
    return picture;
}

/// What a format that knows neither half nor float keeps of them best.
OIIO::TypeDesc formatToWrite(PixelType type, const std::string &encoder)
{
    return type != PixelType::UInt8 && encoder == "png" ? OIIO::TypeDesc::UINT16 : formatFor(type);
}

bool writePixels(OIIO::ImageOutput &output, const std::string &name, const PixmapView &picture, std::string &reason)
{
    OIIO::ImageSpec spec(static_cast<int>(picture.width), static_cast<int>(picture.height),
                         static_cast<int>(picture.channels), formatToWrite(picture.type, output.format_name()));
    spec.attribute("oiio:UnassociatedAlpha", 1);
    spec.attribute("CompressionQuality", 95);
    const std::size_t row = picture.pixels.size() / picture.height;
    const bool isWritten =
        output.open(name, spec) &&
        output.write_image(formatFor(picture.type), picture.pixels.data() + row * (picture.height - 1),
                           OIIO::AutoStride, -static_cast<OIIO::stride_t>(row)) &&
        output.close();
    if (!isWritten)
        reason = firstLine(output.geterror());
    return isWritten;
}

/// For encoders that write files only: a nameless place in the system's folder for temporary files.
std::vector<unsigned char> encodeThroughFile(OIIO::ImageOutput &output, const PixmapView &picture, std::string &reason)
{
    std::string name = (std::filesystem::temp_directory_path() / "kx-picture-XXXXXX").string();
    const int descriptor = ::mkstemp(name.data());
    if (descriptor < 0) {
        reason = "No temporary file can be made";
        return {};
    }
    ::close(descriptor);
    std::vector<unsigned char> bytes;
    if (writePixels(output, name, picture, reason))
        if (const Result<RegularFile> file = RegularFile::open(name)) {
            bytes.resize(static_cast<std::size_t>(file.value().size()));
            bytes.resize(file.value().readAt(0, std::as_writable_bytes(std::span(bytes))));
        }
    ::unlink(name.c_str());
    return bytes;
}

/// Empty where the encoder does not take this number of channels; \a reason says why.
std::vector<unsigned char> encode(const std::string &extension, const PixmapView &picture, std::string &reason)
{
    const std::unique_ptr<OIIO::ImageOutput> output = OIIO::ImageOutput::create("picture." + extension);
    if (!output) {
        reason = firstLine(OIIO::geterror());
        return {};
    }
    if (output->supports("ioproxy") == 0)
        return encodeThroughFile(*output, picture, reason);
    std::vector<unsigned char> bytes;
    OIIO::Filesystem::IOVecOutput proxy(bytes);
    output->set_ioproxy(&proxy);
    if (!writePixels(*output, "picture." + extension, picture, reason))
        bytes.clear();
    return bytes;
}

/// The channels a format may have, best first: alpha is given up before colour, and grey may have to become RGB.
std::vector<std::uint32_t> channelChoices(std::uint32_t channels)
{
    switch (channels) {
    case 1:
        return {1, 3, 4};
    case 2:
        return {2, 4, 1, 3};
    case 3:
        return {3, 4};
    default:
        return {4, 3};
    }
}

Result<std::vector<unsigned char>> encodeWithSomeChannels(const std::string &extension, const PixmapView &picture)
{
    std::string reason;
    for (const std::uint32_t channels : channelChoices(picture.channels)) {
        std::string refusal;
        std::vector<unsigned char> bytes;
        if (channels == picture.channels) {
            bytes = encode(extension, picture, refusal);
        } else {
            const Pixmap changed = withChannels(picture, channels);
            bytes = encode(extension, {changed.width, changed.height, changed.channels, changed.type, changed.pixels},
                           refusal);
        }
        if (!bytes.empty())
            return bytes;
        if (reason.empty())
            reason = refusal;
    }
    return Failure{reason};
}

} // namespace

Result<Pixmap> readForeignImage(const std::string &path, const std::string &extension)
{
    const Result<RegularFile> file = RegularFile::open(path);
    if (!file)
        return Failure{file.reason()};
    if (isCutOffPng(file.value()))
        return Failure{"The picture is cut off"};
    limitDecoders();
    // The decoders' libraries throw where they meet what nobody foresaw.
    try {
        Source source(file.value());
        std::string reason;
        const Input input = openInput(path, extension, source, reason);
        if (!input)
            return Failure{reason};
        return readPixels(*input, file.value().size());
    } catch (const std::exception &error) {
        return Failure{firstLine(error.what())};
    }
}

Result<std::vector<unsigned char>> encodeForeignImage(const std::string &extension, const PixmapView &picture)
{
    if (!isPictureExtension(extension))
        return Failure{"The format is not known"};
    if (picture.pixels.empty())
        return Failure{"The picture is empty"};
    try {
        return encodeWithSomeChannels(extension, picture);
    } catch (const std::exception &error) {
        return Failure{firstLine(error.what())};
    }
}

} // namespace osg

extern "C" [[gnu::visibility("default")]] const osg::ImageCodecs *kxImageCodecs()
{
    static constexpr osg::ImageCodecs codecs{&osg::readForeignImage, &osg::encodeForeignImage};
    return &codecs;
}
