// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/Node.h"

#include <cstdint>
#include <string>

/// Loads a sub-tree from a scene file. Main thread only.
class KX_KERNEL_EXPORT kxFastGeometryLoader
{
public:
    /// What becomes of the material pools in the file.
    enum MaterialPoolHandling : int {
        KeepMaterialPools = 0,
        MergeIntoScene = 1 ///< what they hold moves into the scene's pool, and their nodes go
    };

    /// Where to hang what was loaded: a child of \a parent at this index, -1 for the last; null: nowhere.
    void setParent(const osg::NodePtr &parent, int index);
    /// Whether the loaded node notes the file that it came from.
    void setAddFileInfo(bool add) { _addsFileInfo = add; }
    /// Whether views that show progress are told of the beginning and the end (see kxControllerNotifier).
    void setShowProgress(bool show) { _showsProgress = show; }
    void setMaterialPoolHandling(MaterialPoolHandling handling) { _poolHandling = handling; }

    /// The file's first node. With a null parent nobody holds it yet. Null, with one line in the log that names the file
    /// and the reason, when the file cannot be read or holds no node. The path is null-terminated UTF-8.
    ///
    /// What refers to nodes by their keys refers to the loaded ones afterwards, however often a file is loaded.
    osg::NodePtr load(const char *path) const;

    /// What load() does with a sub-tree that was read in another way: its actions are known, its keys are its own, and its
    /// material pools are handled. The root's own pool stays.
    static void enterScene(const osg::NodePtr &node, MaterialPoolHandling pools);

private:
    std::uint32_t _parentId = 0;
    int _index = -1;
    bool _addsFileInfo = false;
    bool _showsProgress = false;
    MaterialPoolHandling _poolHandling = KeepMaterialPools;
};
