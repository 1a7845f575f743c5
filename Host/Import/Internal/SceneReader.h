// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Import/Internal/ImportNotes.h"
#include "Import/Internal/WorkerRequest.h"
#include "Import/kxImportedScene.h"
#include "SceneGraph/Result.h"
#include "SceneGraph/USphereEnvironmentMaterial.h"

#include <string>

namespace kximport {

/// Reads a scene file with the parsers, in this process. With ImportKind::Materials the root stays null.
///
/// \a workFolder is an existing folder for files in passing. The reason of a failure does not name the file.
osg::Result<kxImportedScene> readForeignScene(const std::string &path, ImportKind kind, const std::string &workFolder,
                                              ImportNotes &notes);

/// Reads a picture as an environment, in this process. The reason of a failure does not name the file.
osg::Result<osg::FCRef<osg::USphereEnvironmentMaterial>> readForeignEnvironment(const std::string &path);

} // namespace kximport
