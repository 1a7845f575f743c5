// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace kxtest {

/// From now on, a test during which a field changed outside an edit that names it fails.
void installEditAuditListener();

} // namespace kxtest
