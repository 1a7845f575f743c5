// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldContainer.h"

#include <optional>
#include <string>
#include <vector>

namespace osg {

/// What distinguishes two structures, or nothing when they are equal.
///
/// Equal means: the same types, the same field values bit for bit, and the same pattern of sharing, at whatever ids and
/// addresses. The text names the path to the first difference, as in "Node.Core.Material.Roughness". Types in \a ignored
/// are passed over wherever a field refers to them.
KX_SCENEGRAPH_EXPORT std::optional<std::string>
findDifference(const FieldContainerPtr &a, const FieldContainerPtr &b,
               const std::vector<const FieldContainerType *> &ignored = {});

} // namespace osg
