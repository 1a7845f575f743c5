// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/SceneActions.h"
#include "AssetSession/kxAssetSession.h"
#include "SceneGraph/Node.h"
#include "Support/TemporaryFolder.h"

#include <QMimeData>
#include <QUndoStack>
#include <QUrl>

#include <gtest/gtest.h>

class QAbstractItemModel;
class QAbstractItemView;
class QModelIndex;

/// A host with a library folder, an empty scene, and the actions with their stack.
class SceneFixture : public testing::Test
{
protected:
    explicit SceneFixture(kxAssetSession::MainView mainView = kxAssetSession::MainView::OffScreen);
    ~SceneFixture() override;

    static osg::NodePtr root();
    static osg::NodePtr add(const osg::NodeCorePtr &core, const osg::NodePtr &parent, const std::string &name);
    /// A transform with one triangle below it, named "Seat".
    static osg::NodePtr addChair(const std::string &name, const osg::NodePtr &parent = nullptr);
    static osg::NodePtr addPlate(const std::string &name);
    static osg::MaterialPtr materialOf(const osg::NodePtr &geometry);
    static std::string materialNameOf(const osg::NodePtr &geometry);
    static std::vector<std::string> childNames(const osg::NodePtr &parent);
    /// The texts of the first column, without what lies below a row.
    static QStringList shown(const QAbstractItemModel &model);
    static void process();

    /// Assets of each kind, stored, and not part of the scene. The answer is the UUID.
    std::string storeMaterial(const std::string &name);
    std::string storeGeometry(const std::string &name);
    std::string storeEnvironment(const std::string &name);
    std::string storeEnvironmentMaterial(const std::string &name);
    std::string storePlate(const std::string &name);
    QUrl library() const;

    /// As a drag from elsewhere enters the view, moves to \a place in its viewport and ends there.
    static void dropAt(const QAbstractItemView &view, const QPoint &place, const QMimeData &data);
    /// Whether the model takes the drop, which is carried out as a view does it.
    static bool drop(QAbstractItemModel &model, const QMimeData &data, int row, const QModelIndex &parent);

    kxtest::TemporaryFolder folder;
    kxAssetSession session;
    QUndoStack stack;
    SceneActions actions{stack};
    QStringList failures; ///< all that the actions reported
    QStringList loaded;   ///< all that they said to have loaded
};
