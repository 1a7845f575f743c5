// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

#include <functional>
#include <string>

class kxMessage;

namespace kxKernelInternal {
class ModuleRegistry;
}

/// A module of the host: handles named calls and receives broadcasts from its construction to its destruction.
///
/// Main thread only.
class KX_KERNEL_EXPORT kxModuleBase
{
public:
    using Handler = std::function<void(kxMessage &message)>;

    virtual ~kxModuleBase();
    kxModuleBase(const kxModuleBase &) = delete;
    kxModuleBase &operator=(const kxModuleBase &) = delete;

    /// Broadcasts \a message to all modules in the order of their creation: before the call returns, or, with
    /// \a deferred true, a copy of it on the next pass of the event loop.
    static void sendMessage(const kxMessage &message, bool deferred);

protected:
    kxModuleBase();

    /// Makes \a handler answer the calls of \a name. Of several handlers the newest answers; when its module goes, the one
    /// before it answers again.
    void registerHandler(const std::string &name, Handler handler);

private:
    friend class kxKernelInternal::ModuleRegistry;

    void receive(const kxMessage &message) { doReceive(message); }

    /// Called for each broadcast, whatever its code. Does nothing by default.
    virtual void doReceive(const kxMessage &message);
};
