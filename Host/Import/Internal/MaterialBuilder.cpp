// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/MaterialBuilder.h"

#include "Import/Internal/PictureOperations.h"
#include "Import/Internal/SurfaceFormulas.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/NameAttachment.h"

#include <assimp/GltfMaterial.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace kximport {

namespace {

using Encoding = TextureBuilder::Encoding;
using osg::Color4f;

// What 3ds Max's physical materials are called in an FBX file; the parser hands them through.
constexpr const char *MaxMetalness = "$raw.3dsMax|main|metalness";
constexpr const char *MaxRoughness = "$raw.3dsMax|main|roughness";
constexpr const char *MaxGlossiness = "$raw.3dsMax|main|glossiness";
constexpr const char *MaxSpecular = "$raw.3dsMax|main|Specular";
constexpr const char *MaxBaseColor = "$raw.3dsMax|main|basecolor";
constexpr const char *MaxEmission = "$raw.3dsMax|main|emit_color";
constexpr const char *MaxBump = "$raw.3dsMax|main|bump_map_amt";

// Below the first a diffuse colour counts as black, above the second a highlight as a metal's.
constexpr float BlackDiffuse = 0.03F;
constexpr float MetallicSpecular = 0.3F;

float unit(float value)
{
    return std::clamp(value, 0.0F, 1.0F);
}

Color4f unit(const Color4f &c)
{
    return {unit(c[0]), unit(c[1]), unit(c[2]), unit(c[3])};
}

float strongest(const Color4f &c)
{
    return std::max({c[0], c[1], c[2]});
}

Color4f opaque(Color4f c)
{
    c[3] = 1.0F;
    return c;
}

bool hasGlossiness(const MaterialValues &values)
{
    return values.has(AI_MATKEY_GLOSSINESS_FACTOR) || values.has(MaxGlossiness, 0, 0);
}

bool isPhysical(const MaterialValues &values)
{
    return values.has(AI_MATKEY_METALLIC_FACTOR) || values.has(MaxMetalness, 0, 0) || hasGlossiness(values) ||
           values.integer(AI_MATKEY_SHADING_MODEL) == aiShadingMode_PBR_BRDF;
}

bool isUnlit(const MaterialValues &values)
{
    return values.integer(AI_MATKEY_SHADING_MODEL) == aiShadingMode_Unlit;
}

Color4f baseColor(const MaterialValues &values)
{
    if (const auto color = values.color(AI_MATKEY_BASE_COLOR))
        return *color;
    if (const auto color = values.color(MaxBaseColor, 0, 0))
        return *color;
    return values.color(AI_MATKEY_COLOR_DIFFUSE).value_or(Color4f{0.8F, 0.8F, 0.8F, 1.0F});
}

} // namespace

MaterialBuilder::MaterialBuilder(TextureBuilder &textures, ImageStore &images, ImportNotes &notes, bool isGltf)
    : _textures(textures), _images(images), _notes(notes), _isGltf(isGltf)
{}

osg::FCRef<osg::UBRDFMaterial> MaterialBuilder::build(const aiMaterial &parsed, const std::string &name)
{
    osg::FCRef<osg::UBRDFMaterial> material(osg::UBRDFMaterial::create());
    {
        const osg::CPEditor edit(material.get());
        fill({MaterialValues(parsed), *material, name});
    }
    osg::setName(material.get(), name);
    return material;
}

unsigned MaterialBuilder::uvSet(const aiMaterial &parsed) const
{
    const auto slot =
        firstSlot(parsed, {aiTextureType_BASE_COLOR, aiTextureType_DIFFUSE, aiTextureType_NORMALS,
                           aiTextureType_DIFFUSE_ROUGHNESS, aiTextureType_METALNESS, aiTextureType_EMISSIVE,
                           aiTextureType_TRANSMISSION, aiTextureType_OPACITY, aiTextureType_HEIGHT});
    const auto reference = slot ? _textures.reference(parsed, *slot) : std::nullopt;
    return reference ? reference->uvSet : 0;
}

void MaterialBuilder::fill(const Work &work)
{
    const bool isPhong = !isPhysical(work.values) && !(_isGltf && isUnlit(work.values));
    work.material.setDiffuseTexture(texture(work, {aiTextureType_BASE_COLOR, aiTextureType_DIFFUSE}, Encoding::Srgb));
    if (isPhong)
        applyPhong(work);
    else
        applyPhysical(work);
    if (hasGlossiness(work.values))
        applyGlossiness(work);
    applyLayers(work);
    applyTransmission(work);
    applyRelief(work);
    applyIncandescence(work);
    if (_isGltf && isUnlit(work.values))
        applyUnlit(work);
    if (const auto isTwoSided = work.values.integer(AI_MATKEY_TWOSIDED))
        work.material.setIsTwoSided(*isTwoSided != 0);
    applyOpacityTexture(work);
    if (_isGltf)
        applyGltfOpacity(work);
    noteLeftOut(work);
}

