// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/StandardError.h"

#include <cstdio>

namespace kxKernelInternal {

void writeToStandardError(const std::string &text)
{
    // One call: standard error is unbuffered, so that a line cannot be torn by another thread's.
    [[maybe_unused]] const std::size_t written = std::fwrite(text.data(), 1, text.size(), stderr);
}

} // namespace kxKernelInternal
