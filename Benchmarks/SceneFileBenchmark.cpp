// SPDX-License-Identifier: Apache-2.0
// Scene files of a mesh of a million triangles against the same bytes, and against Assimp reading the same mesh as GLB.
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/SceneFile.h"
#include "Support/Comparison.h"

#include <QTemporaryDir>
#include <assimp/Exporter.hpp>
#include <assimp/Importer.hpp>
#include <assimp/mesh.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::uint32_t Side = 708; // quads along one side: 2 x 708 x 708 triangles, a little more than a million

/// A wavy sheet with normals and texture coordinates.
osg::FCRef<osg::Geometry> makeMesh()
{
    osg::FCRef<osg::Geometry> mesh(osg::Geometry::create());
    const osg::CPEditor edit(mesh.get(), osg::AllFieldMask);
    for (std::uint32_t y = 0; y <= Side; ++y)
        for (std::uint32_t x = 0; x <= Side; ++x) {
            const float u = static_cast<float>(x) / Side;
            const float v = static_cast<float>(y) / Side;
            mesh->editPositions().push_back({u, v, 0.01F * std::sin(40.0F * u) * std::cos(31.0F * v)});
            mesh->editNormals().push_back({0.1F * std::cos(40.0F * u), 0.1F * std::sin(31.0F * v), 0.99F});
            mesh->editTexCoords().push_back({u, v});
        }
    for (std::uint32_t y = 0; y < Side; ++y)
        for (std::uint32_t x = 0; x < Side; ++x) {
            const std::uint32_t a = y * (Side + 1) + x;
            for (const std::uint32_t i : {a, a + 1, a + Side + 2, a, a + Side + 2, a + Side + 1})
                mesh->editIndices().push_back(i);
        }
    return mesh;
}

/// The four arrays that a reader has to fill.
struct Arrays
{
    std::vector<osg::Vec3f> positions;
    std::vector<osg::Vec3f> normals;
    std::vector<osg::Vec2f> coordinates;
    std::vector<std::uint32_t> indices;
};

template <class T> void writeAll(int file, const std::vector<T> &values)
{
    const auto *bytes = reinterpret_cast<const char *>(values.data());
    for (std::size_t rest = values.size() * sizeof(T); rest > 0;) {
        const ssize_t written = ::write(file, bytes, rest);
        if (written <= 0)
            std::abort();
        bytes += written;
        rest -= static_cast<std::size_t>(written);
    }
}

template <class T> void readAll(int file, std::vector<T> &values, std::size_t count)
{
    values.resize(count);
    auto *bytes = reinterpret_cast<char *>(values.data());
    for (std::size_t rest = count * sizeof(T); rest > 0;) {
        const ssize_t got = ::read(file, bytes, rest);
        if (got <= 0)
            std::abort();
        bytes += got;
        rest -= static_cast<std::size_t>(got);
    }
}

void writeBare(const std::string &path, const Arrays &arrays)
{
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    writeAll(file, arrays.positions);
    writeAll(file, arrays.normals);
    writeAll(file, arrays.coordinates);
    writeAll(file, arrays.indices);
    // A scene file is on the disk when its writer returns.
    if (::fsync(file) != 0 || ::close(file) != 0)
        std::abort();
}

/// Into memory that is new each time, as a scene's is.
void readBare(const std::string &path, const Arrays &sizes)
{
    Arrays arrays;
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    readAll(file, arrays.positions, sizes.positions.size());
    readAll(file, arrays.normals, sizes.normals.size());
    readAll(file, arrays.coordinates, sizes.coordinates.size());
    readAll(file, arrays.indices, sizes.indices.size());
    ::close(file);
}

