// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace kxtest {

/// Looks for leaks in builds that can, once all other threads wait for something, and not when the process ends: the checker
/// crashes over threads of libraries that begin or end while it looks. What only the end would release is reachable still,
/// and so no leak. Ends the process where it finds one.
void checkForLeaks();

} // namespace kxtest
