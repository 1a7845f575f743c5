// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxLogSink.h"

kxLogSink::~kxLogSink() = default;
