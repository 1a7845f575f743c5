// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Node.h"
#include "TestUrlManager.h"

#include <functional>
#include <string>
#include <vector>

/// A back-end for URLs like "nodes:/library/GEO_Chair" that does with nodes and materials what the test says, and notes what
/// it is asked.
class NodeManager : public TestUrlManager
{
public:
    /// One for the process, as it can never be taken out of the registry; like new again.
    static NodeManager &fresh();
    static QUrl url(const QString &path) { return QUrl(QStringLiteral("nodes:") + path); }

    using TestUrlManager::collectItems;

    bool acceptsEverything = false;
    /// Fills in what was "loaded"; without it nothing loads.
    std::function<bool(osg::NodePtr &node)> load;
    std::function<bool(kxGeometrySceneplateCommon &item)> store;
    std::function<bool(kxEnvironmentNodeAssetItem &item)> storeEnvironment;
    std::function<bool(kxMaterialAssetItem &item)> storeMaterial;
    bool removesOldItems = true;
    std::function<void()> whenCollecting;
    mutable std::vector<std::string> asked; ///< "operation arguments", in order

    bool accepts(const QUrl &url) const override { return acceptsEverything || url.scheme() == QLatin1String("nodes"); }
    bool loadNodeFromDir(const QUrl &url, osg::NodePtr &node) const override;
    bool loadSceneplateFromDir(const QUrl &url, osg::NodePtr &node) const override;
    bool saveSceneNodeAsset(const QUrl &parent, kxGeometrySceneplateCommon *item) const override;
    bool saveMaterialAsset(const QUrl &parent, kxMaterialAssetItem *item) const override;
    bool saveEnvironmentNodeAsset(const QUrl &parent, kxEnvironmentNodeAssetItem *item) const override;
    bool removeOldItemDirectory(kxAssetItem *oldItem, kxAssetItem *newItem) const override;
    void collectItems(const QUrl &url, kxAssetCategoryType category, QProgressDialog *progress) const override;

private:
    bool note(const std::string &operation, const QUrl &url) const;
};
