// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

#include <string>

/// How much a log line matters; ascending.
enum class kxLogLevel { Debug, Info, Warning, Error };

/// Receives every line of the host log that passes the log's level.
///
/// Lines come from any thread, one at a time: the log calls a sink under its own lock, so a sink must not log.
class KX_KERNEL_EXPORT kxLogSink
{
public:
    kxLogSink() = default;
    virtual ~kxLogSink();
    kxLogSink(const kxLogSink &) = delete;
    kxLogSink &operator=(const kxLogSink &) = delete;

    /// \a text is the formatted message as UTF-8, without a line end of its own.
    virtual void write(kxLogLevel level, const std::string &text) = 0;
};
