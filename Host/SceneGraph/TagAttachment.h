// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"

#include <string>

namespace osg {

/// The tags of a material or node.
class KX_SCENEGRAPH_EXPORT TagAttachment final : public Attachment
{
    OSG_CONTAINER(TagAttachment, Attachment)

    OSG_MFIELD(std::string, Materials) ///< the material tags, UTF-8, in the order in which they were added

public:
    /// The tags joined by comma and blank, UTF-8.
    std::string getTagString() const;
    /// A tag that is there already is not added again. Expects an open edit of MaterialsFieldMask.
    void addMaterialTag(const std::string &tag);
    bool hasMaterialTag(const std::string &tag) const;
};

using TagAttachmentPtr = TagAttachment::Ptr;

} // namespace osg
