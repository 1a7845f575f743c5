// SPDX-License-Identifier: Apache-2.0
#pragma once

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#include <sanitizer/tsan_interface.h>
#define KX_TELLS_THREAD_SANITIZER
#endif
#endif

namespace kxAssetsInternal {

/// What a thread did before handOver(object) is done for the one that calls takeOver(object) later.
///
/// Only ThreadSanitizer is told: the order itself comes from the queue that carries the object. Qt's queues are not built
/// with ThreadSanitizer, which therefore does not see it.
inline void handOver([[maybe_unused]] void *object)
{
#ifdef KX_TELLS_THREAD_SANITIZER
    __tsan_release(object);
#endif
}

inline void takeOver([[maybe_unused]] void *object)
{
#ifdef KX_TELLS_THREAD_SANITIZER
    __tsan_acquire(object);
#endif
}

} // namespace kxAssetsInternal
