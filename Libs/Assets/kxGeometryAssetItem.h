// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxGeometrySceneplateCommon.h"

/// An asset that is a part of the scene, below a node that places it.
class KX_ASSETS_EXPORT kxGeometryAssetItem : public kxGeometrySceneplateCommon
{
    Q_DECLARE_TR_FUNCTIONS(kxGeometryAssetItem)

public:
    /// Whether the node has at least one child and places it by translation, rotation and scale.
    static bool isValidAssetRoot(const osg::NodePtr &node);
    /// A new copy of a registered geometry asset, which nobody owns yet; null, with a line on standard output, for an
    /// unknown UUID, and silently for an asset of another kind.
    static osg::NodePtr loadNodeFromUUID(const std::string &uuid);

    kxGeometryAssetItem();

    /// Writes the asset, has the directory collected and brings the clones of its node up to date. A registered item with
    /// this UUID is deleted on the way, also when it is this one.
    bool save(const QUrl &url) override;
    QString mimeType() override;
    /// The node alone, as the main view's camera sees it when it is framed: 512 x 384 pixels with alpha. The scene, the
    /// selection and the view are as before afterwards. Null without a main view with a camera.
    osg::ImagePtr renderPreview(osg::NodePtr node) override;
    /// Asks to turn references into ordinary nodes, and to put a placement above a node that has none of its own.
    bool makeNodeValidForSave() override;

protected:
    void reset() override;

private:
    bool removeReferences(const osg::NodePtr &node);
    bool makeAssetRoot(const osg::NodePtr &node);
};
