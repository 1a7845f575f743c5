// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetItem.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/UEnvironmentMaterial.h"

#include <QCoreApplication>

#include <cstdint>

/// An asset that is an environment: its material, its lights and what belongs to them.
///
/// The item knows its node by the container id and holds nothing: a node that is gone reads as null.
class KX_ASSETS_EXPORT kxEnvironmentNodeAssetItem : public kxAssetItem
{
    Q_DECLARE_TR_FUNCTIONS(kxEnvironmentNodeAssetItem)

public:
    /// A new copy of a registered environment, hung into the scene and made current; null, with a line on standard output,
    /// for an unknown UUID, and silently for an asset of another kind.
    static osg::NodePtr loadEnvironmentNodeFromUUID(const std::string &uuid);

    kxEnvironmentNodeAssetItem();

    /// Writes the asset and has the directory collected. A registered item with this UUID is deleted on the way, also when
    /// it is this one.
    bool save(const QUrl &url) override;
    /// A sky in the lower left corner.
    void addOverlayIcon(QPixmap &pixmap) const override;
    /// Nothing but a reset when \a container is no node of an environment.
    void initFrom(osg::AttachmentContainerPtr container, const std::string &uuid, bool useAttachment) override;
    QVariant data(int column, int role) override;
    QString mimeType() override;

    osg::NodePtr getEnvironmentNode() const;
    /// Loads the stored environment into the scene: among those that the user can switch between, and with \a makeCurrent
    /// as the current one; else below the scene's root. Asks where several materials could stand for it; false when that is
    /// cancelled, and when nothing can be loaded.
    bool loadEnvironmentNode(bool makeCurrent);

protected:
    void reset() override;

private:
    enum class Choice { None, Found, PickedByUser, Cancelled };

    void tagMaterials(const osg::NodePtr &node);
    static Choice choose(const osg::NodePtr &node, osg::FCRef<osg::UEnvironmentMaterial> &material);

    std::uint32_t _nodeId = 0;
};
