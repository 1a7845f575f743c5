// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/Internal/AssetMaterialIndex.h"
#include "Kernel/Internal/ImageIndex.h"
#include "Kernel/Internal/MaterialUsage.h"

namespace kxKernelInternal {

/// The indexes of the scene graph, listening from the moment the kernel is loaded: what was made before is not in them.
struct SceneIndexes
{
    /// Never destroyed, because containers may still be released by static objects of other libraries.
    static SceneIndexes &the();

    MaterialUsage materialUsage;
    AssetMaterialIndex assetMaterials;
    ImageIndex images;

private:
    SceneIndexes();
};

} // namespace kxKernelInternal
