// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/MultiMaterial.h"

#include <vector>

class kxAssetItemDocument;

namespace kxAssetsInternal {

/// Appends what \a document is to say of the material: type, tags, sub-materials, choice and the name of its environment.
/// False when a sub-material is no asset.
bool describeMaterial(kxAssetItemDocument &document, const osg::MaterialPtr &material);

/// A new, empty material of the type that \a document names; null unless that is a switch or multi-pass material, the
/// kinds that consist of nothing but other assets.
osg::FCRef<osg::Material> makeComposite(const kxAssetItemDocument &document);

/// Puts those of \a parts that are not null into the composite, and makes the document's choice if there is such a part.
void assemble(const osg::MaterialPtr &composite, const std::vector<osg::MaterialPtr> &parts, int choice);

/// Gives the material the name, asset attachment and tags that \a document has for it.
void identify(const osg::MaterialPtr &material, const kxAssetItemDocument &document);

} // namespace kxAssetsInternal
