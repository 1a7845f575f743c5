// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/MaterialPreviews.h"

#include "Kernel/kxMaterials.h"
#include "Rendering/QImageConverter.h"
#include "Rendering/kxMaterialPreviewRenderer.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/ImageAttachment.h"

#include <QTimer>

#include <algorithm>

namespace {

constexpr int Samples = 24;
constexpr int PauseMilliseconds = 300;

osg::MaterialPtr materialOf(std::uint32_t id)
{
    return osg::MaterialPtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
}

QPixmap fitted(const osg::ImagePtr &image)
{
    const QImage picture = QImageConverter::convertToQImage(image);
    if (picture.isNull())
        return {};
    return QPixmap::fromImage(
        picture.scaled(MaterialPreviews::Size, MaterialPreviews::Size, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

/// The picture that came with the material shows it as it was stored.
QPixmap keptOn(const osg::MaterialPtr &material)
{
    const osg::AssetAttachmentPtr asset = osg::AssetAttachment::getAssetAttachment(material);
    return asset && asset->getUserEdited() ? QPixmap() : fitted(kxMaterials::getPreviewImage(material));
}

bool isMadeOf(const osg::MaterialPtr &material, const osg::FieldContainer &part)
{
    std::vector<osg::MaterialPtr> parts;
    kxMaterials::getRecursiveMaterials(material, parts, true);
    return std::any_of(parts.begin(), parts.end(),
                       [&part](const osg::MaterialPtr &each) { return each.get() == &part; });
}

} // namespace

MaterialPreviews::MaterialPreviews(QObject *parent) : QObject(parent), _idle(new QTimer(this)), _pause(new QTimer(this))
{
    _idle->setInterval(0);
    _pause->setSingleShot(true);
    _pause->setInterval(PauseMilliseconds);
    connect(_idle, &QTimer::timeout, this, &MaterialPreviews::renderNext);
    connect(_pause, &QTimer::timeout, _idle, qOverload<>(&QTimer::start));
    osg::FieldContainerFactory::the().addListener(*this);
}

MaterialPreviews::~MaterialPreviews()
{
    osg::FieldContainerFactory::the().removeListener(*this);
}

QPixmap MaterialPreviews::preview(const osg::MaterialPtr &material)
{
    if (!material)
        return {};
    const std::uint32_t id = material.getFieldContainerId();
    if (const auto known = _pictures.find(id); known != _pictures.end())
        return known->second;
    const QPixmap kept = keptOn(material);
    _pictures[id] = kept;
    if (kept.isNull()) {
        ask(id);
        _idle->start();
    }
    return kept;
}

void MaterialPreviews::containerChanged(osg::FieldContainer &container, osg::FieldMask fields)
{
    const bool isMaterial = container.getType().isDerivedFrom(osg::Material::getClassType());
    if (!isMaterial || (fields & ~osg::AttachmentContainer::AttachmentsFieldMask) == 0)
        return;
    for (const auto &[id, picture] : _pictures)
        if (isMadeOf(materialOf(id), container))
            ask(id);
    if (!_waiting.empty() && !_idle->isActive())
        _pause->start();
}

void MaterialPreviews::containerDestroyed(osg::FieldContainer &container)
{
    _pictures.erase(container.getFieldContainerId());
    std::erase(_waiting, container.getFieldContainerId());
}

void MaterialPreviews::ask(std::uint32_t materialId)
{
    if (std::find(_waiting.begin(), _waiting.end(), materialId) == _waiting.end())
        _waiting.push_back(materialId);
}

void MaterialPreviews::renderNext()
{
    if (_waiting.empty()) {
        _idle->stop();
        return;
    }
    const std::uint32_t id = _waiting.front();
    _waiting.erase(_waiting.begin());
    const osg::FCRef<osg::Material> material(materialOf(id));
    if (!material)
        return;
    const auto image =
        osg::FCRef<osg::Image>::adopt(kxMaterialPreviewRenderer::renderPreview(material.get(), Size, Size, Samples));
    _pictures[id] = fitted(image.get());
    Q_EMIT previewChanged(id);
}
