// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxControllerNotifier.h"

kxControllerNotifier::kxControllerNotifier(QObject *parent) : QObject(parent) {}

kxControllerNotifier::~kxControllerNotifier() = default;
