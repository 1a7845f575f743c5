// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"

#include <memory>

class kxAssetManagerModule;
class kxNodeService;
class kxOffscreenView;
class kxPreviewRenderModule;
class kxSceneReferenceService;
class kxSceneplateTree;

/// The host in a program: kernel, an empty scene, previews, the services of the scene, a main view without a window, and
/// the local disk as a place of assets.
///
/// One for each process, made on the main thread after the QApplication, and gone before it.
class KX_ASSETSESSION_EXPORT kxAssetSession
{
public:
    enum class MainView {
        OffScreen, ///< where there is none yet, one without a window
        Program    ///< the program makes its own
    };

    explicit kxAssetSession(MainView mainView = MainView::OffScreen);
    /// Empties the registry and gives the scene up.
    ~kxAssetSession();
    kxAssetSession(const kxAssetSession &) = delete;
    kxAssetSession &operator=(const kxAssetSession &) = delete;

    kxAssetManagerModule &manager() const { return *_manager; }

private:
    std::unique_ptr<kxPreviewRenderModule> _previews;
    std::unique_ptr<kxOffscreenView> _view;
    std::unique_ptr<kxSceneReferenceService> _references;
    std::unique_ptr<kxNodeService> _nodes;
    std::unique_ptr<kxSceneplateTree> _plates;
    std::unique_ptr<kxAssetManagerModule> _manager;
};
