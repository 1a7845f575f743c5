// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"

#include <string>

namespace osg {

/// Lights that light some nodes only, or leave some out.
class KX_SCENEGRAPH_EXPORT LightLinkSet final : public AttachmentContainer
{
    OSG_CONTAINER(LightLinkSet, AttachmentContainer)

    OSG_MFIELD(std::string, Lights)     ///< keys of the lights' nodes
    OSG_MFIELD(std::string, Members)    ///< keys of the nodes
    OSG_FIELD(bool, IsExclusive, false) ///< the members are left out
};

using LightLinkSetPtr = LightLinkSet::Ptr;

} // namespace osg
