// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>
#include <QThread>

namespace kxAssetsInternal {

/// The application's thread. Before there is an application, and after it, every thread counts as it.
inline bool isOnMainThread()
{
    return !QCoreApplication::instance() || QCoreApplication::instance()->thread() == QThread::currentThread();
}

} // namespace kxAssetsInternal
