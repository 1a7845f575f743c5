// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxSceneRenderer.h"

#include "Kernel/kxDefaultEnvironment.h"
#include "Rendering/Internal/PathTracer.h"
#include "Rendering/Internal/PreviewScene.h"
#include "Rendering/Internal/SceneBuilding.h"
#include "Rendering/QImageConverter.h"
#include "Rendering/kxSceneplatePainter.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/USphereEnvironmentMaterial.h"

#include <cmath>

namespace {

constexpr float Exposure = 0.82F;

kxRender::V3 toV3(const osg::Vec3d &v)
{
    return {static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2])};
}

bool isDrawn(const osg::MaterialPtr &environment)
{
    const auto chooser = osg::SwitchMaterialPtr::dcast(environment);
    const auto sphere =
        osg::USphereEnvironmentMaterialPtr::dcast(chooser ? chooser->getCurrentMaterial() : environment);
    return !sphere || sphere->getIsVisible();
}

/// Fills what is empty with a colour, and leaves its alpha.
void tintEmpty(const osg::ImagePtr &image, const osg::Color4f &color)
{
    if (color[0] <= 0.0F && color[1] <= 0.0F && color[2] <= 0.0F)
        return;
    const osg::CPEditor edit(image, osg::Image::PixelsFieldMask);
    osg::MField<std::uint8_t> &bytes = image->editPixels();
    for (std::size_t i = 0; i + 3 < bytes.size(); i += 4)
        if (bytes[i + 3] == 0)
            for (std::size_t c = 0; c < 3; ++c)
                bytes[i + c] = static_cast<std::uint8_t>(std::lround(255.0F * kxRender::clamp01(color[c])));
}

void addPlates(const osg::ImagePtr &image, const osg::NodePtr &plates)
{
    if (!kxSceneplatePainter::hasContent(plates, kxSceneplatePainter::Both))
        return;
    QImageConverter::convertToOSGImage(kxSceneplatePainter::composed(QImageConverter::convertToQImage(image), plates),
                                       image);
    const osg::CPEditor edit(image, osg::AllFieldMask);
    image->reformat(osg::Image::Rgba);
}

} // namespace

osg::ImagePtr kxSceneRenderer::render(const std::vector<osg::NodePtr> &roots, const osg::UberCameraPtr &camera,
                                      const Settings &settings)
{
    if (!camera || settings.width < 1 || settings.height < 1)
        return nullptr;
    kxRender::RenderScene scene;
    kxRender::addNodes(scene, roots);
    const osg::MaterialPtr environment = kxDefaultEnvironment::getDefault();
    auto light = environment ? kxRender::EnvironmentLight::from(environment) : std::nullopt;
    scene.setEnvironment(light ? std::move(*light) : kxRender::studioLight());
    scene.commit();

    kxRender::PathTracer tracer(scene);
    tracer.setBackgroundVisible(settings.isBackgroundVisible && isDrawn(environment) &&
                                !kxSceneplatePainter::hasContent(settings.plates, kxSceneplatePainter::Back));
    kxRender::Film film(settings.width, settings.height);
    const kxRender::Camera view{toV3(camera->getFrom()), toV3(camera->getAt()), toV3(camera->getUp()),
                                static_cast<float>(camera->getFieldOfView())};
    if (!tracer.render(view, film, std::max(1, settings.samples), settings.isCancelled))
        return nullptr;
    const osg::ImagePtr image = film.develop(Exposure);
    if (!image)
        return nullptr;
    tintEmpty(image, settings.emptyColor);
    addPlates(image, settings.plates);
    return image;
}
