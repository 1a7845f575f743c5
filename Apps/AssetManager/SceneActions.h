// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/SceneCommand.h"
#if !defined(Q_MOC_RUN)
#include "SceneGraph/FieldValue.h"
#include "SceneGraph/Material.h"
#include "SceneGraph/Node.h"
#endif

#include <QObject>
#include <QStringList>

#include <memory>
#include <string>
#include <vector>

class QUndoStack;
class kxAssetItem;

/// Everything that can be done to the scene in this program, as steps that can be undone. Main thread only.
///
/// Several objects are one step, and one of them that fails does not hold up the others: what went wrong comes in failed(),
/// once for each call. Nodes that are null or gone are passed over.
class SceneActions final : public QObject
{
    Q_OBJECT

public:
    using Nodes = std::vector<osg::NodePtr>;
    using Uuids = std::vector<std::string>;

    struct FieldChange
    {
        std::uint32_t containerId = 0;
        std::string field;
        osg::FieldValue value;
    };

    /// The stack outlives this. It is cleared whenever there is another document.
    explicit SceneActions(QUndoStack &stack, QObject *parent = nullptr);
    ~SceneActions() override;

    QUndoStack &stack() const { return _stack; }

    /// The asset's material for the nodes, or for the geometry below those that take none themselves.
    void assignMaterial(const std::string &uuid, const Nodes &nodes);
    /// The same with a material of the scene.
    void assignMaterial(std::uint32_t materialId, const Nodes &nodes);
    /// Into the scene's material pool.
    void loadMaterials(const Uuids &uuids);
    /// New copies as the last children of \a parent, or of the root for null and for plates.
    void loadGeometry(const Uuids &uuids, const osg::NodePtr &parent);
    /// Each becomes one of those that can be switched between, and the last one is current.
    void loadEnvironment(const Uuids &uuids);
    /// Below \a parent, or beside it where it is a plate; among the outermost plates for null and for objects.
    void loadPlates(const Uuids &uuids, const osg::NodePtr &parent);
    void switchEnvironment(int index);

    /// What belongs to every document stays, with a sentence in failed().
    void removeNodes(const Nodes &nodes);
    /// Of nodes and materials. An empty name is refused.
    void rename(std::uint32_t containerId, const std::string &name);
    void renameNode(const osg::NodePtr &node, const std::string &name);
    /// Of plates and lights; other nodes are always shown.
    void setVisible(const Nodes &nodes, bool visible);
    /// As children of \a newParent, in this order, from \a index on (-1: at the end). They stay where they are in the world
    /// as far as they have a placement of their own.
    void moveNodes(const Nodes &nodes, const osg::NodePtr &newParent, int index);
    /// Below a new node in the place of the first one. The answer is the new node; null where there was nothing to group.
    osg::NodePtr group(const Nodes &nodes);

    /// Changes with the same \a gesture, other than 0, that follow each other are one step: what a person sees as one move.
    void setField(const std::vector<std::uint32_t> &containerIds, const std::string &field,
                  const osg::FieldValue &value, const QString &text, int gesture = 0);
    void setFields(const std::vector<FieldChange> &changes, const QString &text, int gesture = 0);

    void newScene();
    /// False with a sentence in failed(); the scene is as before then.
    bool openScene(const QString &path);
    bool saveScene(const QString &path);

Q_SIGNALS:
    /// Sentences for people. Never empty.
    void failed(const QStringList &messages);
    void assetsLoaded(const QStringList &uuids);

private:
    using Command = std::unique_ptr<SceneCommand>;

    Command command(const QString &text, int gesture = 0);
    /// Pushes what was done, if anything, and says what was not.
    void finish(Command done, const QStringList &failures);
    void assign(const osg::MaterialPtr &material, const Nodes &nodes);
    void loadNodes(const Uuids &uuids, const osg::NodePtr &parent, int category);

    QUndoStack &_stack;
};
