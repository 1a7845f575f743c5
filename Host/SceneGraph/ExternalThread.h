// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/SceneGraphExport.h"

namespace osg {

/// Makes a thread known to the scene graph for as long as it works with it.
///
/// get() on the thread itself, initialize(), work, subRef(). Nested use on one thread is counted.
class KX_SCENEGRAPH_EXPORT ExternalThread
{
public:
    /// The object of the calling thread with one reference added; the name is for diagnostics and may be null.
    static ExternalThread *get(const char *name);
    /// Expects the object of the calling thread; the aspect is 0, the only one there is.
    static void initialize(ExternalThread *thread, unsigned aspect);
    /// True on a thread that is known at this moment; the main thread always is.
    static bool isCurrentKnown();
    static unsigned knownCount();

    void subRef();

private:
    ExternalThread() = default;

    const char *_name = nullptr;
    int _refCount = 0;
    bool _isInitialized = false;
};

/// Makes the thread that it is made on known, for as long as it lives.
class KX_SCENEGRAPH_EXPORT KnownThread
{
public:
    KnownThread();
    ~KnownThread();
    KnownThread(const KnownThread &) = delete;
    KnownThread &operator=(const KnownThread &) = delete;

private:
    ExternalThread *_thread;
};

} // namespace osg
