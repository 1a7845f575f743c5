// SPDX-License-Identifier: Apache-2.0
#pragma once

#if !defined(Q_MOC_RUN)
#include "Rendering/kxViewport.h"
#endif

class SceneActions;

/// The picture of the scene, in which objects are picked and onto which assets are dropped.
///
/// A material goes to the object under the pointer, or to all that are selected where it is one of them, geometry and plates into the scene, an environment around it.
class SceneView final : public kxViewport
{
    Q_OBJECT

public:
    /// The actions have to live longer.
    explicit SceneView(SceneActions &actions, QWidget *parent = nullptr);
    ~SceneView() override;

private:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

    SceneActions &_actions;
};
