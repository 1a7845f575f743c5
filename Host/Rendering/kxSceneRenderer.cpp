// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxSceneRenderer.h"

#include "Rendering/Internal/SceneSnapshot.h"
#include "Rendering/QImageConverter.h"
#include "Rendering/kxSceneplatePainter.h"
#include "SceneGraph/EditCP.h"

#include <algorithm>
#include <cmath>

namespace {

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
    const auto shown = kxRender::SceneSnapshot::take(
        roots,
        settings.isBackgroundVisible && !kxSceneplatePainter::hasContent(settings.plates, kxSceneplatePainter::Back));
    kxRender::Film film(settings.width, settings.height);
    if (!shown->tracer().render(kxRender::cameraOf(*camera), film, std::max(1, settings.samples), settings.isCancelled))
        return nullptr;
    const osg::ImagePtr image = film.develop(kxRender::SceneSnapshot::Exposure);
    if (!image)
        return nullptr;
    tintEmpty(image, settings.emptyColor);
    addPlates(image, settings.plates);
    return image;
}
