// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/TextureBuilder.h"

#include "SceneGraph/EditCP.h"

#include <cmath>

namespace kximport {

namespace {

osg::TextureWrap wrapFor(int mode)
{
    switch (mode) {
    case aiTextureMapMode_Clamp:
    case aiTextureMapMode_Decal:
        return osg::TextureWrap::Clamp;
    case aiTextureMapMode_Mirror:
        return osg::TextureWrap::Mirror;
    default:
        return osg::TextureWrap::Repeat;
    }
}

bool isFinite(const aiUVTransform &t)
{
    return std::isfinite(t.mTranslation.x) && std::isfinite(t.mTranslation.y) && std::isfinite(t.mScaling.x) &&
           std::isfinite(t.mScaling.y) && std::isfinite(t.mRotation);
}

/// The parser states a glTF transform about the centre of the picture, with a translation that belongs to coordinates
/// from the upper left. This takes both back: offset is where (0, 0) from the lower left goes.
void applyGltfTransform(const aiUVTransform &t, TextureReference &reference)
{
    const float c = std::cos(t.mRotation);
    const float s = -std::sin(t.mRotation);
    const float sx = t.mScaling.x;
    const float sy = t.mScaling.y;
    const float offsetU = t.mTranslation.x - 0.5F * sx * (1.0F - c + s);
    const float offsetV = 1.0F - sy + 0.5F * sy * (s + c - 1.0F) - t.mTranslation.y;
    reference.scale = {sx, sy};
    reference.rotation = -t.mRotation;
    reference.offset = {offsetU + s * sy, 1.0F - offsetV - c * sy};
}

/// Scaling, then an anticlockwise turn about (0.5, 0.5), then the translation.
void applyTransform(const aiUVTransform &t, TextureReference &reference)
{
    const float c = std::cos(t.mRotation);
    const float s = std::sin(t.mRotation);
    reference.scale = {t.mScaling.x, t.mScaling.y};
    reference.rotation = t.mRotation;
    reference.offset = {t.mTranslation.x + 0.5F * (1.0F - c + s), t.mTranslation.y + 0.5F * (1.0F - c - s)};
}

bool isEqual(const osg::Texture &texture, const TextureReference &reference, const osg::ImagePtr &image, bool isSrgb)
{
    return texture.getImage() == image && texture.getOffset() == reference.offset &&
           texture.getScale() == reference.scale && texture.getRotation() == reference.rotation &&
           texture.getWrapU() == static_cast<std::uint32_t>(reference.wrapU) &&
           texture.getWrapV() == static_cast<std::uint32_t>(reference.wrapV) && texture.getIsSrgb() == isSrgb;
}

} // namespace

TextureBuilder::TextureBuilder(ImageStore &images, bool isGltf) : _images(images), _isGltf(isGltf) {}

std::optional<TextureReference> TextureBuilder::reference(const aiMaterial &material, const TextureSlot &slot) const
{
    const auto type = static_cast<unsigned>(slot.type);
    aiString file;
    if (material.Get(AI_MATKEY_TEXTURE(type, slot.index), file) != aiReturn_SUCCESS || file.length == 0)
        return std::nullopt;

    TextureReference reference;
    reference.file.assign(file.C_Str());
    int value = 0;
    if (material.Get(AI_MATKEY_UVWSRC(type, slot.index), value) == aiReturn_SUCCESS && value > 0)
        reference.uvSet = static_cast<unsigned>(value);
    if (material.Get(AI_MATKEY_MAPPINGMODE_U(type, slot.index), value) == aiReturn_SUCCESS)
        reference.wrapU = wrapFor(value);
    if (material.Get(AI_MATKEY_MAPPINGMODE_V(type, slot.index), value) == aiReturn_SUCCESS)
        reference.wrapV = wrapFor(value);
    if (material.Get(AI_MATKEY_TEXFLAGS(type, slot.index), value) == aiReturn_SUCCESS)
        reference.ignoresAlpha = (value & aiTextureFlags_IgnoreAlpha) != 0;
    aiUVTransform transform;
    if (material.Get(AI_MATKEY_UVTRANSFORM(type, slot.index), transform) == aiReturn_SUCCESS && isFinite(transform)) {
        if (_isGltf)
            applyGltfTransform(transform, reference);
        else
            applyTransform(transform, reference);
    }
    return reference;
}

osg::TexturePtr TextureBuilder::make(const aiMaterial &material, const TextureSlot &slot, Encoding encoding)
{
    return makeDerived(material, slot, encoding, "", {});
}

osg::TexturePtr TextureBuilder::makeDerived(const aiMaterial &material, const TextureSlot &slot, Encoding encoding,
                                            const std::string &what, const Derivation &derive)
{
    const auto found = reference(material, slot);
    if (!found)
        return nullptr;
    const osg::ImagePtr image = _images.find(found->file);
    if (!image)
        return nullptr;
    if (!derive)
        return build(*found, image, encoding);
    const osg::ImagePtr other =
        _images.derived(what + " " + std::to_string(image.getFieldContainerId()), [&] { return derive(*image); });
    return build(*found, other ? other : image, encoding);
}

osg::TexturePtr TextureBuilder::build(const TextureReference &reference, const osg::ImagePtr &image, Encoding encoding)
{
    const bool isSrgb = encoding == Encoding::Srgb;
    for (const auto &known : _textures)
        if (isEqual(*known, reference, image, isSrgb))
            return known;

    const osg::TexturePtr texture = osg::Texture::create();
    {
        const osg::CPEditor edit(texture);
        texture->setImage(image);
        texture->setOffset(reference.offset);
        texture->setScale(reference.scale);
        texture->setRotation(reference.rotation);
        texture->setWrapU(static_cast<std::uint32_t>(reference.wrapU));
        texture->setWrapV(static_cast<std::uint32_t>(reference.wrapV));
        texture->setIsSrgb(isSrgb);
    }
    _textures.emplace_back(texture);
    return texture;
}

} // namespace kximport
