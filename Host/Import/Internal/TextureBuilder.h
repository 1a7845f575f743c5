// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Import/Internal/ImageStore.h"
#include "SceneGraph/Texture.h"

#include <assimp/material.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kximport {

/// One texture that a parsed material names.
struct TextureSlot
{
    aiTextureType type = aiTextureType_NONE;
    unsigned index = 0;
};

/// What a slot of the parsed material says.
struct TextureReference
{
    std::string file;
    unsigned uvSet = 0;
    osg::Vec2f offset{};
    osg::Vec2f scale{1.0F, 1.0F};
    float rotation = 0.0F;
    osg::TextureWrap wrapU = osg::TextureWrap::Repeat;
    osg::TextureWrap wrapV = osg::TextureWrap::Repeat;
    bool ignoresAlpha = false;
};

/// Makes textures of what parsed materials say; the same texture for the same words.
class TextureBuilder
{
public:
    enum class Encoding { Srgb, Linear };
    /// Makes another picture of one; null: the texture takes the picture as it is.
    using Derivation = std::function<osg::ImagePtr(const osg::Image &)>;

    /// \a isGltf tells how the transforms are to be read. The store lives longer.
    TextureBuilder(ImageStore &images, bool isGltf);

    /// What the slot says; nothing where the material has no such texture.
    std::optional<TextureReference> reference(const aiMaterial &material, const TextureSlot &slot) const;

    /// Null where the slot is empty or its picture cannot be had.
    osg::TexturePtr make(const aiMaterial &material, const TextureSlot &slot, Encoding encoding);
    /// The same with a picture derived from the slot's one; \a what names the derivation.
    osg::TexturePtr makeDerived(const aiMaterial &material, const TextureSlot &slot, Encoding encoding,
                                const std::string &what, const Derivation &derive);

private:
    osg::TexturePtr build(const TextureReference &reference, const osg::ImagePtr &image, Encoding encoding);

    ImageStore &_images;
    bool _isGltf;
    std::vector<osg::FCRef<osg::Texture>> _textures;
};

} // namespace kximport
