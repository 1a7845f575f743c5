// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FileNames.h"

#include <vector>

namespace architecture {

/// Headers that have no source on purpose.
const std::vector<NameException> &headersWithoutSource();
/// Sources that have no header on purpose.
const std::vector<NameException> &sourcesWithoutHeader();
/// Test files that are named after a capability rather than a class.
const std::vector<NameException> &testsOfCapabilities();

} // namespace architecture
