// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"
#include "SceneGraph/Result.h"

#include <QString>

#include <string>
#include <vector>

/// Tells which assets of a scene file differ from what the opened libraries hold. Main thread only.
class KX_ASSETSESSION_EXPORT kxSceneCheck
{
public:
    enum class State {
        Same,             ///< as stored
        StoredChanged,    ///< the stored asset was saved again since
        EditedInScene,    ///< the scene's copy was changed
        StoredUnreadable, ///< the stored asset cannot be loaded
        MissingInLibrary
    };
    struct Entry
    {
        std::string uuid;
        std::string name;
        State state = State::Same;
        std::string detail; ///< where the copies differ first, or where the asset was last seen
    };

    /// One entry for each asset that the file holds: materials first, then nodes, each in the file's order.
    static osg::Result<std::vector<Entry>> check(const QString &path);

    static const char *textOf(State state);
};