void MaterialBuilder::applyPhong(const Work &work)
{
    const MaterialValues &values = work.values;
    osg::UBRDFMaterial &material = work.material;
    Color4f diffuse = opaque(unit(values.color(AI_MATKEY_COLOR_DIFFUSE).value_or(Color4f{0.8F, 0.8F, 0.8F, 1.0F})));
    Color4f specular = opaque(unit(values.color(AI_MATKEY_COLOR_SPECULAR).value_or(Color4f{})));
    const float roughness = roughnessFromExponent(values.number(AI_MATKEY_SHININESS).value_or(0.0F));

    const bool isMetal =
        strongest(diffuse) < BlackDiffuse && strongest(specular) > MetallicSpecular && !material.getDiffuseTexture();
    if (isMetal)
        std::swap(diffuse, specular);
    material.setDiffuseColor(diffuse);
    material.setSpecularColor(isMetal ? Color4f{1.0F, 1.0F, 1.0F, 1.0F} : specular);
    // A few writers of this format state metalness and roughness beside the exponent.
    material.setMetalness(unit(values.number(AI_MATKEY_METALLIC_FACTOR).value_or(isMetal ? 1.0F : 0.0F)));
    material.setRoughness(roughness);

    const float opacity = unit(values.number(AI_MATKEY_OPACITY).value_or(1.0F));
    material.setTransparency(1.0F - opacity);
    if (opacity < 1.0F) {
        const Color4f filter = values.color(AI_MATKEY_COLOR_TRANSPARENT).value_or(Color4f{});
        if (strongest(filter) > 0.0F)
            material.setTransmissionColor(opaque(unit(filter)));
    }
    // 1 is what stands there when nobody chose anything, and would take every reflection away.
    const float index = values.number(AI_MATKEY_REFRACTI).value_or(1.0F);
    if (index > 1.0F)
        material.setIndexOfRefraction(index);
}

void MaterialBuilder::applyPhysical(const Work &work)
{
    const MaterialValues &values = work.values;
    osg::UBRDFMaterial &material = work.material;
    material.setDiffuseColor(unit(baseColor(values)));

    // Of FBX the parser derives a roughness of its own from the exponent; the file's word goes first.
    const auto metalness = values.number(MaxMetalness, 0, 0);
    const auto roughness = values.number(MaxRoughness, 0, 0);
    material.setMetalness(unit(metalness ? *metalness : values.number(AI_MATKEY_METALLIC_FACTOR).value_or(0.0F)));
    material.setRoughness(unit(roughness ? *roughness : values.number(AI_MATKEY_ROUGHNESS_FACTOR).value_or(0.5F)));
    material.setRoughnessTexture(texture(work, {aiTextureType_DIFFUSE_ROUGHNESS}, Encoding::Linear));
    material.setMetalnessTexture(texture(work, {aiTextureType_METALNESS}, Encoding::Linear));

    const float index = values.number(AI_MATKEY_REFRACTI).value_or(1.5F);
    if (index >= 1.0F)
        material.setIndexOfRefraction(index);
}

void MaterialBuilder::applyGlossiness(const Work &work)
{
    const MaterialValues &values = work.values;
    osg::UBRDFMaterial &material = work.material;
    const auto ownSpecular = values.color(MaxSpecular, 0, 0);
    const Color4f specular =
        unit(ownSpecular ? *ownSpecular : values.color(AI_MATKEY_COLOR_SPECULAR).value_or(Color4f{}));
    const auto ownGlossiness = values.number(MaxGlossiness, 0, 0);
    const float glossiness =
        unit(ownGlossiness ? *ownGlossiness : values.number(AI_MATKEY_GLOSSINESS_FACTOR).value_or(0.0F));
    const auto diffuse = values.color(AI_MATKEY_COLOR_DIFFUSE);

    const MetalShare share = metalShare(_isGltf && diffuse ? unit(*diffuse) : material.getDiffuseColor(), specular);
    material.setDiffuseColor(share.baseColor);
    material.setMetalness(share.metalness);
    material.setRoughness(1.0F - glossiness);
    material.setMetalnessTexture(nullptr);
    material.setRoughnessTexture(nullptr);

    // The picture's alpha scales the glossiness; with a factor of 1, its inverse is the roughness.
    const TextureSlot slot{aiTextureType_SPECULAR, 0};
    const auto reference = _textures.reference(values.material(), slot);
    const osg::ImagePtr picture = reference && glossiness >= 1.0F ? _images.find(reference->file) : nullptr;
    if (!picture || picture->getChannels() != 4 || picture->pixelType() != osg::PixelType::UInt8)
        return;
    const auto inverse = [](const osg::Image &image) { return invertedToGreen(image, 3); };
    material.setRoughness(1.0F);
    material.setRoughnessTexture(
        _textures.makeDerived(values.material(), slot, Encoding::Linear, "roughness of", inverse));
}

