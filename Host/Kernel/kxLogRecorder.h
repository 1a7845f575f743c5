// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "Kernel/kxLogSink.h"

#include <mutex>
#include <string>
#include <vector>

/// Keeps the log's lines from its construction to its destruction; for tests, and for views that show recent messages.
///
/// Adds itself to the log and takes itself out again. Safe on any thread.
class KX_KERNEL_EXPORT kxLogRecorder final : public kxLogSink
{
public:
    kxLogRecorder();
    ~kxLogRecorder() override;

    void write(kxLogLevel level, const std::string &text) override;

    /// All texts in the order of arrival.
    std::vector<std::string> lines() const;

    /// The texts of one level in the order of arrival.
    std::vector<std::string> lines(kxLogLevel level) const;

    void clear();

private:
    struct Entry
    {
        kxLogLevel level;
        std::string text;
    };

    mutable std::mutex _mutex;
    std::vector<Entry> _entries;
};
