// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxLog.h"
#include "SceneGraph/SceneLog.h"

namespace {

kxLogLevel levelOf(osg::LogLevel level)
{
    switch (level) {
    case osg::LogLevel::Info:
        return kxLogLevel::Info;
    case osg::LogLevel::Warning:
        return kxLogLevel::Warning;
    case osg::LogLevel::Error:
        break;
    }
    return kxLogLevel::Error;
}

// Once the kernel is loaded, the scene graph's lines go to the host log.
[[maybe_unused]] const bool connected = [] {
    osg::setLogReceiver([](osg::LogLevel level, const std::string &text) { kxLog::write(levelOf(level), text); });
    return true;
}();

} // namespace
