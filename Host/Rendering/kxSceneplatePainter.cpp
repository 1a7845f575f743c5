// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxSceneplatePainter.h"

#include "Rendering/QImageConverter.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/Switch.h"

#include <QPainter>

#include <functional>
#include <vector>

namespace {

bool isIn(const osg::SceneplatePtr &plate, kxSceneplatePainter::Layers layers)
{
    return (layers & (plate->getIsFront() ? kxSceneplatePainter::Front : kxSceneplatePainter::Back)) != 0;
}

bool isShown(const osg::NodePtr &parent, std::size_t child)
{
    const auto chooser = osg::SwitchPtr::dcast(parent->getCore());
    return !chooser || chooser->shows(child);
}

/// The plates that are drawn, in their order, until \a visit answers false. Without recursion: trees may be deeper than the
/// stack.
void forEachShown(const osg::NodePtr &root, const std::function<bool(const osg::SceneplatePtr &plate)> &visit)
{
    std::vector<osg::NodePtr> waiting;
    if (root)
        waiting.push_back(root);
    while (!waiting.empty()) {
        const osg::NodePtr node = waiting.back();
        waiting.pop_back();
        const auto plate = osg::SceneplatePtr::dcast(node->getCore());
        if (plate && !plate->getIsVisible())
            continue;
        if (plate && plate->getImage() && !visit(plate))
            return;
        for (std::size_t i = node->getNChildren(); i > 0; --i)
            if (isShown(node, i - 1))
                waiting.push_back(node->getChild(i - 1));
    }
}

/// Where the plate is in a picture of this size, whose rows run downwards.
QRectF placeOf(const osg::SceneplatePtr &plate, const QSize &size)
{
    const double width = size.width() * static_cast<double>(plate->getSize()[0]);
    const double height = size.height() * static_cast<double>(plate->getSize()[1]);
    return {size.width() * static_cast<double>(plate->getPosition()[0]),
            size.height() * (1.0 - static_cast<double>(plate->getPosition()[1])) - height, width, height};
}

} // namespace

bool kxSceneplatePainter::hasContent(const osg::NodePtr &node, Layers layers)
{
    bool hasAny = false;
    forEachShown(node, [&](const osg::SceneplatePtr &plate) {
        hasAny = isIn(plate, layers) && !plate->getImage()->isEmpty() && plate->getOpacity() > 0.0F;
        return !hasAny;
    });
    return hasAny;
}

void kxSceneplatePainter::paint(const osg::NodePtr &node, Layers layers, QImage &picture)
{
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    forEachShown(node, [&](const osg::SceneplatePtr &plate) {
        const QRectF place = placeOf(plate, picture.size());
        if (!isIn(plate, layers) || !place.isValid())
            return true;
        // Scaled before it is drawn: the painter itself looks at four pixels only, and drops what lies between them.
        const QImage image = QImageConverter::convertToQImage(plate->getImage());
        const QSize target = place.size().toSize().expandedTo({1, 1});
        const bool isShrunk = target.width() < image.width() || target.height() < image.height();
        painter.setOpacity(static_cast<double>(plate->getOpacity()));
        painter.drawImage(place,
                          isShrunk ? image.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation) : image);
        return true;
    });
}

QImage kxSceneplatePainter::composed(const QImage &rendered, const osg::NodePtr &plates)
{
    if (rendered.isNull() || !hasContent(plates, Both))
        return rendered;
    QImage result(rendered.size(), QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    paint(plates, Back, result);
    {
        QPainter painter(&result);
        painter.drawImage(0, 0, rendered);
    }
    paint(plates, Front, result);
    return result.convertToFormat(rendered.format());
}

QImage kxSceneplatePainter::preview(const osg::NodePtr &node, const QSize &size)
{
    if (!node || size.isEmpty())
        return {};
    const auto plate = osg::SceneplatePtr::dcast(node->getCore());
    if (plate && plate->getImage()) {
        const QImage own = QImageConverter::convertToQImage(plate->getImage());
        const bool fits = own.width() <= size.width() && own.height() <= size.height();
        return own.isNull() || fits ? own : own.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    if (!hasContent(node, Both))
        return {};
    QImage together(size, QImage::Format_ARGB32_Premultiplied);
    together.fill(Qt::transparent);
    paint(node, Back, together);
    paint(node, Front, together);
    return together.convertToFormat(QImage::Format_ARGB32);
}
