// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetSession.h"

#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxLocalUrlManager.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxScenegraph.h"
#include "Rendering/kxPreviewRenderModule.h"

kxAssetSession::kxAssetSession()
{
    kxKernelServiceFactory::the().startKernel();
    kxScenegraph::newDocument();
    _previews = std::make_unique<kxPreviewRenderModule>();
    kxUrlManager::registerManager(kxLocalUrlManager::the());
}

kxAssetSession::~kxAssetSession()
{
    kxAssetItemFactory::the().deleteAllItems();
    kxScenegraph::closeDocument();
}
