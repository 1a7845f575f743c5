// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Material.h"
#include "SceneGraph/Node.h"

#include <vector>

/// What a foreign scene became. Keeps everything alive until it is let go or used.
struct kxImportedScene
{
    /// The tree, named as in the file; belongs to no scene yet. A node is a clone of another where the file uses a mesh
    /// twice.
    osg::FCRef<osg::Node> root;
    /// The file's materials in its order, each once however many meshes use it.
    std::vector<osg::FCRef<osg::Material>> materials;
};
