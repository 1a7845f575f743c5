// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Fields.h"
#include "SceneGraph/SceneGraphExport.h"

#include <functional>
#include <string>
#include <vector>

namespace osg {

/// Keeps watch that fields change only inside an edit that names them.
///
/// Tests enable it and fail on what it recorded; in a debug build without it a violation aborts, in a release build it
/// passes silently. Safe from any thread.
class KX_SCENEGRAPH_EXPORT EditAudit
{
public:
    static void enable();
    /// Hands out what was recorded since the last call, oldest first.
    static std::vector<std::string> takeViolations();

    static void record(const FieldContainer &container, FieldMask fields, const char *what);

    using Observer = std::function<void(const FieldContainer &container, FieldMask fields)>;
    /// Is called at the beginning of each edit, nested ones included, with the fields that it names: listeners hear only of
    /// those that were set. An empty function ends that. Set on the main thread, and called for its edits only.
    static void setObserver(Observer observer);
    static void noteBegin(const FieldContainer &container, FieldMask fields);
};

} // namespace osg
