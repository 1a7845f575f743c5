// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace kxKernelInternal {

/// See kxFile::makeValidFileName().
std::string makeValidFileName(const std::string &name);

} // namespace kxKernelInternal
