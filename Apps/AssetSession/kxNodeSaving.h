// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"
#include "Assets/kxAssetCategory.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/Result.h"

#include <QUrl>

#include <string>
#include <vector>

/// Saves parts of the scene document as assets, without a person who answers the questions. Main thread only.
///
/// Environments become environment assets, what lies among the sceneplates a sceneplate asset, and everything else a
/// geometry asset. The scene is as before afterwards, apart from what the asset needs: the answers say to what the saved
/// nodes are changed, and each carries the attachment of its asset.
class KX_ASSETSESSION_EXPORT kxNodeSaving
{
public:
    /// What a person would be asked; the defaults change nothing that cannot be told from the asset.
    struct Answers
    {
        bool makesReferencesOrdinary = false; ///< else nodes with references to other files are not saved
        bool makesAssetRoot = true;           ///< else nodes that cannot be placed are not saved
    };
    struct Saved
    {
        std::string uuid;
        std::string name;
        std::vector<std::string> remarks; ///< what was done with the nodes to save them
    };

    explicit kxNodeSaving(const Answers &answers) : _answers(answers) {}

    /// Saves the node as a new asset below \a folder, named \a name, or like the node where that is empty. The failure's
    /// reason names the node.
    osg::Result<Saved> save(const osg::NodePtr &node, const std::string &name, const QUrl &folder) const;
    /// Saves the node over the asset that it came from, where that is.
    osg::Result<Saved> update(const osg::NodePtr &node) const;
    /// Saves several nodes as one asset, which keeps their places to each other. All are of one kind; environments cannot
    /// be grouped.
    osg::Result<Saved> saveGroup(const std::vector<osg::NodePtr> &nodes, const std::string &name,
                                 const QUrl &folder) const;

    /// What the node would become.
    static kxAssetCategoryType categoryOf(const osg::NodePtr &node);

private:
    /// With an empty \a uuid as a new asset.
    osg::Result<Saved> saveItem(const osg::NodePtr &node, const std::string &uuid, const QUrl &folder) const;

    Answers _answers;
};
