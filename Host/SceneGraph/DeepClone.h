// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldContainer.h"

#include <vector>

namespace osg {

/// Containers that a clone refers to instead of copying them.
using ShareList = std::vector<FieldContainerPtr>;

/// A copy of \a container and of everything it reaches, what \a share lists apart; the result has count 0.
///
/// What was shared within the original is shared within the copy. Null gives null.
KX_SCENEGRAPH_EXPORT FieldContainerPtr deepClone(const FieldContainerPtr &container, const ShareList &share);

/// The same with the handle type kept.
template <Handle Ptr> Ptr deepClone(const Ptr &container, const ShareList &share)
{
    return Ptr::dcast(deepClone(static_cast<const FieldContainerPtr &>(container), share));
}

} // namespace osg
