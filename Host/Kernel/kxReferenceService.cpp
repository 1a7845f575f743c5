// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxReferenceService.h"

kxReferenceService::kxReferenceService(QObject *parent) : kxBaseService(parent) {}

kxReferenceService::~kxReferenceService() = default;
