// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/NodeTreePanel.h"

/// The scene as a tree; what is dropped on it is loaded, assigned or moved.
class SceneTreePanel final : public NodeTreePanel
{
    Q_OBJECT

public:
    explicit SceneTreePanel(SceneActions &actions, QWidget *parent = nullptr);
    ~SceneTreePanel() override;
};
