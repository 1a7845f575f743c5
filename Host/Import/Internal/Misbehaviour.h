// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Import/Internal/WorkerRequest.h"

namespace kximport {

/// Does what a parser with a fault does, so that tests can see what becomes of it: "crash", "hang", "memory", "garbage"
/// (a result that is none), "nothing" (no result, but all is well), "flood" (a report without end), "quiet hang" (the
/// report is closed first), "exit". Returns the exit code, if at all.
int misbehave(const WorkerRequest &request);

} // namespace kximport
