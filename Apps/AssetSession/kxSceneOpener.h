// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"
#include "SceneGraph/Material.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/Result.h"
#include "SceneGraph/SceneFile.h"

#include <QString>

#include <vector>

/// Brings the contents of scene files into the scene document. Main thread only.
class KX_ASSETSESSION_EXPORT kxSceneOpener
{
public:
    /// What a file held, each kind in the file's order. The document holds it all.
    struct Contents
    {
        std::vector<osg::NodePtr> nodes;
        std::vector<osg::NodePtr> environments;
        std::vector<osg::NodePtr> plates;
        std::vector<osg::MaterialPtr> materials;

        std::vector<osg::NodePtr> allNodes() const;
    };

    kxSceneOpener() = delete;

    /// Adds to what the document holds already: nodes below the root, plates to the sceneplates, environments to those that
    /// can be switched between, with the last one current, and materials to the material pool. The failure names the file
    /// and the reason, and the document is as before.
    static osg::Result<Contents> open(const QString &path);
    /// The same with what was read already. What its nodes say of each other across its roots stays true.
    static Contents add(const osg::SceneRoots &roots);
};
