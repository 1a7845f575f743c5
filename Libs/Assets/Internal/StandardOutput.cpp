// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/StandardOutput.h"

#include <cstdio>

namespace kxAssetsInternal {

void printLine(const std::string &text)
{
    // One call, so that a line is not torn by what the host writes on another thread.
    const std::string line = text + '\n';
    [[maybe_unused]] const std::size_t written = std::fwrite(line.data(), 1, line.size(), stdout);
}

} // namespace kxAssetsInternal
