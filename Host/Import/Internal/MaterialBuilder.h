// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Import/Internal/ImportNotes.h"
#include "Import/Internal/MaterialValues.h"
#include "Import/Internal/TextureBuilder.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <assimp/material.h>

#include <initializer_list>
#include <optional>
#include <string>

namespace kximport {

/// Turns parsed materials into BRDF materials.
///
/// Materials that state metalness and roughness, or specular colour and glossiness, are taken over as they are; the
/// others as what they are, Phong: their exponent becomes a roughness, their opacity transparency, and a black one with
/// a strong highlight a metal. Colours are taken as linear, since that is what exporters write today.
class MaterialBuilder
{
public:
    /// What both refer to lives longer than the builder.
    MaterialBuilder(TextureBuilder &textures, ImageStore &images, ImportNotes &notes, bool isGltf);

    /// A new material, which the caller owns, with this name.
    osg::FCRef<osg::UBRDFMaterial> build(const aiMaterial &parsed, const std::string &name);

    /// The set of texture coordinates that its textures use; the base colour decides where they differ.
    unsigned uvSet(const aiMaterial &parsed) const;

private:
    struct Work
    {
        MaterialValues values;
        osg::UBRDFMaterial &material;
        std::string name;
    };

    void fill(const Work &work);
    void applyPhong(const Work &work);
    void applyPhysical(const Work &work);
    void applyGlossiness(const Work &work);
    void applyLayers(const Work &work);
    void applyTransmission(const Work &work);
    void applyRelief(const Work &work);
    void applyIncandescence(const Work &work);
    void applyUnlit(const Work &work);
    void applyGltfOpacity(const Work &work);
    void applyOpacityTexture(const Work &work);
    void noteLeftOut(const Work &work);

    osg::TexturePtr texture(const Work &work, std::initializer_list<aiTextureType> types,
                            TextureBuilder::Encoding encoding);
    std::optional<TextureSlot> firstSlot(const aiMaterial &parsed, std::initializer_list<aiTextureType> types) const;

    TextureBuilder &_textures;
    ImageStore &_images;
    ImportNotes &_notes;
    bool _isGltf;
};

} // namespace kximport
