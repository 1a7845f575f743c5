// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/SceneGraphExport.h"

namespace osg {

class FieldContainerFactory;

/// Tells the factory of every container type of this library.
void registerSceneGraphTypes(FieldContainerFactory &factory);

} // namespace osg
