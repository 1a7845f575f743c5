// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxLogRecorder.h"

#include "Kernel/kxLog.h"

kxLogRecorder::kxLogRecorder()
{
    kxLog::addSink(this);
}

kxLogRecorder::~kxLogRecorder()
{
    kxLog::removeSink(this);
}

void kxLogRecorder::write(kxLogLevel level, const std::string &text)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    _entries.push_back({level, text});
}

std::vector<std::string> kxLogRecorder::lines() const
{
    const std::lock_guard<std::mutex> lock(_mutex);
    std::vector<std::string> texts;
    for (const Entry &entry : _entries)
        texts.push_back(entry.text);
    return texts;
}

std::vector<std::string> kxLogRecorder::lines(kxLogLevel level) const
{
    const std::lock_guard<std::mutex> lock(_mutex);
    std::vector<std::string> texts;
    for (const Entry &entry : _entries) {
        if (entry.level == level)
            texts.push_back(entry.text);
    }
    return texts;
}

void kxLogRecorder::clear()
{
    const std::lock_guard<std::mutex> lock(_mutex);
    _entries.clear();
}
