// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/ImageStore.h"

#include "Import/Internal/ForeignText.h"
#include "Import/Internal/LogCapture.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/NameAttachment.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <utility>
#include <vector>

namespace kximport {

namespace {

/// The extension of an embedded file: by its first bytes, else by the parser's hint, which comes from the file.
std::string extensionFor(const aiTexture &texture)
{
    const std::string_view bytes(reinterpret_cast<const char *>(texture.pcData), texture.mWidth);
    if (bytes.substr(0, 4) == "\x89PNG")
        return "png";
    if (bytes.substr(0, 2) == "\xFF\xD8")
        return "jpg";
    const std::size_t length = strnlen(texture.achFormatHint, sizeof texture.achFormatHint);
    const std::string hint(texture.achFormatHint, length);
    const bool isHarmless = std::all_of(hint.begin(), hint.end(), [](unsigned char c) { return std::isalnum(c) != 0; });
    return hint.empty() || !isHarmless ? "png" : hint;
}

/// The parsers hand such pictures over with the top row first.
osg::FCRef<osg::Image> fromTexels(const aiTexture &texture)
{
    osg::FCRef<osg::Image> image(osg::Image::create());
    const std::size_t width = texture.mWidth;
    const std::size_t height = texture.mHeight;
    if (!image->set(texture.mWidth, texture.mHeight, 4, osg::PixelType::UInt8))
        return image;
    const osg::CPEditor edit(image, osg::Image::PixelsFieldMask);
    std::uint8_t *pixel = image->editPixels().data();
    for (std::size_t y = height; y-- > 0;)
        for (std::size_t x = 0; x < width; ++x, pixel += 4) {
            const aiTexel &texel = texture.pcData[y * width + x];
            const std::array<std::uint8_t, 4> rgba{texel.r, texel.g, texel.b, texel.a};
            std::copy(rgba.begin(), rgba.end(), pixel);
        }
    return image;
}

osg::FCRef<osg::Image> fromImageFile(const std::string &path)
{
    osg::FCRef<osg::Image> image(osg::Image::create());
    return image->read(path) ? image : nullptr;
}

/// The name that the file gives, or "embedded 0" where the parser made one up: "*0".
std::string nameFor(const aiTexture &texture, const std::string &reference)
{
    std::string name = texture.mFilename.length > 0 ? texture.mFilename.C_Str() : reference;
    std::replace(name.begin(), name.end(), '\\', '/');
    name = oneLine(fileName(name));
    if (!name.empty() && name.front() != '*')
        return name;
    return reference.front() == '*' ? "embedded " + oneLine(reference.substr(1)) : "embedded";
}

} // namespace

ImageStore::ImageStore(const aiScene &scene, const std::string &modelPath, std::string workFolder, ImportNotes &notes)
    : _scene(scene), _companions(folderOf(modelPath)), _workFolder(std::move(workFolder)), _notes(notes)
{}

osg::ImagePtr ImageStore::find(const std::string &reference)
{
    const auto known = _images.find(reference);
    if (known != _images.end())
        return known->second;

    const aiTexture *embedded = _scene.GetEmbeddedTexture(reference.c_str());
    const osg::FCRef<osg::Image> image = embedded ? fromEmbedded(*embedded, reference) : fromFile(reference);
    _images.emplace(reference, image);
    return image;
}

osg::ImagePtr ImageStore::keepDerived(const std::string &key, const osg::ImagePtr &image)
{
    _derived.emplace(key, image);
    return image;
}

osg::FCRef<osg::Image> ImageStore::fromFile(const std::string &reference)
{
    const auto path = _companions.find(reference);
    if (!path) {
        _notes.add("the texture '" + reference + "' is missing");
        return nullptr;
    }
    std::error_code error;
    const auto canonical = std::filesystem::canonical(*path, error);
    const std::string place = error ? *path : canonical.string();
    const auto known = _files.find(place);
    if (known != _files.end())
        return known->second;

    LogCapture log;
    osg::FCRef<osg::Image> image = fromImageFile(*path);
    if (image)
        osg::setName(image, toUtf8(fileName(*path)));
    else
        _notes.add("the texture '" + reference + "' cannot be read: " + log.takeReason(*path));
    _files.emplace(place, image);
    return image;
}

osg::FCRef<osg::Image> ImageStore::fromEmbedded(const aiTexture &texture, const std::string &reference)
{
    LogCapture log; // what it says names a file that nobody knows
    osg::FCRef<osg::Image> image = texture.mHeight == 0 ? decode(texture) : fromTexels(texture);
    if (!image || image->isEmpty()) {
        _notes.add("the embedded texture '" + reference + "' cannot be read");
        return nullptr;
    }
    osg::setName(image, nameFor(texture, reference));
    return image;
}

osg::FCRef<osg::Image> ImageStore::decode(const aiTexture &texture) const
{
    const std::string path = _workFolder + "/embedded." + extensionFor(texture);
    {
        std::ofstream stream(path, std::ios::binary | std::ios::trunc);
        stream.write(reinterpret_cast<const char *>(texture.pcData), static_cast<std::streamsize>(texture.mWidth));
        if (!stream)
            return nullptr;
    }
    osg::FCRef<osg::Image> image = fromImageFile(path);
    if (image)
        image->setSource("");
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    return image;
}

} // namespace kximport
