// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxScenegraphNotifier.h"

kxScenegraphNotifier::kxScenegraphNotifier(QObject *parent) : QObject(parent) {}

kxScenegraphNotifier::~kxScenegraphNotifier() = default;
