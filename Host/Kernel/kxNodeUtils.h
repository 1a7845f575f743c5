// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/Material.h"
#include "SceneGraph/Node.h"

#include <cstdint>
#include <string>
#include <vector>

/// What can be asked of and done to nodes. Null-safe throughout. Main thread only.
class KX_KERNEL_EXPORT kxNodeUtils
{
public:
    kxNodeUtils() = delete;

    /// The exact name, UTF-8; "" for null and for a node without one.
    static std::string getName(const osg::NodePtr &node);
    /// Sets exactly this name, also when another node has it. With \a announce views are told. With a \a root the name
    /// is set only on a node at or below it.
    static void setName(const osg::NodePtr &node, const std::string &name, bool announce, const osg::NodePtr &root);

    /// Appends the nodes at and below \a node whose core is a geometry, parents first.
    static void getGeometryNodes(const osg::NodePtr &node, std::vector<osg::NodePtr> &nodes);

    /// Assigns the material, or null, to the node's core, and so to all nodes that share it. False when the core takes no
    /// material, and, with \a replace false, when it has one already. With \a announce views are told to refresh on the
    /// next pass of the event loop.
    static bool setMaterial(const osg::NodePtr &node, const osg::MaterialPtr &material, bool announce, bool replace);

    /// Null for an id that is no living node's.
    static osg::NodePtr getNodeFromId(std::uint32_t id);

    /// Writes the node and all below it to a file, whole or not at all. With \a replace false an existing file is left
    /// alone and the result is false. The reason of a failure is logged for debugging only: the caller reports it.
    static bool writeNode(const osg::NodePtr &node, const char *path, bool replace);

    /// Takes the attachment of this type from the node; nothing happens without one.
    static void removeAttachment(const osg::NodePtr &node, const osg::FieldContainerType &type);

    /// Appends all other nodes that share the node's core and are reachable from the scene's root, depth first.
    static void getAllClonesInScenegraph(const osg::NodePtr &node, std::vector<osg::NodePtr> &clones);
    /// Makes the children of every clone correspond to the node's, all the way down: missing ones are added as clones,
    /// surplus ones removed, the order adapted, names and asset attachments carried over. The node itself, nulls, destroyed
    /// nodes and nodes with another core are passed over, and nodes above or below it, which would hold themselves.
    static void syncCloneTrees(const osg::NodePtr &node, const std::vector<osg::NodePtr> &clones);

    /// Drops, at and below \a root, synchronisation partners that are no nodes of this tree or the scene, or do not name
    /// the node back; and records that become empty.
    static void removeInvalidSynchronizations(const osg::NodePtr &root);
};
