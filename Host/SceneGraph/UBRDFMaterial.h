// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Material.h"
#include "SceneGraph/Texture.h"

#include <functional>

namespace osg {

/// A surface: diffuse base or metal, specular reflection, clear coat, transparency, relief and own light.
///
/// A texture multiplies the value it belongs to. Colours are linear.
class KX_SCENEGRAPH_EXPORT UBRDFMaterial final : public Material
{
    OSG_CONTAINER(UBRDFMaterial, Material)

    OSG_FIELD(Color4f, DiffuseColor, {0.8F, 0.8F, 0.8F, 1.0F})  ///< alpha: opacity of the surface (cut-out)
    OSG_FIELD(TexturePtr, DiffuseTexture)                       ///< its alpha multiplies the opacity
    OSG_FIELD(Color4f, SpecularColor, {1.0F, 1.0F, 1.0F, 1.0F}) ///< tints the dielectric reflection
    OSG_FIELD(float, Roughness, 0.5F)                           ///< 0 mirror, 1 matt; its square is the GGX alpha
    OSG_FIELD(TexturePtr, RoughnessTexture)                     ///< green channel (metallic-roughness layout)
    OSG_FIELD(float, Metalness, 0.0F)
    OSG_FIELD(TexturePtr, MetalnessTexture) ///< blue channel (metallic-roughness layout)
    OSG_FIELD(float, ClearCoat, 0.0F)       ///< strength of a coat with index 1.5
    OSG_FIELD(float, ClearCoatRoughness, 0.03F)
    OSG_FIELD(float, Transparency, 0.0F)       ///< share of the non-metal that lets light through
    OSG_FIELD(TexturePtr, TransparencyTexture) ///< red channel
    OSG_FIELD(Color4f, TransmissionColor, {1.0F, 1.0F, 1.0F, 1.0F})
    OSG_FIELD(float, IndexOfRefraction, 1.5F)
    OSG_FIELD(TexturePtr, NormalTexture)                             ///< tangent space, +Y up
    OSG_FIELD(TexturePtr, BumpTexture)                               ///< red channel: height
    OSG_FIELD(float, BumpStrength, 1.0F)                             ///< scales both reliefs
    OSG_FIELD(Color4f, IncandescenceColor, {0.0F, 0.0F, 0.0F, 0.0F}) ///< colour, and the intensity in alpha
    OSG_FIELD(TexturePtr, IncandescenceTexture)
    OSG_FIELD(float, Sheen, 0.0F)      ///< strength of the cloth-like rim
    OSG_FIELD(float, Anisotropy, 0.0F) ///< -1 to 1, along the texture's u
    OSG_FIELD(bool, IsTwoSided, true)
    OSG_FIELD_WITHOUT_ACCESSORS(MaterialPtr, Environment) ///< lights this surface; null: the scene's own

public:
    const MaterialPtr &getEnvironment() const { return Environment_; }
    /// A null environment becomes the scene's default one, unless that is being ignored. Expects an edit of
    /// EnvironmentFieldMask.
    void setEnvironment(const MaterialPtr &environment);

    /// While true, a null environment stays null. Process-wide; main thread.
    static bool getIgnoreDefaultEnvironment();
    static void setIgnoreDefaultEnvironment(bool ignore);

    using DefaultEnvironment = std::function<MaterialPtr()>;
    /// Who knows the scene says what its default environment is; an empty function: there is none.
    static void setDefaultEnvironmentSource(DefaultEnvironment source);
};

/// The class that holds the fields.
using UBRDFMaterialBase = UBRDFMaterial;
using UBRDFMaterialPtr = UBRDFMaterial::Ptr;

} // namespace osg
