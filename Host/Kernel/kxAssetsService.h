// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "Kernel/kxBaseService.h"
#include "Kernel/kxdObject.h"

#include <QStringList>

#include <vector>

/// What scripts can do with the assets that are in use in the scene; a library of assets implements it. Main thread only.
///
/// Null nodes, destroyed ones and nodes that are no assets are passed over. Nothing throws.
class KX_KERNEL_EXPORT kxAssetsService : public kxBaseService
{
    Q_OBJECT

public:
    explicit kxAssetsService(QObject *parent = nullptr);
    ~kxAssetsService() override;

    /// Makes the nodes ordinary ones, which belong to no asset. What lies below them stays as it is.
    virtual void removeAssetReference(const std::vector<kxdNodePtr> &nodes) = 0;
    /// Selects the assets of the nodes in the asset library, in place of what was selected. One text, for people, for each
    /// that could not be found.
    virtual QStringList selectAssets(const std::vector<kxdNodePtr> &nodes) = 0;
    /// Saves the nodes over the assets that they came from.
    virtual void overwriteAssets(const std::vector<kxdNodePtr> &nodes) = 0;
    /// The nodes at and below \a root that came from the same assets, for each of the nodes in turn.
    virtual std::vector<kxdNodePtr> findAssetNodes(const std::vector<kxdNodePtr> &nodes, const kxdNodePtr &root) = 0;
    /// Notes that the nodes differ from what is stored.
    virtual void markAssetsEdited(const std::vector<kxdNodePtr> &nodes) = 0;
    /// Has the asset manager show which of the nodes differ from what is stored.
    virtual void queryAssetChanges(const std::vector<kxdNodePtr> &nodes) = 0;
    /// Loads sceneplates below \a parent, or at the top for null.
    virtual void loadSceneplateAssets(const QStringList &uuids, const kxdNodePtr &parent) = 0;

Q_SIGNALS:
    /// The references to assets, or what is noted of them, changed.
    void assetsChanged();
};
