// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxSceneplateService.h"

kxSceneplateService::kxSceneplateService(QObject *parent) : kxBaseService(parent) {}

kxSceneplateService::~kxSceneplateService() = default;
