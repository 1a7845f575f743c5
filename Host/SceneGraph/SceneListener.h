// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Fields.h"
#include "SceneGraph/SceneGraphExport.h"

namespace osg {

class FieldContainer;

/// Hears of every change in the scene graph. Called on the main thread, after the outermost edit of a container ended.
/// Must not edit the container that it is told of.
class KX_SCENEGRAPH_EXPORT SceneListener
{
public:
    virtual ~SceneListener() = default;

    virtual void containerChanged(FieldContainer &container, FieldMask fields) = 0;
    /// The container is still whole, and gone right afterwards.
    virtual void containerDestroyed(FieldContainer &container) { static_cast<void>(container); }
};

} // namespace osg
