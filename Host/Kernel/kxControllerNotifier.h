// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

#include <QObject>

/// Tells the views of the host what was asked of the controller. Main thread only.
class KX_KERNEL_EXPORT kxControllerNotifier : public QObject
{
    Q_OBJECT

public:
    explicit kxControllerNotifier(QObject *parent = nullptr);
    ~kxControllerNotifier() override;

Q_SIGNALS:
    /// The views are to render the scene now. Never emitted while render updates are off.
    void renderUpdateRequested();

    /// Emitted only when the state really changed.
    void modifiedChanged(bool modified);

    /// A file is being loaded whose progress the user is to see; the second follows in every case.
    void fileLoadingStarted(const QString &path);
    void fileLoadingFinished(const QString &path);
};
