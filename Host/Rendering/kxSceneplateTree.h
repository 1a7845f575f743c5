// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/kxSceneplateService.h"
#include "Rendering/RenderingExport.h"

/// The sceneplates of the scene document, as a service. Main thread only.
class KX_RENDERING_EXPORT kxSceneplateTree final : public kxSceneplateService
{
    Q_OBJECT

public:
    explicit kxSceneplateTree(QObject *parent = nullptr);
    ~kxSceneplateTree() override;

    /// Has the views of the scene's structure and of the scene itself refresh on the next pass of the event loop.
    void nodesChanged() override;
    /// No larger than 512 x 384 pixels.
    QImage previewImage(const kxdNodePtr &node) override;
};
