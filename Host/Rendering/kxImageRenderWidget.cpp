// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxImageRenderWidget.h"

#include "Kernel/kxControllerNotifier.h"
#include "Kernel/kxScenegraph.h"
#include "Rendering/QImageConverter.h"
#include "Rendering/kxOSGWidget.h"
#include "Rendering/kxSceneRenderer.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int MaxSide = 16384;
constexpr int SamplesOfQuality = 32;

bool hasAlpha = false;
osg::Color4f alphaColor{0.0F, 0.0F, 0.0F, 0.0F};
const kxImageRenderWidget *theRendering = nullptr;

/// One rendering may begin within another, where a view processes events.
class Rendering
{
public:
    explicit Rendering(const kxImageRenderWidget &widget) : _before(std::exchange(theRendering, &widget)) {}
    ~Rendering() { theRendering = _before; }
    Rendering(const Rendering &) = delete;
    Rendering &operator=(const Rendering &) = delete;

private:
    const kxImageRenderWidget *_before;
};

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

const kxImageRenderWidget *kxImageRenderWidget::rendering()
{
    return theRendering;
}

kxImageRenderWidget::kxImageRenderWidget(QWidget *parent, int width, int height, int stereoMode, bool showsTiles,
                                         int quality, bool isRefined, bool isAntialiased, int tileCount, bool keepsOpen)
    : _settings{parent, width, height, stereoMode, showsTiles, quality, isRefined, isAntialiased, tileCount, keepsOpen}
{}

kxImageRenderWidget::~kxImageRenderWidget() = default;

bool kxImageRenderWidget::isValid() const
{
    const kxOSGWidget *view = kxOSGWidget::getMGLW(-1);
    const int width = _settings.width;
    const int height = _settings.height;
    return view && view->getUberCamera() && _settings.stereoMode == 0 && width > 0 && height > 0 && width <= MaxSide &&
           height <= MaxSide;
}

std::vector<osg::ImagePtr> kxImageRenderWidget::render(const osg::ImagePtr &target, int firstTile, bool isAnimated,
                                                       bool waits)
{
    _request = {target, firstTile, isAnimated, waits};
    const Rendering begun(*this);
    if (!isValid())
        return {};
    const kxOSGWidget *view = kxOSGWidget::getMGLW(-1);
    kxSceneRenderer::Settings settings;
    settings.width = _settings.width;
    settings.height = _settings.height;
    settings.samples = SamplesOfQuality * std::max(1, _settings.quality);
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
