// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxBaseService.h"

kxBaseService::kxBaseService(QObject *parent) : QObject(parent) {}

kxBaseService::~kxBaseService() = default;

void kxBaseService::init()
{
    if (_initialized)
        return;
    _initialized = true;
    doInit();
}

void kxBaseService::doInit() {}
