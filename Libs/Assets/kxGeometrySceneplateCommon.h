// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetItem.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/Node.h"

#include <QCoreApplication>

#include <cstdint>

class kxUrlManager;

/// An asset that is a sub-tree of the scene: what geometry and sceneplates have in common.
///
/// The item knows its node by the container id and holds nothing: a node that is gone reads as null.
class KX_ASSETS_EXPORT kxGeometrySceneplateCommon : public kxAssetItem
{
    Q_DECLARE_TR_FUNCTIONS(kxGeometrySceneplateCommon)

public:
    /// Nothing but a reset when \a container is no node.
    void initFrom(osg::AttachmentContainerPtr container, const std::string &uuid, bool useAttachment) override;
    QVariant data(int column, int role) override;

    /// A picture of the node; the caller owns one reference. Null where none can be made.
    virtual osg::ImagePtr renderPreview(osg::NodePtr node) = 0;
    /// Makes this the item of the node, or of none.
    virtual void setNode(const osg::NodePtr &node);
    /// Whether the node can be saved, after asking and changing what is in the way of it.
    virtual bool makeNodeValidForSave() = 0;

    osg::NodePtr getNode() const;
    /// Loads the stored sub-tree and makes its root the item's node, which nobody owns yet: hang it somewhere.
    bool loadNode();

protected:
    /// Puts a new node with a placement of its own above \a node, in its place, with its asset attachment; \a node becomes
    /// the new one. False for null.
    bool insertGeometryAssetRoot(osg::NodePtr &node);
    /// Names a node after the registered item of its asset attachment.
    void setNodeNameToItemName(const osg::NodePtr &node);
    /// Lights the override materials at and below \a root by the scene's default environment.
    static void setDefaultBRDFEnvironmentForOverrideMaterials(const osg::NodePtr &root);

    void setNodeReference(std::uint32_t id) { _nodeId = id; }
    /// Writes the asset below \a url, replaces the registered item, which may be this one, and marks the node as being what
    /// is stored now. Where that is this item, it is gone afterwards.
    bool store(const kxUrlManager &manager, const QUrl &url);

private:
    void wrapNestedAssets(const osg::NodePtr &root);

    std::uint32_t _nodeId = 0;
};
