// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldContainer.h"
#include "SceneGraph/Result.h"

#include <functional>
#include <string>
#include <vector>

namespace osg {

/// Keeps what a file is about to refer to alive; the order is that of the file's roots.
using SceneRoots = std::vector<FCRef<FieldContainer>>;

struct SceneWriteOptions
{
    /// Arrays are compressed one by one (zstd); otherwise they are stored as they are.
    bool isCompressed = false;
    /// Fields for which this answers true are written with their default; an empty function: none.
    std::function<bool(const FieldContainer &owner, const FieldInfo &field)> leavesOut;
};

/// Writes the roots and all that they reach as one file, replacing it whole or not at all.
///
/// The same structure gives the same bytes, whatever the ids and addresses in this process. The failure names the file
/// and the reason; nothing is logged.
[[nodiscard]] KX_SCENEGRAPH_EXPORT Result<void> writeSceneFile(const std::string &path,
                                                               const std::vector<FieldContainerPtr> &roots,
                                                               const SceneWriteOptions &options = {});

/// The roots of a file. Unknown types and fields are skipped with one log line for each name.
///
/// Anything damaged, cut off or hostile is a failure that names the file and the reason; nothing of it stays in memory,
/// and no allocation exceeds what the file's length justifies.
[[nodiscard]] KX_SCENEGRAPH_EXPORT Result<SceneRoots> readSceneFile(const std::string &path);

} // namespace osg
