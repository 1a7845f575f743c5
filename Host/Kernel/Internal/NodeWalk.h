// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Node.h"

#include <functional>

namespace kxKernelInternal {

/// Calls \a visit for the root and everything below, parents first, children in order. Without recursion: trees may be
/// deeper than the stack. \a visit must not change the tree. A null root has nothing to visit.
void forEachNode(const osg::NodePtr &root, const std::function<void(const osg::NodePtr &node)> &visit);

} // namespace kxKernelInternal
