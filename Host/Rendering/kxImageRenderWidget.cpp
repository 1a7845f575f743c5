// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxImageRenderWidget.h"

#include "Kernel/kxControllerNotifier.h"
#include "Kernel/kxScenegraph.h"
#include "Rendering/QImageConverter.h"
#include "Rendering/kxOSGWidget.h"
#include "Rendering/kxSceneRenderer.h"

#include <algorithm>

namespace {

constexpr int MaxSide = 16384;
constexpr int SamplesOfQuality = 32;

bool hasAlpha = false;
osg::Color4f alphaColor{0.0F, 0.0F, 0.0F, 0.0F};

} // namespace

QImage kxImageRenderWidget::convertToQImage(const osg::ImagePtr &image)
{
    return QImageConverter::convertToQImage(image);
}

void kxImageRenderWidget::setAlpha(bool alpha)
{
    hasAlpha = alpha;
}

void kxImageRenderWidget::setAlphaColor(float red, float green, float blue)
{
    alphaColor = {red, green, blue, 0.0F};
}

kxImageRenderWidget::kxImageRenderWidget(QWidget * /*parent*/, int width, int height, int stereoMode,
                                         bool /*showsTiles*/, int quality, bool /*isRefined*/, bool /*isAntialiased*/,
                                         int /*tileCount*/, bool /*keepsOpen*/)
    : _width(width), _height(height), _stereoMode(stereoMode), _quality(std::max(1, quality))
{}

kxImageRenderWidget::~kxImageRenderWidget() = default;

bool kxImageRenderWidget::isValid() const
{
    const kxOSGWidget *view = kxOSGWidget::getMGLW(-1);
    return view && view->getUberCamera() && _stereoMode == 0 && _width > 0 && _height > 0 && _width <= MaxSide &&
           _height <= MaxSide;
}

std::vector<osg::ImagePtr> kxImageRenderWidget::render(const osg::ImagePtr & /*target*/, int /*firstTile*/,
                                                       bool /*isAnimated*/, bool /*waits*/)
{
    if (!isValid())
        return {};
    const kxOSGWidget *view = kxOSGWidget::getMGLW(-1);
    kxSceneRenderer::Settings settings;
    settings.width = _width;
    settings.height = _height;
    settings.samples = SamplesOfQuality * _quality;
    settings.isBackgroundVisible = !hasAlpha;
    settings.emptyColor = alphaColor;
    std::vector<osg::NodePtr> roots = view->getRenderRoots();
    if (roots.empty() && kxScenegraph::getRoot())
        roots.push_back(kxScenegraph::getRoot());
    auto image = osg::FCRef<osg::Image>::adopt(kxSceneRenderer::render(roots, view->getUberCamera(), settings));
    if (!image)
        return {};
    _images.push_back(image);
    return {image.get()};
}
