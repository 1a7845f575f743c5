// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/SceneLog.h"

#include <cstdio>
#include <mutex>
#include <utility>

namespace osg {

namespace {

struct Receiver
{
    std::mutex mutex;
    LogReceiver function;
};

Receiver &theReceiver()
{
    // Never destroyed: static destructors elsewhere may still have something to say.
    static auto *receiver = new Receiver;
    return *receiver;
}

} // namespace

void logLine(LogLevel level, const std::string &text)
{
    LogReceiver receiver;
    {
        const std::lock_guard lock(theReceiver().mutex);
        receiver = theReceiver().function;
    }
    if (receiver)
        receiver(level, text);
    else
        std::fprintf(stderr, "%s\n", text.c_str());
}

void setLogReceiver(LogReceiver receiver)
{
    const std::lock_guard lock(theReceiver().mutex);
    theReceiver().function = std::move(receiver);
}

} // namespace osg
