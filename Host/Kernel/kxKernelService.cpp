// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxKernelService.h"

kxKernelService::kxKernelService(QObject *parent) : kxBaseService(parent) {}

kxKernelService::~kxKernelService() = default;
