// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace kxKernelInternal {

/// Writes \a text to standard error in one piece; a closed pipe or a full disk is ignored.
void writeToStandardError(const std::string &text);

} // namespace kxKernelInternal
