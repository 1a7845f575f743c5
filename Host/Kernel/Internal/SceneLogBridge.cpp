// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/SceneLogBridge.h"

#include "Kernel/kxLog.h"
#include "SceneGraph/SceneLog.h"

namespace kxKernelInternal {

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

[[maybe_unused]] const bool isConnected = (connectSceneLog(), true);

} // namespace

void connectSceneLog()
{
    osg::setLogReceiver([](osg::LogLevel level, const std::string &text) { kxLog::write(levelOf(level), text); });
}

} // namespace kxKernelInternal
