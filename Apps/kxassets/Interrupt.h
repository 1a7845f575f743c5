// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Ctrl-C ends a batch after the step that is under way; pressed a second time it ends the program at once.
namespace Interrupt {

void install();
bool wasRequested();

} // namespace Interrupt
