// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/kxModuleBase.h"
#include "SceneGraph/Node.h"

#include <cstdint>
#include <vector>

/// Writes "actions" where it is asked to, as the module that owns actions does, and notes the nodes' ids.
class ActionModule final : public kxModuleBase
{
public:
    static bool hasActions(const osg::NodePtr &node);
    static void removeActions(const osg::NodePtr &node);

    std::vector<std::uint32_t> asked;

private:
    void doReceive(const kxMessage &message) override;
};
