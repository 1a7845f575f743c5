// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

#include <QPixmap>
#include <QString>

/// The icons that come with the host. Main thread only.
class KX_KERNEL_EXPORT kxIconManager
{
public:
    kxIconManager() = delete;

    /// The icon of that name, for example "scenegraph/Skydome.svg", \a size pixels high, or in its natural size of 32 pixels
    /// for 0. Rendered once and kept. A null pixmap, logged the first time, when there is no such icon.
    static QPixmap get(const QString &name, int size = 0);
};
