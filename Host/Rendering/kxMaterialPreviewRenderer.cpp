// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxMaterialPreviewRenderer.h"

#include "Rendering/Internal/PreviewScene.h"
#include "SceneGraph/UEnvironmentMaterial.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"

namespace {

constexpr float StudioExposure = 0.82F;
/// The mean brightness that panoramas are brought to, within limits that leave night as night.
constexpr float PanoramaGrey = 0.30F;
constexpr float MinExposure = 0.1F;
constexpr float MaxExposure = 8.0F;

using kxRender::EnvironmentLight;
using kxRender::Film;
using kxRender::V3;

/// The mean of the logarithms, so that a small sun does not darken everything else.
float exposureFor(const EnvironmentLight &light)
{
    constexpr int Columns = 64;
    constexpr int Rows = 32;
    float sum = 0.0F;
    for (int y = 0; y < Rows; ++y)
        for (int x = 0; x < Columns; ++x) {
            const V3 direction = EnvironmentLight::toDirection((static_cast<float>(x) + 0.5F) / Columns,
                                                               (static_cast<float>(y) + 0.5F) / Rows);
            sum += std::log(1e-4F + kxRender::luminance(light.radiance(direction)));
        }
    return std::clamp(PanoramaGrey / std::exp(sum / (Columns * Rows)), MinExposure, MaxExposure);
}

osg::ImagePtr renderPanorama(const osg::MaterialPtr &material, int width, int height)
{
    const auto light = EnvironmentLight::from(material);
    if (!light)
        return nullptr;
    constexpr int Side = 3; // a few directions for each pixel
    Film film(width, std::max(1, height / 2));
    for (int y = 0; y < film.height(); ++y)
        for (int x = 0; x < film.width(); ++x)
            for (int s = 0; s < Side * Side; ++s) {
                const int row = s / Side;
                const int column = s % Side;
                const float u = (static_cast<float>(x) + (static_cast<float>(column) + 0.5F) / Side) /
                                static_cast<float>(film.width());
                const float v = (static_cast<float>(y) + (static_cast<float>(row) + 0.5F) / Side) /
                                static_cast<float>(film.height());
                film.add(x, y, light->radiance(EnvironmentLight::toDirection(u, v)), 1.0F);
            }
    return film.develop(exposureFor(*light));
}

bool isEnvironment(const osg::MaterialPtr &material)
{
    return osg::UEnvironmentMaterialPtr::dcast(material) || osg::UEnvironmentSwitchMaterialPtr::dcast(material);
}

} // namespace

osg::ImagePtr kxMaterialPreviewRenderer::renderPreview(const osg::MaterialPtr &material, int width, int height,
                                                       int samples, const IsCancelled &isCancelled)
{
    if (!material || width < 1 || height < 1)
        return nullptr;
    if (isEnvironment(material))
        return renderPanorama(material, width, height);

    kxRender::RenderScene scene;
    kxRender::buildPreviewScene(scene, material);
    kxRender::PathTracer tracer(scene);
    tracer.setBackgroundVisible(true);
    Film film(width, height);
    if (!tracer.render(kxRender::previewCamera(), film, std::max(1, samples), isCancelled))
        return nullptr;
    return film.develop(StudioExposure);
}
