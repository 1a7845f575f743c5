// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "Kernel/kxBaseService.h"

/// The kernel's own service, always registered: says when services may begin to work.
class KX_KERNEL_EXPORT kxKernelService : public kxBaseService
{
    Q_OBJECT

public:
    explicit kxKernelService(QObject *parent = nullptr);
    ~kxKernelService() override;

Q_SIGNALS:
    /// The kernel is up and everything registered so far has run. Emitted again after a library that was loaded later has
    /// registered its services, so that theirs are initialised as well.
    void ready();
};
