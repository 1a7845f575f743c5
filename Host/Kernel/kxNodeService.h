// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "Kernel/kxBaseService.h"
#include "Kernel/kxdObject.h"

#include <cstdint>

/// Nodes of the scene for scripts. Main thread only.
class KX_KERNEL_EXPORT kxNodeService : public kxBaseService
{
    Q_OBJECT

public:
    explicit kxNodeService(QObject *parent = nullptr);
    ~kxNodeService() override;

    /// Null for 0 and for an id that is no living node's.
    kxdNodePtr nodeById(std::uint32_t id);
};
