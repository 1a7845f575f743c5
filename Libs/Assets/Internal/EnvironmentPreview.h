// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Image.h"
#include "SceneGraph/UEnvironmentMaterial.h"

namespace kxAssetsInternal {

/// The preview kept on the material, rendered by the host when there is none; null when it cannot be.
osg::ImagePtr environmentPreview(const osg::UEnvironmentMaterialPtr &material);

} // namespace kxAssetsInternal
