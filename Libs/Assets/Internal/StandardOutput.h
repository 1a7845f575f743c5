// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace kxAssetsInternal {

/// Writes \a text and a line end to standard output in one piece, without flushing.
///
/// A write that fails is ignored: a diagnostic line is never the reason why an operation on an asset fails.
void printLine(const std::string &text);

} // namespace kxAssetsInternal