void MaterialBuilder::applyLayers(const Work &work)
{
    const MaterialValues &values = work.values;
    if (const auto coat = values.number(AI_MATKEY_CLEARCOAT_FACTOR))
        work.material.setClearCoat(unit(*coat));
    if (const auto roughness = values.number(AI_MATKEY_CLEARCOAT_ROUGHNESS_FACTOR))
        work.material.setClearCoatRoughness(unit(*roughness));
    if (const auto sheen = values.color(AI_MATKEY_SHEEN_COLOR_FACTOR))
        work.material.setSheen(unit(strongest(*sheen)));
    if (const auto anisotropy = values.number(AI_MATKEY_ANISOTROPY_FACTOR))
        work.material.setAnisotropy(std::clamp(*anisotropy, -1.0F, 1.0F));
}

void MaterialBuilder::applyTransmission(const Work &work)
{
    const MaterialValues &values = work.values;
    const float transmission = unit(values.number(AI_MATKEY_TRANSMISSION_FACTOR).value_or(0.0F));
    if (transmission <= 0.0F)
        return;
    work.material.setTransparency(transmission);
    work.material.setTransparencyTexture(texture(work, {aiTextureType_TRANSMISSION}, Encoding::Linear));

    Color4f tint = opaque(work.material.getDiffuseColor());
    const float thickness = values.number(AI_MATKEY_VOLUME_THICKNESS_FACTOR).value_or(0.0F);
    const float distance = values.number(AI_MATKEY_VOLUME_ATTENUATION_DISTANCE).value_or(0.0F);
    const auto attenuation = values.color(AI_MATKEY_VOLUME_ATTENUATION_COLOR);
    if (attenuation && thickness > 0.0F && distance > 0.0F)
        for (std::size_t i = 0; i < 3; ++i)
            tint[i] *= std::pow(unit((*attenuation)[i]), thickness / distance);
    work.material.setTransmissionColor(tint);
}

void MaterialBuilder::applyRelief(const Work &work)
{
    const MaterialValues &values = work.values;
    osg::UBRDFMaterial &material = work.material;
    material.setNormalTexture(texture(work, {aiTextureType_NORMALS, aiTextureType_NORMAL_CAMERA}, Encoding::Linear));
    material.setBumpTexture(texture(work, {aiTextureType_HEIGHT, aiTextureType_DISPLACEMENT}, Encoding::Linear));
    const auto strength = values.number(AI_MATKEY_GLTF_TEXTURE_SCALE(aiTextureType_NORMALS, 0));
    const auto ownStrength = values.number(MaxBump, 0, 0);
    const auto scaling = values.number(AI_MATKEY_BUMPSCALING);
    if (strength || ownStrength || scaling)
        material.setBumpStrength(strength ? *strength : ownStrength ? *ownStrength : *scaling);
}

void MaterialBuilder::applyIncandescence(const Work &work)
{
    const MaterialValues &values = work.values;
    const auto ownColor = values.color(MaxEmission, 0, 0);
    Color4f color = ownColor ? *ownColor : values.color(AI_MATKEY_COLOR_EMISSIVE).value_or(Color4f{});
    const osg::TexturePtr map = texture(work, {aiTextureType_EMISSION_COLOR, aiTextureType_EMISSIVE}, Encoding::Srgb);
    // Formats other than glTF name a picture without turning the colour up that it multiplies.
    if (map && !_isGltf && strongest(color) <= 0.0F)
        color = {1.0F, 1.0F, 1.0F, 1.0F};
    const float brightness = strongest(color);
    if (brightness <= 0.0F)
        return;
    float intensity = values.number(AI_MATKEY_EMISSIVE_INTENSITY).value_or(1.0F);
    if (brightness > 1.0F) {
        intensity *= brightness;
        for (std::size_t i = 0; i < 3; ++i)
            color[i] /= brightness;
    }
    work.material.setIncandescenceColor(
        {std::max(color[0], 0.0F), std::max(color[1], 0.0F), std::max(color[2], 0.0F), std::max(intensity, 0.0F)});
    work.material.setIncandescenceTexture(map);
}

/// A surface that shows its colour whatever light falls on it is one that shines in this colour, and reflects nothing.
void MaterialBuilder::applyUnlit(const Work &work)
{
    osg::UBRDFMaterial &material = work.material;
    const Color4f color = material.getDiffuseColor();
    material.setIncandescenceColor({color[0], color[1], color[2], 1.0F});
    material.setIncandescenceTexture(material.getDiffuseTexture());
    material.setDiffuseColor({0.0F, 0.0F, 0.0F, color[3]});
    material.setSpecularColor({0.0F, 0.0F, 0.0F, 1.0F});
    material.setMetalness(0.0F);
}

