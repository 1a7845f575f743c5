// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxViewport.h"

#include "Kernel/kxController.h"
#include "Kernel/kxControllerNotifier.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "Kernel/kxSelectionManager.h"
#include "Rendering/Internal/CameraView.h"
#include "Rendering/Internal/SceneWatch.h"
#include "Rendering/Internal/SelectionOutline.h"
#include "Rendering/Internal/ViewOverlay.h"
#include "Rendering/kxProgressiveRendering.h"
#include "Rendering/kxSceneplatePainter.h"
#include "SceneGraph/EditCP.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <utility>

namespace {

using kxRender::CameraView;

constexpr double Pi = 3.14159265358979323846;
constexpr double OrbitPerHeight = Pi; // half a turn along the widget's height
constexpr double OrbitPerKey = Pi / 24.0;
constexpr double ZoomPerStep = 1.15; // of the wheel, or of a key
constexpr double WheelStep = 120.0;  // in eighths of a degree, as Qt counts
constexpr double OutlineWidth = 2.0;
constexpr double ShadeWidth = 1.0; // around the outline
constexpr double ShadeAlpha = 0.45;

enum class Drag { None, Click, Orbit, Pan };

/// What the view shows: its own roots, else the whole scene.
std::vector<osg::NodePtr> shownRoots(const kxOSGWidget &view)
{
    std::vector<osg::NodePtr> roots = view.getRenderRoots();
    if (const osg::NodePtr root = kxScenegraph::getRoot(); roots.empty() && root)
        roots.push_back(root);
    return roots;
}

osg::Volume volumeOf(const std::vector<osg::NodePtr> &nodes)
{
    osg::Volume volume;
    for (const osg::NodePtr &node : nodes)
        volume.extend(node->getWorldVolume());
    return volume;
}

/// Of these nodes and of all below them.
std::unordered_set<std::uint32_t> idsBelow(std::vector<osg::NodePtr> nodes)
{
    std::unordered_set<std::uint32_t> ids;
    while (!nodes.empty()) {
        const osg::NodePtr node = nodes.back();
        nodes.pop_back();
        if (!ids.insert(node.getFieldContainerId()).second)
            continue;
        for (std::size_t i = 0; i < node->getNChildren(); ++i)
            nodes.push_back(node->getChild(i));
    }
    return ids;
}

} // namespace

struct kxViewport::Private
{
    explicit Private(kxViewport &owner)
        : watch([&owner] { owner.request(Need::Scene); }, [&owner] { owner.request(Need::Picture); })
    {}

    kxRender::SceneWatch watch;
    kxProgressiveRendering rendering;
    Need need = Need::Nothing; ///< what is to be rendered on the next pass of the event loop
    bool isScheduled = false;
    bool wasCancelled = false; ///< before all samples were there, and not begun anew
    QImage picture;
    std::shared_ptr<const kxRender::NodeMap> nodes; ///< that are seen in the picture
    QImage outline;                                 ///< of those that are selected, of the picture's size
    bool isOutlineCurrent = true;
    int samples = 0;
    int sampleLimit = DefaultSampleLimit;
    Drag drag = Drag::None;
    Qt::MouseButton button = Qt::NoButton; ///< that began the drag
    QPointF pressed;
    QPointF last;
    bool showsFocus = false;
};

kxViewport::kxViewport(QWidget *parent) : QWidget(parent), _private(std::make_unique<Private>(*this))
{
    qRegisterMetaType<Qt::KeyboardModifiers>("Qt::KeyboardModifiers"); // picked() may be queued
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName(tr("Viewport"));
    setAccessibleDescription(tr("Shows the scene. Arrow keys turn the camera around its target, plus and minus zoom, F "
                                "frames the selection and Home everything."));
    connect(&_private->rendering, &kxProgressiveRendering::pictureReady, this, &kxViewport::showPicture);
    connect(&_private->rendering, &kxProgressiveRendering::finished, this, [this] {
        update();
        emit refined();
    });
    connect(&kxController::notifier(), &kxControllerNotifier::renderUpdateRequested, this,
            [this] { request(Need::Scene); });
    const kxScenegraphNotifier &notifier = kxScenegraph::notifier();
    // Its own requests that were held back come this way, too; changes are heard from the scene itself.
    connect(&notifier, &kxScenegraphNotifier::updateRequested, this, [this] {
        if (_private->need != Need::Nothing || _private->wasCancelled)
            request(Need::Picture);
    });
    connect(&notifier, &kxScenegraphNotifier::documentChanged, this, [this] {
        dropPicture();
        request(Need::Scene);
    });
    connect(&notifier, &kxScenegraphNotifier::selectionChanged, this, [this] { dropOutline(); });
    request(Need::Scene);
}

kxViewport::~kxViewport() = default;

QImage kxViewport::picture() const
{
    return _private->picture;
}

int kxViewport::samples() const
{
    return _private->samples;
}

int kxViewport::sampleLimit() const
{
    return _private->sampleLimit;
}

void kxViewport::setSampleLimit(int limit)
{
    limit = std::max(1, limit);
    if (limit == _private->sampleLimit)
        return;
    _private->sampleLimit = limit;
    request(Need::Picture);
}

