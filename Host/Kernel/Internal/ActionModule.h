// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/kxModuleBase.h"

namespace kxKernelInternal {

/// Owns the actions of the scene: before a node is written, it writes those of the sub-tree into its JSON attachment.
class ActionModule final : public kxModuleBase
{
private:
    void doReceive(const kxMessage &message) override;
};

} // namespace kxKernelInternal
