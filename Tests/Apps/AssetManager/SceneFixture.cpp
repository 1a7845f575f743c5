// SPDX-License-Identifier: Apache-2.0
#include "SceneFixture.h"

#include "AssetSession/kxNodeSaving.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Kernel/NodeUtils.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "Rendering/kxPreviewSettings.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/Transform3D.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QCoreApplication>
#include <QDropEvent>
#include <QSettings>

namespace {

void takeAway(const osg::NodePtr &node)
{
    const osg::NodePtr parent = node->getParent();
    const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
    parent->subChild(node);
}

std::string store(const osg::NodePtr &node, const QUrl &library)
{
    const auto saved = kxNodeSaving({}).save(node, "", library);
    EXPECT_TRUE(saved);
    std::string uuid = saved ? saved.value().uuid : "";
    takeAway(node);
    return uuid;
}

std::string store(const osg::MaterialPtr &created, const std::string &name, const QUrl &library)
{
    const osg::FCRef<osg::Material> material(created);
    kxMaterials::setName(material, name, false);
    kxMaterialAssetItem item;
    item.initFrom(material.get(), {}, true);
    std::string uuid = item.uuid();
    EXPECT_TRUE(item.save(library));
    return uuid;
}

} // namespace

SceneFixture::SceneFixture(kxAssetSession::MainView mainView) : session(mainView)
{
    // Tests run beside each other.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString(folder.file("settings")));
    kxPreviewSettings::setSize(16);
    kxPreviewSettings::setSamples(1);
    QObject::connect(&actions, &SceneActions::failed, [this](const QStringList &messages) { failures += messages; });
    QObject::connect(&actions, &SceneActions::assetsLoaded, [this](const QStringList &uuids) { loaded += uuids; });
}

SceneFixture::~SceneFixture() = default;

osg::NodePtr SceneFixture::root()
{
    return kxScenegraph::getRoot();
}

osg::NodePtr SceneFixture::add(const osg::NodeCorePtr &core, const osg::NodePtr &parent, const std::string &name)
{
    return NodeUtils::createNodeWithCore(core, parent, name);
}

osg::NodePtr SceneFixture::addChair(const std::string &name, const osg::NodePtr &parent)
{
    const osg::NodePtr chair = add(osg::Transform3D::create(), parent ? parent : root(), name);
    const osg::GeometryPtr mesh = osg::Geometry::create();
    {
        const osg::CPEditor edit(mesh, osg::AllFieldMask);
        mesh->editPositions() = {{{0, 0, 0}}, {{1, 0, 0}}, {{0, 1, 0}}};
        mesh->editIndices() = {0, 1, 2};
    }
    add(mesh, chair, "Seat");
    return chair;
}

osg::NodePtr SceneFixture::addPlate(const std::string &name)
{
    return add(osg::Sceneplate::create(), kxSceneplateUtils::getSceneplateRoot(), name);
}

osg::MaterialPtr SceneFixture::materialOf(const osg::NodePtr &geometry)
{
    return osg::GeometryPtr::dcast(geometry->getCore())->getMaterial();
}

std::string SceneFixture::materialNameOf(const osg::NodePtr &geometry)
{
    return kxMaterials::getName(materialOf(geometry));
}

std::vector<std::string> SceneFixture::childNames(const osg::NodePtr &parent)
{
    std::vector<std::string> names;
    for (std::size_t i = 0; i < parent->getNChildren(); ++i)
        names.push_back(kxNodeUtils::getName(parent->getChild(i)));
    return names;
}

QStringList SceneFixture::shown(const QAbstractItemModel &model)
{
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row)
        names.append(model.index(row, 0).data().toString());
    return names;
}

void SceneFixture::process()
{
    for (int i = 0; i < 4; ++i) { // what is coalesced may ask for another pass
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

std::string SceneFixture::storeMaterial(const std::string &name)
{
    return store(osg::UBRDFMaterial::create(), name, library());
}

std::string SceneFixture::storeEnvironmentMaterial(const std::string &name)
{
    return store(osg::USkyEnvironmentMaterial::create(), name, library());
}

std::string SceneFixture::storeGeometry(const std::string &name)
{
    return store(addChair(name), library());
}

std::string SceneFixture::storeEnvironment(const std::string &name)
{
    const auto core = osg::Environment::create();
    {
        const auto sky = osg::USkyEnvironmentMaterial::create();
        kxMaterials::setName(sky, name, false);
        const osg::CPEditor edit(core, osg::Environment::MaterialFieldMask);
        core->setMaterial(sky);
    }
    return store(add(core, root(), name), library());
}

std::string SceneFixture::storePlate(const std::string &name)
{
    return store(addPlate(name), library());
}

QUrl SceneFixture::library() const
{
    return QUrl::fromLocalFile(QString::fromStdString(folder.file("lib")));
}

void SceneFixture::dropAt(const QAbstractItemView &view, const QPoint &place, const QMimeData &data)
{
    QWidget *viewport = view.viewport();
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &enter);
    QDragMoveEvent move(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &move);
    QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &event);
    process();
}

bool SceneFixture::drop(QAbstractItemModel &model, const QMimeData &data, int row, const QModelIndex &parent)
{
    const bool isTaken = model.canDropMimeData(&data, Qt::CopyAction, row, 0, parent);
    if (isTaken)
        model.dropMimeData(&data, Qt::CopyAction, row, 0, parent);
    process();
    return isTaken;
}
