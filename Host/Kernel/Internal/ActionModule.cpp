// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/ActionModule.h"

#include "Kernel/kxActions.h"
#include "Kernel/kxKernelRegister.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxMessageCodes.h"

namespace kxKernelInternal {

namespace {

const kxKernelRegister registration([] { static const ActionModule module; });

} // namespace

void ActionModule::doReceive(const kxMessage &message)
{
    if (message.code() == kxMessageCodes::NodeIsWritten && message.get<bool>("addActionAttachment").value_or(false))
        kxActions::attachTo(message.get<osg::NodePtr>("node").value_or(osg::NodePtr()));
}

} // namespace kxKernelInternal
