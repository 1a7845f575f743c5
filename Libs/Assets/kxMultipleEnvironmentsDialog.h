// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetsExport.h"

#if !defined(Q_MOC_RUN) // which cannot read concepts
#include "SceneGraph/UEnvironmentMaterial.h"
#endif

#include <QDialog>

#include <memory>
#include <set>

namespace Ui {
class kxMultipleEnvironmentsDialog;
}

/// Asks which of several environment materials is to stand for an environment.
///
/// While it exists the arrow cursor is shown, because hosts show a busy one while they load. Main thread only.
class KX_ASSETS_EXPORT kxMultipleEnvironmentsGUII : public QDialog
{
    Q_OBJECT

public:
    explicit kxMultipleEnvironmentsGUII(QWidget *parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    ~kxMultipleEnvironmentsGUII() override;

    /// Lists the materials by name, with their previews, and selects the first one.
    void fill(const std::set<osg::UEnvironmentMaterialPtr> &materials);
    /// Null when nothing is selected, or when it was destroyed meanwhile.
    osg::UEnvironmentMaterialPtr selectedMaterial() const;

private:
    std::unique_ptr<Ui::kxMultipleEnvironmentsDialog> _form;
};
