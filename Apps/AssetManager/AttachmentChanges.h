// SPDX-License-Identifier: Apache-2.0
#pragma once

#if !defined(Q_MOC_RUN)
#include "SceneGraph/FieldValue.h"
#endif

#include <cstdint>
#include <string>
#include <vector>

class SceneCommand;

/// What becomes of the attachments that tie objects to assets, while these are saved. Main thread only.
class AttachmentChanges
{
public:
    /// Looks at the attachments as they are. Objects without one are passed over.
    explicit AttachmentChanges(const std::vector<std::uint32_t> &containerIds);

    /// Hands over what is different now, as steps that were done already.
    void adoptInto(SceneCommand &command) const;

private:
    struct Field
    {
        std::uint32_t attachmentId = 0;
        std::string name;
        osg::FieldValue before;
    };
    std::vector<Field> _fields;
};
