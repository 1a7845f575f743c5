// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetState.h"

#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "SceneGraph/AssetAttachment.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>

namespace {

QPixmap drawDot(bool isFilled, const QColor &color)
{
    const int size = QApplication::style()->pixelMetric(QStyle::PM_SmallIconSize);
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, size / 8.0));
    painter.setBrush(isFilled ? QBrush(color) : QBrush(Qt::NoBrush));
    painter.drawEllipse(QPointF(size / 2.0, size / 2.0), size / 4.0, size / 4.0);
    return pixmap;
}

/// A dot that is filled where the object is as stored, and a ring where the object was edited.
QIcon dot(bool isFilled)
{
    const QPalette palette = QApplication::palette();
    QIcon icon(drawDot(isFilled, palette.color(isFilled ? QPalette::Highlight : QPalette::Text)));
    icon.addPixmap(drawDot(isFilled, palette.color(QPalette::HighlightedText)), QIcon::Selected);
    return icon;
}

} // namespace

AssetState::AssetState(const osg::AttachmentContainerPtr &container)
{
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(container);
    if (!attachment || attachment->getUuid().empty())
        return;
    _uuid = attachment->getUuid();
    _isEdited = attachment->getUserEdited();
    _loadedChecksum = attachment->getChecksum();
    kxAssetItem *item = kxAssetItemFactory::the().findItem(_uuid);
    if (!item) {
        _kind = Kind::NotFound;
        return;
    }
    _assetName = QString::fromStdString(item->name());
    if (_isEdited)
        _kind = Kind::EditedHere;
    else
        _kind = item->checksum() == _loadedChecksum ? Kind::AsStored : Kind::Outdated;
}

bool AssetState::isStoredNewer() const
{
    if (_kind != Kind::EditedHere)
        return _kind == Kind::Outdated;
    kxAssetItem *item = kxAssetItemFactory::the().findItem(_uuid);
    return item && item->checksum() != _loadedChecksum;
}

QString AssetState::text() const
{
    switch (_kind) {
    case Kind::NoAsset:
        break;
    case Kind::AsStored:
        return tr("Same as the asset \"%1\" in the library").arg(_assetName);
    case Kind::EditedHere:
        return tr("Changed here; the asset \"%1\" in the library is different").arg(_assetName);
    case Kind::Outdated:
        return tr("The asset \"%1\" in the library was changed since it was loaded").arg(_assetName);
    case Kind::NotFound:
        return tr("The asset is not in an open library");
    }
    return {};
}

QIcon AssetState::icon() const
{
    switch (_kind) {
    case Kind::NoAsset:
        break;
    case Kind::AsStored:
        return dot(true);
    case Kind::EditedHere:
        return dot(false);
    case Kind::Outdated:
        return QApplication::style()->standardIcon(QStyle::SP_BrowserReload);
    case Kind::NotFound:
        return QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
    }
    return {};
}
