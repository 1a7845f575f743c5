// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Import/ImportExport.h"
#include "Import/kxImportLimits.h"
#include "Import/kxImportedScene.h"
#include "SceneGraph/Result.h"
#include "SceneGraph/USphereEnvironmentMaterial.h"

#include <functional>
#include <string>
#include <vector>

/// Brings files of other programs into the scene graph: scenes, their materials alone, and pictures as environments.
///
/// The file is parsed in a process of its own, within limits of memory and time, which hands its result over as a
/// verified scene file. Whatever a parser does there (crash, hang, eat memory), here it is a failure like any other: the
/// reason names the file, nothing is logged for it, and no container is left behind. What could not be brought along
/// with a file that is otherwise fine (a missing texture, say) is one log line each.
///
/// Paths are UTF-8. Calls block until the work is done; main thread only, as they make nodes.
class KX_IMPORT_EXPORT kxSceneImporter
{
public:
    /// \a goOn is asked some thirty times a second while a file is parsed, by the calling thread, and may handle events;
    /// false ends the parser, and the import fails.
    explicit kxSceneImporter(const kxImportLimits &limits = {}, std::function<bool()> goOn = {});

    /// The program that parses; empty: it is looked for again. Without this call it is the one that the environment
    /// variable KX_IMPORT_WORKER names, else the one beside this library, in the neighbouring folders of programs, or
    /// beside the running program.
    static void setWorkerProgram(const std::string &path);

    /// glTF 2, OBJ, FBX, Collada, PLY, STL and what else the parsers know.
    ///
    /// Axes and units stay as the file has them. Faces keep their number of corners; texture coordinates count from the
    /// lower left corner. A node that neither turns nor shears is placed by a Transform3D, any other by a Transform with
    /// the file's exact matrix. Points, lines, animations and skins are left out.
    osg::Result<kxImportedScene> importScene(const std::string &path) const;

    /// The materials of a scene file, in its order, apart from the placeholder that a parser adds for meshes without a
    /// material when no mesh needs it. Of OBJ these are all; of glTF and FBX the parser delivers what meshes use. Faster
    /// than importScene(), since no mesh is handed over.
    osg::Result<std::vector<osg::FCRef<osg::Material>>> importMaterials(const std::string &path) const;

    /// An environment from a picture in any format, named like the file without its extension.
    osg::Result<osg::FCRef<osg::USphereEnvironmentMaterial>> importEnvironment(const std::string &path) const;

private:
    kxImportLimits _limits;
    std::function<bool()> _goOn;
};
