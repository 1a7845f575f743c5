// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/SceneBuilding.h"

#include "Kernel/kxGeometryBuffer.h"
#include "Kernel/kxNodeKeys.h"
#include "Kernel/kxOptimize.h"
#include "Kernel/kxScenegraph.h"
#include "Rendering/Internal/LightLinks.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/Light.h"
#include "SceneGraph/MaterialGroup.h"
#include "SceneGraph/OverrideMaterialAttachment.h"
#include "SceneGraph/Switch.h"

#include <functional>
#include <map>
#include <set>
#include <string>

namespace kxRender {

namespace {

/// A node on the way down, with what those above it say.
struct Visit
{
    osg::NodePtr node;
    osg::Matrix toWorld;
    osg::MaterialPtr overriding;
    osg::MaterialPtr inherited;
    LightLinks::Place place;
};

/// The lights of a scene, and what they light.
struct Lighting
{
    std::vector<std::string> keys; ///< of the lights' nodes, in the order of their indices
    LightLinks links;
    std::map<LightLinks::Place, std::uint32_t> groups; ///< of the scene, as far as they were asked for
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

std::uint32_t lightGroupAt(RenderScene &scene, Lighting &lighting, const LightLinks::Place &place)
{
    const auto found = lighting.groups.find(place);
    if (found != lighting.groups.end())
        return found->second;
    std::vector<std::uint32_t> lights = lighting.links.lightsAt(place, lighting.keys);
    const std::uint32_t group = lights.size() == lighting.keys.size() ? 0 : scene.addLightGroup(std::move(lights));
    return lighting.groups.emplace(place, group).first->second;
}

void addGeometry(RenderScene &scene, Lighting &lighting, const osg::GeometryPtr &original, const Visit &visit)
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
    mesh.node = visit.node.getFieldContainerId();
    mesh.lightGroup = lightGroupAt(scene, lighting, visit.place);
    scene.addMesh(std::move(mesh));
}

void pushChildren(std::vector<Visit> &waiting, const Visit &visit)
{
    const auto chooser = osg::SwitchPtr::dcast(visit.node->getCore());
    for (std::size_t i = visit.node->getNChildren(); i > 0; --i) {
        if (chooser && !chooser->shows(i - 1))
            continue;
        Visit child = visit;
        child.node = visit.node->getChild(i - 1);
        waiting.push_back(child);
    }
}

/// Of a root, with what those above it say of its placement and its light.
Visit visitOf(const osg::NodePtr &root, const LightLinks &links)
{
    const osg::NodePtr parent = root->getParent();
    Visit visit{root, parent ? parent->getToWorld() : osg::Matrix(), nullptr, nullptr, links.outside()};
    for (osg::NodePtr above = parent; above; above = above->getParent())
        visit.place = links.below(std::move(visit.place), above);
    return visit;
}

/// Calls \a use for each node that is shown, parents first.
void forEachShown(const std::vector<osg::NodePtr> &roots, const LightLinks &links,
                  const std::function<void(const Visit &)> &use)
{
    std::vector<Visit> waiting;
    for (const osg::NodePtr &root : roots)
        if (root)
            waiting.push_back(visitOf(root, links));
    while (!waiting.empty()) {
        Visit visit = std::move(waiting.back());
        waiting.pop_back();
        const osg::NodePtr node = visit.node;
        const osg::NodeCorePtr core = node->getCore();
        const auto record = osg::findAttachment<osg::OverrideMaterialAttachment>(node);
        if (record && record->getMaterial() && !visit.overriding)
            visit.overriding = record->getMaterial();
        if (const auto group = osg::MaterialGroupPtr::dcast(core); group && group->getMaterial())
            visit.inherited = group->getMaterial();
        visit.place = links.below(std::move(visit.place), node);
        use(visit);
        if (core)
            visit.toWorld = visit.toWorld * getCoreMatrix(core);
        pushChildren(waiting, visit);
    }
}

/// Before any mesh: what lights a mesh is known when all of them are.
Lighting addLights(RenderScene &scene, const std::vector<osg::NodePtr> &roots)
{
    Lighting lighting;
    std::set<osg::NodePtr> lights;
    std::set<osg::MaterialPoolPtr> pools;
    if (const osg::MaterialPoolPtr pool = kxScenegraph::getMaterialPool())
        pools.insert(pool);
    forEachShown(roots, lighting.links, [&](const Visit &visit) {
        if (const auto pool = osg::MaterialPoolPtr::dcast(visit.node->getCore()))
            pools.insert(pool);
        const auto core = osg::LightPtr::dcast(visit.node->getCore());
        if (!core || !lights.insert(visit.node).second)
            return;
        if (const auto light = DeltaLight::from(*core, visit.toWorld)) {
            scene.addLight(*light);
            lighting.keys.push_back(kxNodeKeys::get(visit.node));
        }
    });
    for (const osg::MaterialPoolPtr &pool : pools)
        lighting.links.add(*pool);
    return lighting;
}

} // namespace

void addNodes(RenderScene &scene, const std::vector<osg::NodePtr> &roots)
{
    Lighting lighting = addLights(scene, roots);
    forEachShown(roots, lighting.links, [&](const Visit &visit) {
        if (const auto geometry = osg::GeometryPtr::dcast(visit.node->getCore()))
            addGeometry(scene, lighting, geometry, visit);
    });
}

} // namespace kxRender
