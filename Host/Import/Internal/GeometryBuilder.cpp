// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/GeometryBuilder.h"

#include "Import/Internal/SurfaceFormulas.h"
#include "SceneGraph/EditCP.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace kximport {

namespace {

bool isFinite(const aiVector3D &v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

bool isUsable(const aiMesh &mesh, const aiFace &face)
{
    if (face.mNumIndices < 3)
        return false;
    return std::all_of(face.mIndices, face.mIndices + face.mNumIndices, [&mesh](unsigned index) {
        return index < mesh.mNumVertices && isFinite(mesh.mVertices[index]);
    });
}

struct Faces
{
    std::vector<std::uint32_t> indices;
    std::vector<std::uint32_t> sizes; // empty: all are triangles
};

Faces collectFaces(const aiMesh &mesh)
{
    Faces faces;
    bool areTriangles = true;
    faces.indices.reserve(std::size_t{mesh.mNumFaces} * 3);
    for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
        const aiFace &face = mesh.mFaces[i];
        if (!isUsable(mesh, face))
            continue;
        faces.indices.insert(faces.indices.end(), face.mIndices, face.mIndices + face.mNumIndices);
        faces.sizes.push_back(face.mNumIndices);
        areTriangles = areTriangles && face.mNumIndices == 3;
    }
    if (areTriangles)
        faces.sizes.clear();
    return faces;
}

/// What is not finite belongs to no face that is kept; at the origin it does no harm.
std::vector<osg::Vec3f> vectors(const aiVector3D *source, unsigned count)
{
    std::vector<osg::Vec3f> result(source ? count : 0);
    for (std::size_t i = 0; i < result.size(); ++i)
        if (isFinite(source[i]))
            result[i] = {source[i].x, source[i].y, source[i].z};
    return result;
}

std::vector<osg::Vec2f> texCoords(const aiMesh &mesh, unsigned uvSet)
{
    const bool hasSet = uvSet < AI_MAX_NUMBER_OF_TEXTURECOORDS && mesh.HasTextureCoords(uvSet);
    const aiVector3D *source = mesh.mTextureCoords[hasSet ? uvSet : 0];
    std::vector<osg::Vec2f> result(source ? mesh.mNumVertices : 0);
    for (std::size_t i = 0; i < result.size(); ++i)
        if (std::isfinite(source[i].x) && std::isfinite(source[i].y))
            result[i] = {source[i].x, source[i].y};
    return result;
}

std::vector<osg::Vec4f> colors(const aiMesh &mesh, bool areSrgb)
{
    const aiColor4D *source = mesh.mColors[0];
    std::vector<osg::Vec4f> result(source ? mesh.mNumVertices : 0);
    const auto decoded = [areSrgb](float value) { return areSrgb ? linearFromSrgb(value) : value; };
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = {decoded(source[i].r), decoded(source[i].g), decoded(source[i].b), source[i].a};
    return result;
}

} // namespace

osg::FCRef<osg::Geometry> buildGeometry(const aiMesh &mesh, const MeshReading &reading)
{
    Faces faces = collectFaces(mesh);
    if (faces.indices.empty() || !mesh.mVertices)
        return nullptr;

    osg::FCRef<osg::Geometry> geometry(osg::Geometry::create());
    const osg::CPEditor edit(geometry.get());
    geometry->editPositions().values() = vectors(mesh.mVertices, mesh.mNumVertices);
    geometry->editNormals().values() = vectors(mesh.mNormals, mesh.mNumVertices);
    geometry->editTexCoords().values() = texCoords(mesh, reading.uvSet);
    geometry->editColors().values() = colors(mesh, reading.hasSrgbColors);
    geometry->editIndices().values() = std::move(faces.indices);
    geometry->editFaceSizes().values() = std::move(faces.sizes);
    return geometry;
}

} // namespace kximport
