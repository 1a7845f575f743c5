// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"

#include <string>

namespace osg {

/// Ties an object of the scene to the asset that it came from.
class KX_SCENEGRAPH_EXPORT AssetAttachment final : public Attachment
{
    OSG_CONTAINER(AssetAttachment, Attachment)

    OSG_FIELD(std::string, Uuid)          ///< 36 characters, lower case; empty: none
    OSG_FIELD(std::string, Category)      ///< the internal category name, as on disk
    OSG_FIELD(std::string, Url)           ///< the asset's directory, UTF-8
    OSG_FIELD(std::uint32_t, Checksum, 0) ///< of the stored asset when the object was loaded or saved
    OSG_FIELD(bool, UserEdited, false)    ///< known to differ from the stored asset

public:
    /// Null for a null container and one without the attachment.
    static Ptr getAssetAttachment(const AttachmentContainerPtr &container);
    /// The attachment of the container, made when it is missing; null for null.
    static Ptr createAssetAttachment(const AttachmentContainerPtr &container);
};

/// The class that holds the fields.
using AssetAttachmentBase = AssetAttachment;
using AssetAttachmentPtr = AssetAttachment::Ptr;

} // namespace osg
