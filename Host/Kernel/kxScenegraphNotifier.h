// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

#include <QObject>

/// Tells views what happened to the scene document. Main thread only.
class KX_KERNEL_EXPORT kxScenegraphNotifier : public QObject
{
    Q_OBJECT

public:
    explicit kxScenegraphNotifier(QObject *parent = nullptr);
    ~kxScenegraphNotifier() override;

Q_SIGNALS:
    /// There is another document, or none any more; nothing of the former one is to be used.
    void documentChanged();
    /// Views that show the scene's structure are to refresh. Never emitted while updates are off.
    void updateRequested();
    void selectionChanged();
    /// A node or material was renamed by somebody who wants it known.
    void nameChanged(quint32 containerId);
    /// A material's free values changed, by somebody who wants it known.
    void valuePairsChanged(quint32 containerId);
};
