// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxGeometrySceneplateCommon.h"
#include "Kernel/kxSceneplateTypes.h"

/// An asset that is a sceneplate, or a group or switch of them.
class KX_ASSETS_EXPORT kxSceneplateAssetItem : public kxGeometrySceneplateCommon
{
    Q_DECLARE_TR_FUNCTIONS(kxSceneplateAssetItem)

public:
    /// A new copy of a registered sceneplate asset, which nobody owns yet; null, with a line on standard output, for an
    /// unknown UUID, and with one in the log for an asset of another kind.
    static osg::NodePtr loadNodeFromUUID(const std::string &uuid);

    kxSceneplateAssetItem();

    /// Writes the asset and has the directory collected. A registered item with this UUID is deleted on the way, also when
    /// it is this one.
    bool save(const QUrl &url) override;
    bool readMetaData(const kxAssetItemDocument &document) override;
    bool writeMetaData(kxAssetItemDocument &document) const override;
    QVariant data(int column, int role) override;
    QString mimeType() override;
    /// What the host's sceneplates show; null without it and for a group without content.
    osg::ImagePtr renderPreview(osg::NodePtr node) override;
    void setNode(const osg::NodePtr &node) override;
    bool makeNodeValidForSave() override;

    QString sceneplateTypeName() const;

protected:
    void reset() override;

private:
    kxSceneplateTypes::NodeType _sceneplateType = kxSceneplateTypes::Group;
};
