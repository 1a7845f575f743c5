// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/SceneCommand.h"
#include "SceneGraph/Node.h"

#include <string>

/// Notes in a command that objects of the scene are no longer as their assets are stored.
class EditedAssets
{
public:
    EditedAssets() = delete;

    /// Of the assets at and above the node.
    static void noteAtOrAbove(SceneCommand &command, osg::NodePtr node);
    /// Of a field of any container that changes. Where an asset stands is no part of it.
    static void noteField(SceneCommand &command, std::uint32_t containerId, const std::string &field);
};
