// SPDX-License-Identifier: Apache-2.0
#include "Support/LeakCheck.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KX_CHECKS_LEAKS
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define KX_CHECKS_LEAKS
#endif

#if defined(KX_CHECKS_LEAKS)
#include <sanitizer/lsan_interface.h>
#endif

void kxtest::checkForLeaks()
{
#if defined(KX_CHECKS_LEAKS)
    __lsan_do_leak_check();
#endif
}
