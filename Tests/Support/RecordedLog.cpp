// SPDX-License-Identifier: Apache-2.0
#include "Support/RecordedLog.h"

#include "SceneGraph/SceneLog.h"

namespace kxtest {

RecordedLog::RecordedLog()
{
    osg::setLogReceiver([this](osg::LogLevel, const std::string &text) {
        const std::lock_guard lock(_mutex);
        _lines.push_back(text);
    });
}

RecordedLog::~RecordedLog()
{
    osg::setLogReceiver({});
}

std::vector<std::string> RecordedLog::lines() const
{
    const std::lock_guard lock(_mutex);
    return _lines;
}

} // namespace kxtest
