// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/LogCapture.h"

#include "SceneGraph/SceneLog.h"

#include <mutex>
#include <utility>

namespace kximport {

struct LogCapture::State
{
    std::mutex mutex;
    std::string last;
};

LogCapture::LogCapture() : _state(std::make_shared<State>())
{
    osg::setLogReceiver([state = _state](osg::LogLevel, const std::string &text) {
        const std::lock_guard lock(state->mutex);
        state->last = text;
    });
}

LogCapture::~LogCapture()
{
    osg::setLogReceiver({});
}

std::string LogCapture::takeReason(const std::string &path)
{
    std::string line;
    {
        const std::lock_guard lock(_state->mutex);
        line = std::exchange(_state->last, {});
    }
    const std::string named = path + "\": ";
    const std::size_t start = line.find(named);
    return start == std::string::npos ? line : line.substr(start + named.size());
}

} // namespace kximport
