// SPDX-License-Identifier: Apache-2.0
#include "NodeManager.h"

#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometrySceneplateCommon.h"
#include "Assets/kxMaterialAssetItem.h"

NodeManager &NodeManager::fresh()
{
    static NodeManager manager;
    manager = NodeManager();
    registerManager(&manager);
    return manager;
}

bool NodeManager::note(const std::string &operation, const QUrl &url) const
{
    asked.push_back(operation + " " + url.path().toStdString());
    return true;
}

bool NodeManager::loadNodeFromDir(const QUrl &url, osg::NodePtr &node) const
{
    return note("loadNodeFromDir", url) && load && load(node);
}

bool NodeManager::loadSceneplateFromDir(const QUrl &url, osg::NodePtr &node) const
{
    return note("loadSceneplateFromDir", url) && load && load(node);
}

bool NodeManager::saveSceneNodeAsset(const QUrl &parent, kxGeometrySceneplateCommon *item) const
{
    return note("saveSceneNodeAsset " + item->name(), parent) && store && store(*item);
}

bool NodeManager::saveMaterialAsset(const QUrl &parent, kxMaterialAssetItem *item) const
{
    return note("saveMaterialAsset " + item->name(), parent) && storeMaterial && storeMaterial(*item);
}

bool NodeManager::saveEnvironmentNodeAsset(const QUrl &parent, kxEnvironmentNodeAssetItem *item) const
{
    return note("saveEnvironmentNodeAsset " + item->name(), parent) && storeEnvironment && storeEnvironment(*item);
}

bool NodeManager::removeOldItemDirectory(kxAssetItem *oldItem, kxAssetItem *newItem) const
{
    note("removeOldItemDirectory " + oldItem->name() + " for " + newItem->name(), oldItem->directoryUrl());
    return removesOldItems;
}

void NodeManager::collectItems(const QUrl &url, kxAssetCategoryType category, QProgressDialog *progress) const
{
    note("collectItems " + std::to_string(category) + (progress ? " with progress" : ""), url);
    if (whenCollecting)
        whenCollecting();
}
