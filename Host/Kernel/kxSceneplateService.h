// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "Kernel/kxBaseService.h"
#include "Kernel/kxdObject.h"

#include <QImage>

/// What a module that shows the sceneplates offers to the others.
class KX_KERNEL_EXPORT kxSceneplateService : public kxBaseService
{
    Q_OBJECT

public:
    explicit kxSceneplateService(QObject *parent = nullptr);
    ~kxSceneplateService() override;

    /// The set of sceneplates changed: whatever shows them has to refresh.
    virtual void nodesChanged() = 0;
    /// The plate's picture; a null image for null, for a destroyed node and for a group without content.
    virtual QImage previewImage(const kxdNodePtr &node) = 0;
};
