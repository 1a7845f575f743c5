// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/RenderingExport.h"
#include "SceneGraph/Node.h"

#include <QImage>
#include <QSize>

/// Draws sceneplates: pictures over or under the rendered image. Main thread only.
///
/// Plates are drawn in the order of the tree, later ones over earlier ones. Invisible plates are left out with everything
/// below them, and of a switch all children but the chosen one.
class KX_RENDERING_EXPORT kxSceneplatePainter
{
public:
    enum Layers : unsigned { Back = 1, Front = 2, Both = Back | Front };

    kxSceneplatePainter() = delete;

    /// Whether at or below the node there is anything to draw in these layers.
    static bool hasContent(const osg::NodePtr &node, Layers layers);
    /// Draws the plates of these layers at and below the node over \a picture, premultiplied or not.
    static void paint(const osg::NodePtr &node, Layers layers, QImage &picture);
    /// The rendered image between the plates under and over it, in its own format. Nothing changes without plates.
    static QImage composed(const QImage &rendered, const osg::NodePtr &plates);

    /// What stands for the node in lists, no larger than \a size: a plate's own picture as it is, or what a group or switch
    /// shows together. A null image where there is nothing to show.
    static QImage preview(const osg::NodePtr &node, const QSize &size);
};