/// The scene owns what it points to.
void exportGlb(const std::string &path, const osg::Geometry &geometry)
{
    aiScene scene;
    scene.mRootNode = new aiNode("root");
    scene.mNumMaterials = 1;
    scene.mMaterials = new aiMaterial *[1] { new aiMaterial };
    scene.mNumMeshes = 1;
    auto *mesh = new aiMesh;
    scene.mMeshes = new aiMesh *[1] { mesh };
    scene.mRootNode->mNumMeshes = 1;
    scene.mRootNode->mMeshes = new unsigned[1]{0};
    const auto count = static_cast<unsigned>(geometry.getPositions().size());
    mesh->mPrimitiveTypes = aiPrimitiveType_TRIANGLE;
    mesh->mNumVertices = count;
    mesh->mVertices = new aiVector3D[count];
    mesh->mNormals = new aiVector3D[count];
    mesh->mTextureCoords[0] = new aiVector3D[count];
    mesh->mNumUVComponents[0] = 2;
    for (unsigned i = 0; i < count; ++i) {
        const osg::Vec3f &p = geometry.getPositions()[i];
        const osg::Vec3f &n = geometry.getNormals()[i];
        const osg::Vec2f &t = geometry.getTexCoords()[i];
        mesh->mVertices[i] = {p[0], p[1], p[2]};
        mesh->mNormals[i] = {n[0], n[1], n[2]};
        mesh->mTextureCoords[0][i] = {t[0], t[1], 0.0F};
    }
    mesh->mNumFaces = static_cast<unsigned>(geometry.getIndices().size() / 3);
    mesh->mFaces = new aiFace[mesh->mNumFaces];
    for (unsigned i = 0; i < mesh->mNumFaces; ++i) {
        mesh->mFaces[i].mNumIndices = 3;
        mesh->mFaces[i].mIndices = new unsigned[3];
        for (unsigned corner = 0; corner < 3; ++corner)
            mesh->mFaces[i].mIndices[corner] = geometry.getIndices()[i * 3 + corner];
    }
    Assimp::Exporter exporter;
    if (exporter.Export(&scene, "glb2", path) != AI_SUCCESS) {
        std::fprintf(stderr, "%s\n", exporter.GetErrorString());
        std::abort();
    }
}

void readGlb(const std::string &path)
{
    Assimp::Importer importer;
    const aiScene *scene = importer.ReadFile(path, 0);
    if (scene == nullptr || scene->mNumMeshes != 1)
        std::abort();
}

} // namespace

int main()
{
    const QTemporaryDir folder;
    const std::string scenePath = folder.filePath("mesh.osb").toStdString();
    const std::string barePath = folder.filePath("mesh.bytes").toStdString();
    const std::string glbPath = folder.filePath("mesh.glb").toStdString();
    const osg::FCRef<osg::Geometry> mesh = makeMesh();
    const osg::FCRef<osg::Node> node(osg::Node::create());
    {
        const osg::CPEditor edit(node.get(), osg::Node::CoreFieldMask);
        node->setCore(mesh.get());
    }
    const Arrays arrays{mesh->getPositions().values(), mesh->getNormals().values(), mesh->getTexCoords().values(),
                        mesh->getIndices().values()};
    osg::SceneWriteOptions plain;
    plain.isCompressed = false;

    const auto writeScene = [&] {
        if (!osg::writeSceneFile(scenePath, {node.get()}, plain))
            std::abort();
    };
    kxbench::Comparison writing(writeScene, [&] { writeBare(barePath, arrays); });
    writing.preparedBy([&] { ::unlink(scenePath.c_str()); }, [&] { ::unlink(barePath.c_str()); }).run(9);
    kxbench::note("writing a scene file", writing);
    kxbench::report("writing 1,000,000 triangles as .osb, uncompressed", "the same bytes, on the disk", 3, 1.5,
                    writing.ratio());

    const auto readScene = [&] {
        if (!osg::readSceneFile(scenePath))
            std::abort();
    };
    kxbench::Comparison reading(readScene, [&] { readBare(barePath, arrays); });
    reading.run(15);
    kxbench::note("reading a scene file", reading);
    kxbench::report("reading it into the scene graph", "the same bytes into vectors", 2, 1.2, reading.ratio());

    exportGlb(glbPath, *mesh);
    kxbench::Comparison peer(readScene, [&] { readGlb(glbPath); });
    peer.run(7);
    kxbench::note("reading against Assimp", peer);
    kxbench::report("the same read", "Assimp reading it as GLB", 2, 3, 1.0 / peer.ratio(), kxbench::Better::More,
                    " times");
}
