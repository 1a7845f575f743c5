// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/ExternalThread.h"

#include "SceneGraph/FieldContainerFactory.h"

#include <atomic>
#include <cassert>

namespace osg {

namespace {

std::atomic<unsigned> knownThreads = 0;

} // namespace

ExternalThread *ExternalThread::get(const char *name)
{
    thread_local ExternalThread thread;
    if (thread._refCount++ == 0)
        thread._name = name;
    return &thread;
}

void ExternalThread::initialize(ExternalThread *thread, unsigned aspect)
{
    assert(aspect == 0);
    static_cast<void>(aspect);
    if (thread == nullptr || thread->_isInitialized)
        return;
    thread->_isInitialized = true;
    ++knownThreads;
}

bool ExternalThread::isCurrentKnown()
{
    if (FieldContainerFactory::the().isMainThread())
        return true;
    ExternalThread *thread = get(nullptr);
    const bool isKnown = thread->_isInitialized;
    thread->subRef();
    return isKnown;
}

unsigned ExternalThread::knownCount()
{
    return knownThreads;
}

void ExternalThread::subRef()
{
    if (_refCount > 0 && --_refCount == 0 && _isInitialized) {
        _isInitialized = false;
        --knownThreads;
    }
}

KnownThread::KnownThread() : _thread(ExternalThread::get(nullptr))
{
    ExternalThread::initialize(_thread, 0);
}

KnownThread::~KnownThread()
{
    _thread->subRef();
}

} // namespace osg
