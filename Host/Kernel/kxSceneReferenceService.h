// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/kxReferenceService.h"

/// The references of the scene document.
class KX_KERNEL_EXPORT kxSceneReferenceService final : public kxReferenceService
{
    Q_OBJECT

public:
    explicit kxSceneReferenceService(QObject *parent = nullptr);
    ~kxSceneReferenceService() override;

    std::vector<kxdReferenceNodePtr> referenceNodes(const kxdNodePtr &node) override;
    bool makeOrdinary(const kxdReferenceNodePtr &node) override;
};
