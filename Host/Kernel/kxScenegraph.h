// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "Kernel/kxNodePtr.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/Node.h"

#include <QPixmap>

#include <string>
#include <vector>

class kxScenegraphNotifier;

/// The scene document of the program: one at a time, or none in a program that has not made one. Main thread only.
class KX_KERNEL_EXPORT kxScenegraph
{
public:
    kxScenegraph() = delete;

    /// Replaces the document by a fresh one, which has a root, a material pool, a default environment and a camera, and is
    /// not modified.
    static void newDocument();
    /// Gives the document up. Nothing happens without one.
    static void closeDocument();

    /// The following are null without a document, and when somebody removed the node.
    static osg::NodePtr getRoot();
    static osg::NodePtr getMaterialPoolNode();
    static osg::NodePtr getDefaultEnvironmentNode();
    static osg::NodePtr getCameraNode();
    /// A node with a switch core below the root, whose child i belongs to choice i of the default environment switch. Null
    /// without a document, and when it was removed.
    static osg::NodePtr environmentGeometrySwitch();
    /// What holds the sceneplates; no part of the tree below the root. Null without a document.
    static osg::NodePtr getSceneplateRoot();

    /// The nodes at and below \a root that carry an asset attachment, depth first.
    static std::vector<kxNodePtr> getAssetNodes(const osg::NodePtr &root);
    /// Those of one asset, down to \a depth levels below the root; -1: all.
    static std::vector<kxNodePtr> getAssetNodes(const osg::NodePtr &root, const std::string &uuid, int depth);
    /// What the user selected, in that order.
    static std::vector<osg::NodePtr> getSelectedNodes();

    /// Takes the asset attachments of this UUID, or with an empty one all, from the roots and everything below. With
    /// \a announce views are told to refresh.
    static void removeAssetAttachments(const std::vector<osg::NodePtr> &roots, const std::string &uuid, bool announce);
    /// Takes the asset attachments from these nodes, and not from what lies below.
    static void removeAssetReference(const std::vector<osg::NodePtr> &nodes);

    /// The deepest node that is an ancestor of all of them, none being its own; nulls do not count. Null when there is none.
    static osg::NodePtr findFirstEqualParent(const std::vector<kxNodePtr> &nodes);
    /// The product of the placements from the root down to and including the node; identity for null.
    static osg::Matrix getToWorld(const osg::NodePtr &node);

    static osg::MaterialPoolPtr getMaterialPool();

    /// Puts a material into the scene's pool, which holds it from now on; false when it is there already, for null, and
    /// without a pool.
    static bool addToMaterialPool(const osg::MaterialPtr &material);
    /// False when the pool does not hold it. The material dies here when nothing else refers to it.
    static bool removeFromMaterialPool(const osg::MaterialPtr &material);

    /// Whether views follow the scene: a flag, not a counter. What was asked for while it was off happens on the next pass
    /// of the event loop after it is on again.
    static bool isUpdateEnabled();
    static void enableUpdate(bool enabled);
    /// Has the views of the scene's structure refresh: at once, or on the next pass, several requests as one.
    static void update(bool immediately);

    /// The picture of a material type, or of the nearest type above it that has one, \a size pixels high or in its natural
    /// size for 0. A null pixmap for null and for types that are no materials.
    static QPixmap getMaterialTypeIcon(const osg::FieldContainerType *type, int size);

    static kxScenegraphNotifier &notifier();
};
