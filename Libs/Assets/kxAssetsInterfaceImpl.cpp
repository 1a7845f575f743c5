// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetsInterfaceImpl.h"

#include "Assets/Internal/StandardOutput.h"
#include "Kernel/kxController.h"
#include "Kernel/kxInterfaceFactory.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxMessageCodes.h"
#include "Kernel/kxModuleBase.h"

#include <QString>

#include <cstdint>

namespace {

kxAssetsInterfaceImpl instance;

} // namespace

kxAssetsInterfaceImpl::kxAssetsInterfaceImpl()
{
    kxInterfaceFactory::the().registerObject(this);
}

void kxAssetsInterfaceImpl::test()
{
    kxAssetsInternal::printLine("hallo!!!");
}

void kxAssetsInterfaceImpl::loadSceneplateAssets(const std::vector<std::string> &uuids, osg::NodePtr parent)
{
    if (uuids.empty())
        return;
    // Loading may run an event loop, in which the parent goes; its id then reads as none.
    const std::uint32_t parentId = parent ? parent.getFieldContainerId() : 0;
    for (const std::string &uuid : uuids) {
        kxMessage message;
        message.set("uuid", QString::fromStdString(uuid));
        message.set("parentid", parentId);
        kxController::call("loadSceneplateAsset", message);
    }
    kxModuleBase::sendMessage(kxMessage(kxMessageCodes::SceneViews), false);
}
