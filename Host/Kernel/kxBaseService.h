// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

#include <QObject>

/// Base of the services that libraries offer through kxKernelServiceFactory. Main thread only.
class KX_KERNEL_EXPORT kxBaseService : public QObject
{
    Q_OBJECT

public:
    explicit kxBaseService(QObject *parent = nullptr);
    ~kxBaseService() override;

    bool isInitialized() const { return _initialized; }

public Q_SLOTS:
    /// Initialises the service the first time; further calls do nothing. Connect kxKernelService::ready() to it.
    void init();

private:
    /// Called once, when the kernel is up. Does nothing by default.
    virtual void doInit();

    bool _initialized = false;
};
