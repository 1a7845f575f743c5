// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxGeometryImport.h"

#include "AssetSession/Internal/TemporaryNode.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Import/kxSceneImporter.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Transform.h"
#include "SceneGraph/Transform3D.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace {

constexpr double Tolerance = 1e-6;

void setPlacement(const osg::NodePtr &node, const osg::Matrix &matrix)
{
    const auto parts = osg::decompose(matrix);
    const auto core = osg::Transform3DPtr::dcast(node->getCore());
    const osg::CPEditor edit(core, osg::AllFieldMask);
    core->setTranslation(parts.translation);
    core->setRotationAsQuaternion(parts.rotation);
    core->setScale(parts.scale);
}

bool isNearlyEqual(const osg::Matrix &a, const osg::Matrix &b)
{
    return std::equal(a.values.begin(), a.values.end(), b.values.begin(),
                      [](double x, double y) { return std::abs(x - y) <= Tolerance; });
}

/// A node with the exact frame where translation, rotation and scale cannot express it, as with shear; \a place stands
/// nowhere then. Null where they can.
osg::NodePtr frameThatIsLost(const osg::NodePtr &place, const osg::Matrix &frame)
{
    if (isNearlyEqual(osg::getCoreMatrix(place->getCore()), frame))
        return nullptr;
    setPlacement(place, osg::Matrix());
    const osg::TransformPtr core = osg::Transform::create();
    {
        const osg::CPEditor edit(core, osg::Transform::MatrixFieldMask);
        core->setMatrix(frame);
    }
    return osg::makeNodeFor(core);
}

/// The first level that has several nodes: many files have a single root with all the rest below it.
std::vector<osg::FCRef<osg::Node>> partsOf(osg::NodePtr node)
{
    while (node->getNChildren() == 1)
        node = node->getChild(0);
    std::vector<osg::FCRef<osg::Node>> parts;
    for (std::size_t i = 0; i < node->getNChildren(); ++i)
        parts.emplace_back(node->getChild(i));
    if (parts.empty())
        parts.emplace_back(node);
    return parts;
}

} // namespace

void kxGeometryImport::save(const osg::NodePtr &node, const std::string &name, const QUrl &folder, Outcome &outcome)
{
    // The frame of what lies above a part is kept: it would stand elsewhere otherwise.
    kxAssetSessionInternal::TemporaryNode place(osg::Transform3D::create(), kxScenegraph::getRoot(), name);
    const osg::NodePtr parent = node->getParent();
    const osg::Matrix frame = parent ? parent->getToWorld() : osg::Matrix();
    setPlacement(place.node(), frame);
    if (osg::NodePtr exact = frameThatIsLost(place.node(), frame)) {
        place.add(exact);
        const osg::CPEditor edit(exact, osg::Node::ChildrenFieldMask);
        exact->addChild(node);
    } else {
        place.add(node);
    }
    kxGeometryAssetItem item;
    item.initFrom(place.node(), {}, false);
    if (item.save(folder)) {
        outcome.saved.push_back({item.uuid(), item.name()});
    } else {
        outcome.failures.push_back("'" + name + "' cannot be saved");
        outcome.unsaved.push_back({name, folder.toLocalFile()});
    }
}

kxGeometryImport::Outcome kxGeometryImport::importFile(const QString &path, const QUrl &folder,
                                                       const std::function<bool()> &goOn) const
{
    Outcome outcome;
    const auto scene = kxSceneImporter({}, _whileReading).importScene(path.toStdString());
    if (!scene) {
        outcome.failures.push_back(scene.reason());
        return outcome;
    }
    const std::string fileName = QFileInfo(path).completeBaseName().toStdString();
    if (!_isSplit) {
        save(scene.value().root.get(), fileName, folder, outcome);
        return outcome;
    }
    for (const osg::FCRef<osg::Node> &part : partsOf(scene.value().root.get())) {
        if (!goOn())
            break;
        const std::string name = kxNodeUtils::getName(part.get());
        save(part.get(), name.empty() ? fileName : name, folder, outcome);
    }
    return outcome;
}
