// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/NodeTreePanel.h"

/// The plates over and under the picture: what is shown, how much, and in which order.
class PlatePanel final : public NodeTreePanel
{
    Q_OBJECT

public:
    explicit PlatePanel(SceneActions &actions, QWidget *parent = nullptr);
    ~PlatePanel() override;
};
