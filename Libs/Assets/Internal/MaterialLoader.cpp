// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/MaterialLoader.h"

#include "Assets/kxUrlManager.h"
#include "Kernel/kxController.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxRaytracingManager.h"
#include "Kernel/kxRaytracingUtils.h"
#include "Kernel/kxUberMaterialUtils.h"
#include "Rendering/kxOSGWidget.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/UBRDFMaterial.h"

namespace kxAssetsInternal {

namespace {

constexpr float FromPhotometric = 0.01F;

/// Stops refining the picture and keeps the views still; gives back what was before.
class RenderPause
{
public:
    RenderPause() : _wasEnabled(kxController::isRenderUpdateEnabled()) { kxController::enableRenderUpdate(false); }
    ~RenderPause() { kxController::enableRenderUpdate(_wasEnabled); }
    RenderPause(const RenderPause &) = delete;
    RenderPause &operator=(const RenderPause &) = delete;

private:
    bool _wasEnabled;
};

/// Has the back-end show how far the payload is.
class LoadProgress
{
public:
    LoadProgress(kxUrlManager &manager, bool isShown) : _manager(manager)
    {
        _manager.setShowMaterialLoadProgress(isShown);
    }
    ~LoadProgress() { _manager.setShowMaterialLoadProgress(false); }
    LoadProgress(const LoadProgress &) = delete;
    LoadProgress &operator=(const LoadProgress &) = delete;

private:
    kxUrlManager &_manager;
};

/// The surface, if it gives off light.
osg::UBRDFMaterialPtr glowingSurface(const osg::MaterialPtr &material)
{
    const auto surface = osg::dcast<osg::UBRDFMaterialPtr>(material);
    return surface && surface->getIncandescenceColor()[3] != 0.0F ? surface : nullptr;
}

} // namespace

osg::FCRef<osg::Material> loadStoredMaterial(kxUrlManager &manager, const QUrl &directory, bool isProgressShown)
{
    const LoadProgress progress(manager, isProgressShown);
    kxOSGWidget::cancelAntialiasing();
    const RenderPause pause;
    osg::MaterialPtr material;
    const bool isLoaded = manager.loadMaterialFromDir(directory, material);
    return isLoaded ? osg::FCRef<osg::Material>::adopt(material) : nullptr;
}

void assignEnvironment(const osg::MaterialPtr &material, const std::string &name)
{
    const auto surface = osg::dcast<osg::UBRDFMaterialPtr>(material);
    if (!surface || name.empty())
        return;
    if (surface->getEnvironment() && kxMaterials::getName(surface->getEnvironment()) == name)
        return;

    for (const std::uint32_t id : kxMaterials::getMaterialPoolMaterialIds()) {
        const auto candidate = osg::dcast<osg::MaterialPtr>(osg::FieldContainerFactory::the().getContainer(id));
        if (!candidate || !kxUberMaterialUtils::isEnvironmentMaterial(candidate) ||
            kxMaterials::getName(candidate) != name)
            continue;
        osg::CPEditor edit(surface, osg::UBRDFMaterial::EnvironmentFieldMask);
        surface->setEnvironment(candidate);
        return;
    }
}

kxAssetPhotometricState photometricStateOf(const osg::MaterialPtr &material)
{
    if (!glowingSurface(material))
        return Unknown;
    return kxRaytracingManager::getRaytracingUtils().isPhotometric() ? Photometric : NonPhotometric;
}

void adjustIntensity(const osg::MaterialPtr &material, kxAssetPhotometricState stored, kxAssetPhotometricState expected)
{
    const osg::UBRDFMaterialPtr surface = glowingSurface(material);
    if (!surface)
        return;

    osg::Color4f colour = surface->getIncandescenceColor();
    const bool isPhotometric = kxRaytracingManager::getRaytracingUtils().isPhotometric();
    if (isPhotometric && stored == NonPhotometric && expected == Photometric)
        colour[3] *= kxRaytracingManager::getRaytracingUtils().getPhotometricConversionFactor();
    else if (!isPhotometric && stored == Photometric && expected == NonPhotometric)
        colour[3] *= FromPhotometric;
    else
        return;
    osg::CPEditor edit(surface, osg::UBRDFMaterial::IncandescenceColorFieldMask);
    surface->setIncandescenceColor(colour);
}

} // namespace kxAssetsInternal
