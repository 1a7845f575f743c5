// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxNodeService.h"

#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxTypeConverter.h"

kxNodeService::kxNodeService(QObject *parent) : kxBaseService(parent) {}

kxNodeService::~kxNodeService() = default;

kxdNodePtr kxNodeService::nodeById(std::uint32_t id)
{
    return kxTypeConverter::convertNode(kxNodeUtils::getNodeFromId(id));
}
