// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/SceneIndexes.h"

#include "SceneGraph/FieldContainerFactory.h"

namespace kxKernelInternal {

SceneIndexes &SceneIndexes::the()
{
    static auto *const instance = new SceneIndexes;
    return *instance;
}

SceneIndexes::SceneIndexes()
{
    osg::FieldContainerFactory &factory = osg::FieldContainerFactory::the();
    factory.addListener(materialUsage);
    factory.addListener(assetMaterials);
    factory.addListener(images);
}

namespace {

[[maybe_unused]] const SceneIndexes &listening = SceneIndexes::the();

} // namespace

} // namespace kxKernelInternal
