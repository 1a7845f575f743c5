// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/SceneBuilder.h"

#include "Import/Internal/ForeignText.h"
#include "Import/Internal/GeometryBuilder.h"
#include "Import/Internal/StageBuilder.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/NameAttachment.h"

#include <cstddef>
#include <string_view>
#include <utility>

namespace kximport {

namespace {

std::string textOf(const aiString &text)
{
    return oneLine(std::string_view(text.C_Str()));
}

/// Names in angle brackets are the parsers' own, not the file's.
std::string nodeName(const aiNode &parsed)
{
    const std::string name = textOf(parsed.mName);
    return !name.empty() && name.front() == '<' && name.back() == '>' ? std::string() : name;
}

void append(const osg::NodePtr &parent, const osg::NodePtr &child)
{
    const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
    parent->addChild(child);
}

} // namespace

SceneBuilder::SceneBuilder(const Source &source, MaterialBuilder &materialBuilder, ImportNotes &notes)
    : _source(source), _materialBuilder(materialBuilder), _notes(notes), _isUsed(source.scene.mNumMaterials)
{
    for (unsigned i = 0; i < source.scene.mNumMeshes; ++i) {
        const unsigned material = source.scene.mMeshes[i]->mMaterialIndex;
        if (material < _isUsed.size())
            _isUsed[material] = true;
    }
}

std::vector<osg::FCRef<osg::Material>> SceneBuilder::buildMaterials()
{
    const aiScene &scene = _source.scene;
    std::vector<osg::FCRef<osg::Material>> materials;
    for (unsigned i = 0; i < scene.mNumMaterials; ++i) {
        _material.emplace_back();
        if (isPlaceholder(i) && !_isUsed[i])
            continue;
        _material.back() = _materialBuilder.build(*scene.mMaterials[i], materialName(i));
        materials.emplace_back(osg::MaterialPtr(_material.back().get()));
    }
    return materials;
}

osg::FCRef<osg::Node> SceneBuilder::buildTree()
{
    buildGeometries();
    osg::FCRef<osg::Node> root = buildNode(*_source.scene.mRootNode);
    if (osg::getName(root.get()).empty())
        osg::setName(root.get(), toUtf8(baseName(_source.modelPath)));

    // With a list of what is still to do, since a hostile file may nest deeper than a stack is.
    std::vector<std::pair<const aiNode *, osg::NodePtr>> pending{{_source.scene.mRootNode, root.get()}};
    while (!pending.empty()) {
        const auto [parsed, node] = pending.back();
        pending.pop_back();
        for (unsigned i = 0; i < parsed->mNumChildren; ++i) {
            const osg::FCRef<osg::Node> child = buildNode(*parsed->mChildren[i]);
            append(node, child);
            pending.emplace_back(parsed->mChildren[i], child.get());
        }
    }
    return root;
}

bool SceneBuilder::isPlaceholder(unsigned index) const
{
    aiString name;
    _source.scene.mMaterials[index]->Get(AI_MATKEY_NAME, name);
    const std::string text = textOf(name);
    return text.empty() || text == AI_DEFAULT_MATERIAL_NAME;
}

/// Materials without a name of their own are called after the file, with a number where there are several.
std::string SceneBuilder::materialName(unsigned index) const
{
    if (!isPlaceholder(index)) {
        aiString name;
        _source.scene.mMaterials[index]->Get(AI_MATKEY_NAME, name);
        return textOf(name);
    }
    unsigned number = 0;
    unsigned total = 0;
    for (unsigned i = 0; i < _source.scene.mNumMaterials; ++i)
        if (isPlaceholder(i) && _isUsed[i]) {
            ++total;
            number += i <= index ? 1 : 0;
        }
    const std::string name = toUtf8(baseName(_source.modelPath));
    return total > 1 ? name + " " + std::to_string(number) : name;
}

void SceneBuilder::buildGeometries()
{
    const aiScene &scene = _source.scene;
    for (unsigned i = 0; i < scene.mNumMeshes; ++i) {
        const aiMesh &mesh = *scene.mMeshes[i];
        const bool hasMaterial = mesh.mMaterialIndex < _material.size();
        MeshReading reading;
        reading.hasSrgbColors = !_source.isGltf;
        if (hasMaterial)
            reading.uvSet = _materialBuilder.uvSet(*scene.mMaterials[mesh.mMaterialIndex]);
        const osg::FCRef<osg::Geometry> geometry = buildGeometry(mesh, reading);
        if (!geometry)
            _notes.add("the mesh '" + textOf(mesh.mName) + "' has no faces and is left out");
        else if (hasMaterial) {
            const osg::CPEditor edit(geometry.get(), osg::Geometry::MaterialFieldMask);
            geometry->setMaterial(_material[mesh.mMaterialIndex].get());
        }
        _geometry.push_back(geometry);
    }
}

osg::FCRef<osg::Node> SceneBuilder::buildNode(const aiNode &parsed)
{
    const osg::FCRef<osg::NodeCore> placement = buildPlacement(parsed.mTransformation);
    osg::FCRef<osg::Node> node(osg::makeNodeFor(placement));
    const std::string name = nodeName(parsed);
    if (!name.empty() || parsed.mParent)
        osg::setName(node.get(), name.empty() ? "Node" : name);
    addMeshes(parsed, node);
    addStage(parsed, node);
    return node;
}

void SceneBuilder::addMeshes(const aiNode &parsed, const osg::NodePtr &node)
{
    for (unsigned i = 0; i < parsed.mNumMeshes; ++i) {
        const unsigned index = parsed.mMeshes[i];
        if (index >= _geometry.size() || !_geometry[index])
            continue;
        const osg::FCRef<osg::Node> child(osg::makeNodeFor(_geometry[index].get()));
        const std::string name = textOf(_source.scene.mMeshes[index]->mName);
        const std::string parentName = osg::getName(node);
        osg::setName(child.get(), !name.empty()         ? name
                                  : !parentName.empty() ? parentName
                                                        : toUtf8(baseName(_source.modelPath)));
        append(node, child);
    }
}

/// Cameras and lights name the node that they belong to.
void SceneBuilder::addStage(const aiNode &parsed, const osg::NodePtr &node)
{
    const aiScene &scene = _source.scene;
    for (unsigned i = 0; i < scene.mNumCameras; ++i)
        if (scene.mCameras[i]->mName == parsed.mName) {
            const osg::FCRef<osg::Node> camera = buildCamera(*scene.mCameras[i], _source.isGltf);
            osg::setName(camera.get(), nodeName(parsed).empty() ? "Camera" : nodeName(parsed));
            append(node, camera);
        }
    for (unsigned i = 0; i < scene.mNumLights; ++i)
        if (scene.mLights[i]->mName == parsed.mName) {
            const osg::FCRef<osg::Node> light = buildLight(*scene.mLights[i], _source.isGltf);
            if (!light) {
                _notes.add("the ambient light '" + nodeName(parsed) + "' is left out");
                continue;
            }
            osg::setName(light.get(), nodeName(parsed).empty() ? "Light" : nodeName(parsed));
            append(node, light);
        }
}

} // namespace kximport
