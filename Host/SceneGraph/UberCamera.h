// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"
#include "SceneGraph/Volume.h"

namespace osg {

/// A perspective camera.
class KX_SCENEGRAPH_EXPORT UberCamera final : public AttachmentContainer
{
    OSG_CONTAINER(UberCamera, AttachmentContainer)

    OSG_FIELD(Vec3d, From, {0.0, 0.0, 5.0})
    OSG_FIELD(Vec3d, At)
    OSG_FIELD(Vec3d, Up, {0.0, 1.0, 0.0})
    OSG_FIELD(double, FieldOfView, 0.6) ///< vertical, radians
    OSG_FIELD(double, Near, 0.01)
    OSG_FIELD(double, Far, 10000.0)

public:
    /// The fields that say what the camera is like, and those that say from where it looks and to where.
    static FieldMask getCombinedCameraAttributesMask();
    static FieldMask getCombinedViewingAttributesMask();

    /// Moves the camera along its viewing direction, and its target to the middle of the box, so that the box fills the
    /// picture, which is taken to be at least as wide as high. With \a adaptDepth the near and far planes enclose the box as well. \a offset moves
    /// the middle. An empty box changes nothing.
    /// Expects an open edit of all fields.
    void zoomTo(const Volume &box, bool adaptDepth, const Vec3d &offset);
    /// Copies exactly the fields of \a mask from the other camera; nothing for null. With \a announce listeners are told
    /// also where nothing differs.
    /// Expects an open edit of the mask.
    void syncWith(const FCPtr<AttachmentContainerPtr, UberCamera> &other, FieldMask mask, bool announce);
};

using UberCameraPtr = UberCamera::Ptr;

} // namespace osg
