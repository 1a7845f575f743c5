// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Material.h"
#include "SceneGraph/NodeCore.h"

#include <cstdint>
#include <vector>

namespace kxKernelInternal {

/// The fields of a core by which it assigns materials to its nodes or holds them for the scene, and the entries of a
/// composite material. Empty for types that have none; what a BRDF or uber material is made of does not count.
const std::vector<osg::FieldInfo> &materialFields(const osg::FieldContainerType &type);

/// The materials in those fields, in order, without nulls; the second gives their ids.
std::vector<osg::MaterialPtr> materialsIn(const osg::FieldContainerPtr &container);
std::vector<std::uint32_t> materialIdsIn(osg::FieldContainer &container);

/// The materials that a core assigns; those that a pool merely holds are not assigned.
std::vector<osg::MaterialPtr> assignedMaterials(const osg::NodeCorePtr &core);

} // namespace kxKernelInternal
