// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace kxKernelInternal {

/// Sends the scene graph's lines to the host log. Happens by itself when the kernel is loaded; again it changes nothing.
void connectSceneLog();

} // namespace kxKernelInternal
