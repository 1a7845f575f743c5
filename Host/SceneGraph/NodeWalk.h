// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Node.h"

#include <functional>

namespace osg {

/// Calls \a visit for the root and everything below, parents first, children in order. Without recursion: trees may be
/// deeper than the stack. \a visit must not change the tree. A null root has nothing to visit.
KX_SCENEGRAPH_EXPORT void forEachNode(const NodePtr &root, const std::function<void(const NodePtr &node)> &visit);

/// The first node that \a fits, in the same order; null where there is none.
KX_SCENEGRAPH_EXPORT NodePtr findNode(const NodePtr &root, const std::function<bool(const NodePtr &node)> &fits);

} // namespace osg
