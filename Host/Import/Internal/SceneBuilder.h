// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Import/Internal/ImportNotes.h"
#include "Import/Internal/MaterialBuilder.h"
#include "Import/kxImportedScene.h"
#include "SceneGraph/Geometry.h"

#include <assimp/scene.h>

#include <string>
#include <vector>

namespace kximport {

/// Turns what a parser found in a file into nodes and materials.
class SceneBuilder
{
public:
    struct Source
    {
        const aiScene &scene;
        std::string modelPath;
        bool isGltf = false;
    };

    /// What both refer to lives longer than the builder.
    SceneBuilder(const Source &source, MaterialBuilder &materialBuilder, ImportNotes &notes);

    /// In the file's order, without placeholders that no mesh uses.
    std::vector<osg::FCRef<osg::Material>> buildMaterials();
    /// The tree, whose geometries refer to the materials. Expects buildMaterials() to have been called.
    osg::FCRef<osg::Node> buildTree();

private:
    std::string materialName(unsigned index) const;
    bool isPlaceholder(unsigned index) const;
    void buildGeometries();
    osg::FCRef<osg::Node> buildNode(const aiNode &parsed);
    void addMeshes(const aiNode &parsed, const osg::NodePtr &node);
    void addStage(const aiNode &parsed, const osg::NodePtr &node);

    Source _source;
    MaterialBuilder &_materialBuilder;
    ImportNotes &_notes;
    std::vector<bool> _isUsed;                             // by index of the material
    std::vector<osg::FCRef<osg::UBRDFMaterial>> _material; // by index; null: left out
    std::vector<osg::FCRef<osg::Geometry>> _geometry;      // by index of the mesh; null: has no face
};

} // namespace kximport
