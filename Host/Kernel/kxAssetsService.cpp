// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxAssetsService.h"

kxAssetsService::kxAssetsService(QObject *parent) : kxBaseService(parent) {}

kxAssetsService::~kxAssetsService() = default;