void MaterialBuilder::applyGltfOpacity(const Work &work)
{
    const std::string mode = work.values.text(AI_MATKEY_GLTF_ALPHAMODE);
    if (mode == "BLEND")
        return;
    const bool isMask = mode == "MASK";
    const float alpha = work.material.getDiffuseColor()[3];
    const float cutoff = work.values.number(AI_MATKEY_GLTF_ALPHACUTOFF).value_or(0.5F);
    const auto slot = firstSlot(work.values.material(), {aiTextureType_BASE_COLOR, aiTextureType_DIFFUSE});
    if (!slot || !work.material.getDiffuseTexture()) {
        Color4f color = opaque(work.material.getDiffuseColor());
        color[3] = isMask && alpha < cutoff ? 0.0F : 1.0F;
        work.material.setDiffuseColor(color);
        return;
    }
    const float threshold = alpha > 0.0F ? cutoff / alpha : 2.0F;
    const auto derive = [&](const osg::Image &image) {
        return isMask ? withHardAlpha(image, threshold) : withoutAlpha(image);
    };
    const std::string what = isMask ? "cut at " + std::to_string(threshold) : "without alpha";
    work.material.setDiffuseTexture(_textures.makeDerived(work.values.material(), *slot, Encoding::Srgb, what, derive));
    work.material.setDiffuseColor(opaque(work.material.getDiffuseColor()));
}

void MaterialBuilder::applyOpacityTexture(const Work &work)
{
    const aiMaterial &parsed = work.values.material();
    const auto opacity = _textures.reference(parsed, {aiTextureType_OPACITY, 0});
    const auto colorSlot = firstSlot(parsed, {aiTextureType_BASE_COLOR, aiTextureType_DIFFUSE});
    const auto colors = colorSlot ? _textures.reference(parsed, *colorSlot) : std::nullopt;
    // Naming the colour picture once more means its own alpha, which counts anyway.
    if (!opacity || (colors && work.material.getDiffuseTexture() && colors->file == opacity->file))
        return;
    const osg::ImagePtr opacityImage = _images.find(opacity->file);
    if (!opacityImage)
        return;

    const bool hasColors = colorSlot && work.material.getDiffuseTexture();
    const auto derive = [&](const osg::Image &) {
        return withOpacity(hasColors ? work.material.getDiffuseTexture()->getImage() : osg::ImagePtr(), *opacityImage);
    };
    const std::string what = "opacity " + std::to_string(opacityImage.getFieldContainerId()) + " on";
    const TextureSlot opacitySlot{aiTextureType_OPACITY, 0};
    const osg::TexturePtr combined =
        _textures.makeDerived(parsed, hasColors ? *colorSlot : opacitySlot, Encoding::Srgb, what, derive);
    if (combined && combined->getImage() != opacityImage)
        work.material.setDiffuseTexture(combined);
}

void MaterialBuilder::noteLeftOut(const Work &work)
{
    struct Kind
    {
        aiTextureType type;
        const char *name;
    };
    static constexpr std::array<Kind, 5> kinds{{{aiTextureType_SHININESS, "shininess"},
                                                {aiTextureType_REFLECTION, "reflection"},
                                                {aiTextureType_SHEEN, "sheen"},
                                                {aiTextureType_CLEARCOAT, "clear coat"},
                                                {aiTextureType_SPECULAR, "specular"}}};
    for (const Kind &kind : kinds) {
        const bool isUsed = kind.type == aiTextureType_SPECULAR && work.material.getRoughnessTexture();
        if (!isUsed && work.values.material().GetTextureCount(kind.type) > 0)
            _notes.add("the " + std::string(kind.name) + " texture of material '" + work.name + "' is left out");
    }
}

osg::TexturePtr MaterialBuilder::texture(const Work &work, std::initializer_list<aiTextureType> types,
                                         TextureBuilder::Encoding encoding)
{
    const auto slot = firstSlot(work.values.material(), types);
    if (!slot)
        return nullptr;
    const auto reference = _textures.reference(work.values.material(), *slot);
    if (encoding == Encoding::Srgb && reference && reference->ignoresAlpha)
        return _textures.makeDerived(work.values.material(), *slot, encoding, "without alpha",
                                     [](const osg::Image &image) { return withoutAlpha(image); });
    return _textures.make(work.values.material(), *slot, encoding);
}

std::optional<TextureSlot> MaterialBuilder::firstSlot(const aiMaterial &parsed,
                                                      std::initializer_list<aiTextureType> types) const
{
    for (const aiTextureType type : types)
        if (_textures.reference(parsed, {type, 0}))
            return TextureSlot{type, 0};
    return std::nullopt;
}

} // namespace kximport
