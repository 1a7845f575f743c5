// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldContainer.h"

#include <pybind11/pybind11.h>

namespace kxPython {

/// Fields of containers as Python values, as their declarations say: numbers and texts are themselves, tuples of numbers
/// tuples, several values lists, references containers or None.
class FieldAccess
{
public:
    FieldAccess() = delete;

    /// Throws KeyError for a name that is no field.
    static const osg::FieldInfo &find(const osg::FieldContainer &container, const std::string &name);
    static pybind11::object get(const osg::FieldContainerPtr &container, const osg::FieldInfo &field);
    /// Throws TypeError or ValueError, and changes nothing, for a value that does not fit.
    static void set(const osg::FieldContainerPtr &container, const osg::FieldInfo &field,
                    const pybind11::object &value);
};

} // namespace kxPython
