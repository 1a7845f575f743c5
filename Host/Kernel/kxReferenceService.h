// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "Kernel/kxBaseService.h"
#include "Kernel/kxdObject.h"

#include <vector>

/// Nodes whose content comes from other files. Main thread only.
class KX_KERNEL_EXPORT kxReferenceService : public kxBaseService
{
    Q_OBJECT

public:
    explicit kxReferenceService(QObject *parent = nullptr);
    ~kxReferenceService() override;

    /// The reference nodes at and below the node, depth first, nested ones included. Empty for null.
    virtual std::vector<kxdReferenceNodePtr> referenceNodes(const kxdNodePtr &node) = 0;
    /// Keeps the loaded content in place and drops the link to its file. False when it is no reference node (any more).
    virtual bool makeOrdinary(const kxdReferenceNodePtr &node) = 0;
};
