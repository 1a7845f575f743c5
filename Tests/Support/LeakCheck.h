// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace kxtest {

/// Looks for leaks now, in builds that can, and not once more when the process ends: threads of libraries end then, and the
/// checker crashes now and then over one that goes while it looks. What only the end would release is reachable still, and
/// so no leak. Ends the process where it finds one.
void checkForLeaks();

} // namespace kxtest
