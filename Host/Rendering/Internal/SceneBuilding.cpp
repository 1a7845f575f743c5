// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/SceneBuilding.h"

#include "Kernel/kxGeometryBuffer.h"
#include "Kernel/kxOptimize.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/MaterialGroup.h"
#include "SceneGraph/OverrideMaterialAttachment.h"
#include "SceneGraph/Switch.h"

namespace kxRender {

namespace {

/// A node on the way down, with what those above it say.
struct Visit
{
    osg::NodePtr node;
    osg::Matrix toWorld;
    osg::MaterialPtr overriding;
    osg::MaterialPtr inherited;
};

V3 toPoint(const osg::Matrix &m, const osg::Vec3f &p)
{
    const osg::Vec3d q =
        transformPoint(m, {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])});
    return {static_cast<float>(q[0]), static_cast<float>(q[1]), static_cast<float>(q[2])};
}

/// Normals are mapped by the matrix of cofactors: the inverse transposed, but for a factor, and there also for what
/// flattens space.
V3 toNormal(const osg::Matrix &m, const osg::Vec3f &n)
{
    const auto cofactor = [&m](std::size_t row, std::size_t column) {
        const std::size_t r1 = (row + 1) % 3;
        const std::size_t r2 = (row + 2) % 3;
        const std::size_t c1 = (column + 1) % 3;
        const std::size_t c2 = (column + 2) % 3;
        return m.at(r1, c1) * m.at(r2, c2) - m.at(r1, c2) * m.at(r2, c1);
    };
    const auto along = [&](std::size_t row) {
        return static_cast<float>(cofactor(row, 0) * static_cast<double>(n[0]) +
                                  cofactor(row, 1) * static_cast<double>(n[1]) +
                                  cofactor(row, 2) * static_cast<double>(n[2]));
    };
    return normalize({along(0), along(1), along(2)});
}

/// In triangles; the mesh itself where it is, else a copy.
osg::FCRef<osg::Geometry> triangulated(const osg::GeometryPtr &geometry)
{
    if (!kxGeometryBuffer::needsTriangulation(nullptr, geometry))
        return geometry;
    const osg::MaterialPtr material = geometry->getMaterial();
    osg::FCRef<osg::Geometry> copy(osg::deepClone(geometry, material ? osg::ShareList{material} : osg::ShareList()));
    kxOptimize::triangulate(copy.get(), false);
    return copy;
}

void addGeometry(RenderScene &scene, const osg::GeometryPtr &original, const Visit &visit)
{
    if (!original->isValid() || original->getPositions().empty())
        return;
    const osg::FCRef<osg::Geometry> geometry = triangulated(original);
    Mesh mesh;
    for (const osg::Vec3f &p : geometry->getPositions())
        mesh.positions.push_back(toPoint(visit.toWorld, p));
    for (const osg::Vec3f &n : geometry->getNormals())
        mesh.normals.push_back(toNormal(visit.toWorld, n));
    for (const osg::Vec2f &t : geometry->getTexCoords())
        mesh.coordinates.push_back({t[0], t[1]});
    mesh.indices.assign(geometry->getIndices().begin(), geometry->getIndices().end());
    osg::MaterialPtr material = visit.overriding;
    if (!material)
        material = original->getMaterial() ? original->getMaterial() : visit.inherited;
    mesh.layers = scene.surfaces().add(material);
    scene.addMesh(std::move(mesh));
}

void pushChildren(std::vector<Visit> &waiting, const Visit &visit)
{
    const auto chooser = osg::SwitchPtr::dcast(visit.node->getCore());
    for (std::size_t i = visit.node->getNChildren(); i > 0; --i) {
        if (chooser && chooser->getChoice() != osg::Switch::All &&
            chooser->getChoice() != static_cast<std::int32_t>(i - 1))
            continue;
        Visit child = visit;
        child.node = visit.node->getChild(i - 1);
        waiting.push_back(child);
    }
}

} // namespace

void addNodes(RenderScene &scene, const std::vector<osg::NodePtr> &roots)
{
    std::vector<Visit> waiting;
    for (const osg::NodePtr &root : roots)
        if (root) {
            const osg::NodePtr parent = root->getParent();
            waiting.push_back({root, parent ? parent->getToWorld() : osg::Matrix(), nullptr, nullptr});
        }
    while (!waiting.empty()) {
        Visit visit = waiting.back();
        waiting.pop_back();
        const osg::NodeCorePtr core = visit.node->getCore();
        const auto record = osg::findAttachment<osg::OverrideMaterialAttachment>(visit.node);
        if (record && record->getMaterial() && !visit.overriding)
            visit.overriding = record->getMaterial();
        if (const auto group = osg::MaterialGroupPtr::dcast(core); group && group->getMaterial())
            visit.inherited = group->getMaterial();
        if (const auto geometry = osg::GeometryPtr::dcast(core))
            addGeometry(scene, geometry, visit);
        if (core)
            visit.toWorld = visit.toWorld * getCoreMatrix(core);
        pushChildren(waiting, visit);
    }
}

} // namespace kxRender