bool kxViewport::isRefining() const
{
    return _private->rendering.isRunning();
}

void kxViewport::setRefinementPaused(bool paused)
{
    _private->rendering.setPaused(paused);
}

osg::NodePtr kxViewport::nodeAt(const QPoint &place) const
{
    if (!rect().contains(place))
        return nullptr;
    // The middle of the pixel.
    return kxNodeUtils::getNodeFromId(
        _private->rendering.nodeAt(getUberCamera(), size(), QPointF(place) + QPointF(0.5, 0.5)));
}

QSize kxViewport::sizeHint() const
{
    return {640, 480};
}

QSize kxViewport::minimumSizeHint() const
{
    return {120, 90};
}

void kxViewport::request(Need need)
{
    _private->need = std::max(_private->need, need);
    if (_private->isScheduled)
        return;
    _private->isScheduled = true;
    QMetaObject::invokeMethod(
        this, [this] { startRendering(); }, Qt::QueuedConnection);
}

void kxViewport::startRendering()
{
    _private->isScheduled = false;
    if (_private->need == Need::Nothing || !isVisible())
        return;
    // While updates are off, both keep what is asked of them, and call when they are on again.
    if (!kxController::isRenderUpdateEnabled()) {
        kxController::updateRender(false);
        return;
    }
    if (!kxScenegraph::isUpdateEnabled()) {
        kxScenegraph::update(false);
        return;
    }
    const osg::UberCameraPtr camera = getUberCamera();
    _private->watch.watchCamera(camera);
    if (_private->need == Need::Scene)
        takeScene();
    _private->need = Need::Nothing;
    _private->wasCancelled = false;
    _private->rendering.start(camera, size() * devicePixelRatioF(), _private->sampleLimit);
    update();
}

void kxViewport::takeScene()
{
    const osg::NodePtr plates = kxScenegraph::getSceneplateRoot();
    std::vector<osg::NodePtr> roots = shownRoots(*this);
    if (roots.empty()) {
        dropPicture();
        return;
    }
    const bool hasBackplates = kxSceneplatePainter::hasContent(plates, kxSceneplatePainter::Back);
    _private->rendering.setScene(roots, !hasBackplates);
    roots.push_back(kxScenegraph::getRoot()); // the environment, lights' links and what places the roots
    roots.push_back(plates);
    _private->watch.watchScene(roots);
}

void kxViewport::dropPicture()
{
    _private->rendering.clearScene();
    _private->picture = QImage();
    _private->nodes.reset();
    _private->samples = 0;
    dropOutline();
    _private->watch.watchScene({});
    update();
    emit pictureChanged();
}

void kxViewport::showPicture(const QImage &rendered, int samples)
{
    _private->picture = kxSceneplatePainter::composed(rendered, kxScenegraph::getSceneplateRoot());
    _private->samples = samples;
    if (const auto nodes = _private->rendering.nodes(); nodes != std::exchange(_private->nodes, nodes))
        dropOutline();
    update();
    emit pictureChanged();
}

void kxViewport::dropOutline()
{
    _private->isOutlineCurrent = false;
    update();
}

/// Made only where it is about to be seen.
const QImage &kxViewport::outline()
{
    if (std::exchange(_private->isOutlineCurrent, true))
        return _private->outline;
    _private->outline = QImage();
    const std::unordered_set<std::uint32_t> ids = idsBelow(kxSelectionManager::getSelectedNodes());
    if (ids.empty() || !_private->nodes)
        return _private->outline;
    const kxRender::SelectionOutline outline(*_private->nodes, ids, _private->picture.size());
    QColor shade = palette().color(QPalette::Shadow);
    shade.setAlphaF(ShadeAlpha);
    // The shade shows the line also where the picture has the same colour.
    _private->outline = outline.drawn((OutlineWidth + ShadeWidth) * devicePixelRatioF(), shade);
    QPainter painter(&_private->outline);
    painter.drawImage(0, 0, outline.drawn(OutlineWidth * devicePixelRatioF(), palette().color(QPalette::Highlight)));
    return _private->outline;
}

void kxViewport::cancelRefinement()
{
    _private->wasCancelled |= isRefining();
    _private->rendering.cancel();
    update();
}

void kxViewport::renderRootsChanged()
{
    request(Need::Scene);
}

void kxViewport::overlayChanged()
{
    update();
}

void kxViewport::frameSelection()
{
    if (!frame(volumeOf(kxSelectionManager::getSelectedNodes())))
        frameAll();
}

void kxViewport::frameAll()
{
    frame(volumeOf(shownRoots(*this)));
}

bool kxViewport::frame(const osg::Volume &box)
{
    const osg::UberCameraPtr camera = getUberCamera();
    if (!camera || box.isEmpty())
        return false;
    {
        const osg::CPEditor edit(camera, osg::AllFieldMask);
        camera->zoomTo(box, true, {0.0, 0.0, 0.0});
    }
    if (width() < height()) { // zoomTo() takes pictures to be wider than high
        CameraView view(camera);
        view.zoom(static_cast<double>(height()) / std::max(1, width()));
        view.applyTo(camera);
    }
    return true;
}

