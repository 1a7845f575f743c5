// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Fields.h"

#include <cstdint>
#include <string>
#include <vector>

namespace osg {
class FieldContainer;
}

/// Writes down each edit as long as it lives: of what, and which fields it names, whether they are set or not. One at a time.
class EditWatch
{
public:
    EditWatch();
    ~EditWatch();
    EditWatch(const EditWatch &) = delete;
    EditWatch &operator=(const EditWatch &) = delete;

    /// Like "Node Children" and "Transform3D all", oldest first; empty again afterwards.
    std::vector<std::string> take();

    /// The same, of this container only, and nothing is forgotten.
    std::vector<std::string> editsOf(std::uint32_t id) const;

private:
    void note(const osg::FieldContainer &container, osg::FieldMask fields);

    struct Edit
    {
        std::uint32_t id;
        std::string text;
    };

    std::vector<Edit> _edits;
};
