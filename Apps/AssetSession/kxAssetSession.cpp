// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetSession.h"

#include "AssetSession/kxAssetManagerModule.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxLocalUrlManager.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxNodeService.h"
#include "Kernel/kxSceneReferenceService.h"
#include "Kernel/kxScenegraph.h"
#include "Rendering/kxOffscreenView.h"
#include "Rendering/kxPreviewRenderModule.h"
#include "Rendering/kxSceneplateTree.h"

kxAssetSession::kxAssetSession(MainView mainView)
{
    kxKernelServiceFactory::the().startKernel();
    kxScenegraph::newDocument();
    _previews = std::make_unique<kxPreviewRenderModule>();
    if (mainView == MainView::OffScreen && !kxOSGWidget::getMGLW(-1))
        _view = std::make_unique<kxOffscreenView>();
    _references = std::make_unique<kxSceneReferenceService>();
    kxKernelServiceFactory::the().setService<kxReferenceService>(_references.get());
    _nodes = std::make_unique<kxNodeService>();
    kxKernelServiceFactory::the().setService<kxNodeService>(_nodes.get());
    _plates = std::make_unique<kxSceneplateTree>();
    kxKernelServiceFactory::the().setService<kxSceneplateService>(_plates.get());
    _manager = std::make_unique<kxAssetManagerModule>();
    kxUrlManager::registerManager(kxLocalUrlManager::the());
}

kxAssetSession::~kxAssetSession()
{
    kxKernelServiceFactory::the().setService<kxSceneplateService>(nullptr);
    kxKernelServiceFactory::the().setService<kxNodeService>(nullptr);
    kxKernelServiceFactory::the().setService<kxReferenceService>(nullptr);
    kxAssetItemFactory::the().deleteAllItems();
    kxScenegraph::closeDocument();
}
