// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxMultipleEnvironmentsDialog.h"

#include "Assets/Internal/MultipleEnvironmentsForm.h"
#include "Assets/Internal/StandardOutput.h"
#include "Kernel/kxMaterials.h"
#include "Rendering/QImageConverter.h"
#include "SceneGraph/FieldContainerFactory.h"

#include <QGuiApplication>
#include <QIcon>
#include <QListWidget>
#include <QPixmap>

namespace {

QIcon previewIcon(const osg::UEnvironmentMaterialPtr &material)
{
    const osg::ImagePtr image = kxMaterials::getPreviewImage(material);
    if (!image)
        return {};
    const QPixmap pixmap = QPixmap::fromImage(QImageConverter::convertToQImage(image));
    QIcon icon;
    icon.addPixmap(pixmap, QIcon::Normal, QIcon::On);
    icon.addPixmap(pixmap, QIcon::Selected, QIcon::On);
    return icon;
}

} // namespace

kxMultipleEnvironmentsGUII::kxMultipleEnvironmentsGUII(QWidget *parent, Qt::WindowFlags flags)
    : QDialog(parent, flags), _form(std::make_unique<Ui::kxMultipleEnvironmentsDialog>())
{
    _form->setupUi(this);
    _form->_envList->setSpacing(4);
    QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
}

kxMultipleEnvironmentsGUII::~kxMultipleEnvironmentsGUII()
{
    QGuiApplication::restoreOverrideCursor();
}

void kxMultipleEnvironmentsGUII::fill(const std::set<osg::UEnvironmentMaterialPtr> &materials)
{
    for (const osg::UEnvironmentMaterialPtr &material : materials) {
        if (!material)
            continue;
        const std::string name = kxMaterials::getName(material);
        kxAssetsInternal::printLine("adding " + name);
        auto *item = new QListWidgetItem(QString::fromUtf8(name.c_str()));
        item->setData(Qt::UserRole, static_cast<unsigned>(material.getFieldContainerId()));
        if (const QIcon icon = previewIcon(material); !icon.isNull())
            item->setIcon(icon);
        _form->_envList->addItem(item);
    }
    if (QListWidgetItem *first = _form->_envList->item(0)) {
        _form->_envList->setCurrentItem(first);
        first->setSelected(true);
    }
    adjustSize();
}

osg::UEnvironmentMaterialPtr kxMultipleEnvironmentsGUII::selectedMaterial() const
{
    const QList<QListWidgetItem *> selected = _form->_envList->selectedItems();
    if (selected.isEmpty())
        return nullptr;
    const unsigned id = selected.front()->data(Qt::UserRole).toUInt();
    return osg::UEnvironmentMaterialPtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
}
