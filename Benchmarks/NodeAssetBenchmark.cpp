// SPDX-License-Identifier: Apache-2.0
// Node assets: gathering nodes and putting them back, saving a large mesh, loading many small ones, and a preview.
#include "AssetSession/kxAssetSession.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxCreateGroupedNodes.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Kernel/NodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Rendering/kxOSGWidget.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/Transform3D.h"
#include "Support/Comparison.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QUrl>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::size_t Grouped = 10000;
constexpr std::uint32_t LargeSide = 708; // quads along one side: a little more than a million triangles
constexpr std::uint32_t SmallSide = 4;
constexpr std::size_t Loaded = 1000;

/// A main view without a camera: saving renders no previews.
class BlindView final : public kxOSGWidget
{
public:
    osg::UberCameraPtr getUberCamera() const override { return nullptr; }

private:
    void cancelRefinement() override {}
};

/// A wavy sheet with normals and texture coordinates.
osg::GeometryPtr makeSheet(std::uint32_t side)
{
    const osg::GeometryPtr mesh = osg::Geometry::create();
    const osg::CPEditor edit(mesh, osg::AllFieldMask);
    for (std::uint32_t y = 0; y <= side; ++y)
        for (std::uint32_t x = 0; x <= side; ++x) {
            const float u = static_cast<float>(x) / static_cast<float>(side);
            const float v = static_cast<float>(y) / static_cast<float>(side);
            mesh->editPositions().push_back({u, 0.1F * std::sin(40.0F * u) * std::cos(31.0F * v), v});
            mesh->editNormals().push_back({0.1F * std::cos(40.0F * u), 0.99F, 0.1F * std::sin(31.0F * v)});
            mesh->editTexCoords().push_back({u, v});
        }
    for (std::uint32_t y = 0; y < side; ++y)
        for (std::uint32_t x = 0; x < side; ++x) {
            const std::uint32_t a = y * (side + 1) + x;
            for (const std::uint32_t i : {a, a + side + 2, a + 1, a, a + side + 1, a + side + 2})
                mesh->editIndices().push_back(i);
        }
    return mesh;
}

osg::NodePtr addSheet(const osg::GeometryPtr &mesh, const std::string &name)
{
    const osg::NodePtr place = NodeUtils::createNodeWithCore(osg::Transform3D::create(), kxScenegraph::getRoot(), name);
    NodeUtils::createNodeWithCore(mesh, place, "Sheet");
    return place;
}

void addChildren(const osg::NodePtr &parent, const std::vector<osg::NodePtr> &nodes)
{
    for (const osg::NodePtr &node : nodes) {
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->addChild(node);
    }
}

void measureGrouping()
{
    const osg::NodePtr parent =
        NodeUtils::createNodeWithCore(osg::Transform3D::create(), kxScenegraph::getRoot(), "Parent");
    const osg::NodePtr other =
        NodeUtils::createNodeWithCore(osg::Transform3D::create(), kxScenegraph::getRoot(), "Other");
    std::vector<osg::NodePtr> nodes;
    for (std::size_t i = 0; i < Grouped; ++i)
        nodes.push_back(NodeUtils::createNodeWithCore(osg::Transform3D::create(), parent, ""));
    const std::vector<kxNodePtr> all(nodes.begin(), nodes.end());
    kxbench::Comparison grouping(
        [&] {
            kxCreateGroupedNodes group(Geometry);
            if (!group.prepare(all))
                std::abort();
            group.unprepare();
        },
        [&] {
            addChildren(other, nodes);
            addChildren(parent, nodes);
        });
    grouping.run(5);
    kxbench::note("grouping", grouping);
    kxbench::report("grouping 10,000 nodes and putting them back", "moving them there and back by addChild", 20, 4,
                    grouping.ratio());
}

std::string saveNew(const osg::NodePtr &node, const QString &folder)
{
    kxGeometryAssetItem item;
    item.initFrom(node, {}, false);
    if (!item.save(QUrl::fromLocalFile(folder)))
        std::abort();
    return item.uuid();
}

void measureSaving(const QTemporaryDir &folder)
{
    const osg::NodePtr sheet = addSheet(makeSheet(LargeSide), "Large");
    const QString library = folder.filePath("saved");
    const std::string file = folder.filePath("large.osb").toStdString();
    kxbench::Comparison saving([&] { saveNew(sheet, library); },
                               [&] {
                                   if (!osg::writeSceneFile(file, {sheet}))
                                       std::abort();
                               });
    saving.preparedBy([&] { QDir(library).removeRecursively(); }, [&] { ::unlink(file.c_str()); }).run(9);
    kxbench::note("saving", saving);
    kxbench::report("saving a geometry asset of 1,000,000 triangles without preview", "writing its .osb", 1.3, 1.1,
                    saving.ratio());
}

void measureLoading(const QTemporaryDir &folder)
{
    const osg::GeometryPtr mesh = makeSheet(SmallSide);
    const osg::NodePtr sheet = addSheet(mesh, "Small");
    std::vector<std::string> uuids;
    for (std::size_t i = 0; i < 2 * Loaded; ++i)
        uuids.push_back(saveNew(sheet, folder.filePath(QStringLiteral("loaded/%1").arg(i % 50))));
    const auto load = [&uuids](std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            const osg::FCRef<osg::Node> node(kxGeometryAssetItem::loadNodeFromUUID(uuids[i]));
            if (!node)
                std::abort();
        }
    };
    kxbench::Comparison loading([&] { load(2 * Loaded); }, [&] { load(Loaded); });
    loading.run(5);
    kxbench::note("loading", loading);
    kxbench::report("loading 2,000 small geometry assets by UUID", "loading 1,000", 2.3, 2.1, loading.ratio());
}

/// The one figure that is no ratio: it is how long a person waits.
void measurePreview()
{
    const osg::NodePtr sheet = addSheet(makeSheet(LargeSide), "Preview");
    kxGeometryAssetItem item;
    item.initFrom(sheet, {}, false);
    double best = 1e9;
    for (int round = 0; round < 3; ++round) {
        const auto begin = std::chrono::steady_clock::now();
        const auto image = osg::FCRef<osg::Image>::adopt(item.renderPreview(sheet));
        if (!image)
            std::abort();
        best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
    }
    kxbench::report("a preview of 1,000,000 triangles, 512 x 384", "a person who waits", 1.5, 1.0, best,
                    kxbench::Better::Less, " s");
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    {
        const BlindView blind;
        const kxAssetSession session;
        measureGrouping();
        measureSaving(folder);
        measureLoading(folder);
    }
    const kxAssetSession session;
    measurePreview();
}