bool kxViewport::moveByKey(int key)
{
    const osg::UberCameraPtr camera = getUberCamera();
    if (!camera)
        return false;
    CameraView view(camera);
    switch (key) {
    case Qt::Key_Left:
        view.orbit(-OrbitPerKey, 0.0);
        break;
    case Qt::Key_Right:
        view.orbit(OrbitPerKey, 0.0);
        break;
    case Qt::Key_Up:
        view.orbit(0.0, -OrbitPerKey);
        break;
    case Qt::Key_Down:
        view.orbit(0.0, OrbitPerKey);
        break;
    case Qt::Key_Plus:
    case Qt::Key_Equal: // where plus needs Shift
        view.zoom(1.0 / ZoomPerStep);
        break;
    case Qt::Key_Minus:
        view.zoom(ZoomPerStep);
        break;
    default:
        return false;
    }
    view.applyTo(camera);
    return true;
}

void kxViewport::keyPressEvent(QKeyEvent *event)
{
    // With other modifiers keys are shortcuts of the program.
    if ((event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) != 0)
        QWidget::keyPressEvent(event);
    else if (event->key() == Qt::Key_F)
        frameSelection();
    else if (event->key() == Qt::Key_Home)
        frameAll();
    else if (!moveByKey(event->key()))
        QWidget::keyPressEvent(event);
}

void kxViewport::mousePressEvent(QMouseEvent *event)
{
    const bool isLeft = event->button() == Qt::LeftButton;
    if (_private->drag != Drag::None || (!isLeft && event->button() != Qt::MiddleButton)) {
        event->ignore();
        return;
    }
    _private->drag = isLeft ? Drag::Click : Drag::Pan;
    _private->button = event->button();
    _private->pressed = event->localPos();
    _private->last = event->localPos();
}

void kxViewport::mouseMoveEvent(QMouseEvent *event)
{
    const QPointF place = event->localPos();
    if (_private->drag == Drag::None)
        return;
    if (_private->drag == Drag::Click) {
        if ((place - _private->pressed).manhattanLength() < QApplication::startDragDistance())
            return;
        _private->drag = (event->modifiers() & Qt::ShiftModifier) != 0 ? Drag::Pan : Drag::Orbit;
    }
    drag(place - _private->last);
    _private->last = place;
}

void kxViewport::drag(const QPointF &way)
{
    const osg::UberCameraPtr camera = getUberCamera();
    if (!camera)
        return;
    CameraView view(camera);
    const QPointF share = way / std::max(1, height());
    if (_private->drag == Drag::Orbit)
        view.orbit(share.x() * OrbitPerHeight, share.y() * OrbitPerHeight);
    else
        view.pan(share.x(), share.y());
    view.applyTo(camera);
}

void kxViewport::mouseReleaseEvent(QMouseEvent *event)
{
    if (_private->drag == Drag::None || event->button() != _private->button) {
        event->ignore();
        return;
    }
    const bool isClick = std::exchange(_private->drag, Drag::None) == Drag::Click;
    if (isClick)
        emit picked(nodeAt(_private->pressed.toPoint()).getFieldContainerId(), event->modifiers());
}

void kxViewport::wheelEvent(QWheelEvent *event)
{
    const osg::UberCameraPtr camera = getUberCamera();
    if (!camera || event->angleDelta().y() == 0) {
        event->ignore();
        return;
    }
    CameraView view(camera);
    view.zoom(std::pow(ZoomPerStep, -event->angleDelta().y() / WheelStep));
    view.applyTo(camera);
    event->accept();
}

void kxViewport::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Dark));
    const QImage &picture = _private->picture;
    if (!picture.isNull()) {
        // A picture of another size is shown as the new one will show it: as high as the widget, and cut or too narrow.
        const double width = static_cast<double>(picture.width()) * height() / picture.height();
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        const QRectF area((this->width() - width) / 2.0, 0.0, width, height());
        painter.drawImage(area, picture);
        if (const QImage &outline = this->outline(); !outline.isNull())
            painter.drawImage(area, outline);
    }
    kxRender::ViewOverlay overlay(painter, rect(), palette());
    if (isIsolateViewOverlayVisible() && !getRenderRoots().empty())
        overlay.drawLabel(tr("Isolated"));
    if (isRefining())
        overlay.drawProgress(static_cast<double>(_private->samples) / _private->sampleLimit);
    if (_private->showsFocus)
        overlay.drawFocus();
}

void kxViewport::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    request(Need::Picture);
}

void kxViewport::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    _private->rendering.cancel();
}

void kxViewport::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    request(Need::Picture);
}

void kxViewport::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        dropOutline();
    else if (event->type() == QEvent::LanguageChange)
        update();
}

void kxViewport::focusInEvent(QFocusEvent *event)
{
    const bool isByKey = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    _private->showsFocus = isByKey;
    QWidget::focusInEvent(event);
    update();
}

void kxViewport::focusOutEvent(QFocusEvent *event)
{
    _private->showsFocus = false;
    QWidget::focusOutEvent(event);
    update();
}
