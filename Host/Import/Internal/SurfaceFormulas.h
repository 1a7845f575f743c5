// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/VectorTypes.h"

namespace kximport {

/// The roughness whose square is the width of the microfacet distribution that a Blinn-Phong lobe with this exponent
/// resembles: exponent = 2 / alpha^2 - 2 (Walter, Marschner, Li, Torrance: Microfacet Models for Refraction through Rough
/// Surfaces, EGSR 2007, section 5.2). Exponents of 0 and below give 1.
float roughnessFromExponent(float exponent);

/// The base colour and metalness of a surface described by diffuse and specular colour.
struct MetalShare
{
    osg::Color4f baseColor;
    float metalness = 0.0F;
};

/// The conversion that the glTF extension KHR_materials_pbrSpecularGlossiness gives as its example: the share of metal
/// for which a dielectric that reflects 4 % explains the specular colour best.
MetalShare metalShare(const osg::Color4f &diffuse, const osg::Color4f &specular);

/// The value between 0 and 1 that is meant by an sRGB-encoded one.
float linearFromSrgb(float encoded);

} // namespace kximport
