// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/RenderingExport.h"

#if !defined(Q_MOC_RUN) // which cannot read concepts
#include "SceneGraph/Node.h"
#include "SceneGraph/UberCamera.h"
#endif

#include <QImage>
#include <QObject>
#include <QPointF>
#include <QSize>

#include <memory>
#include <vector>

namespace kxRender {
struct NodeMap;
}

/// Renders pictures of nodes on a thread of its own while the program goes on: a coarse one at once, and then better and
/// better ones. Main thread only.
///
/// What is rendered is a copy that setScene() makes; changes of the scene show after the next setScene(). Another camera or
/// size needs no new copy.
class KX_RENDERING_EXPORT kxProgressiveRendering : public QObject
{
    Q_OBJECT

public:
    explicit kxProgressiveRendering(QObject *parent = nullptr);
    /// Waits for the few pixels that are being rendered.
    ~kxProgressiveRendering() override;

    /// Copies what kxSceneRenderer would render of these nodes.
    void setScene(const std::vector<osg::NodePtr> &roots, bool isBackgroundVisible);
    /// Stops what was rendered and forgets the copy.
    void clearScene();

    /// Begins anew, looking through this camera, as it is now, at a picture of this size in pixels; refinement ends with
    /// \a samples of each pixel. Answers a number that the pictures carry, higher than those before; 0, and nothing is rendered,
    /// without a scene or camera, and for sizes and samples below 1.
    quint64 start(const osg::UberCameraPtr &camera, const QSize &size, int samples);
    /// No picture comes any more until the next start(). Returns at once.
    void cancel();
    /// While it is paused, a picture gets no better than that of the next samples; it goes on from there afterwards.
    void setPaused(bool paused);
    /// Whether there are pictures to come.
    bool isRunning() const;

    /// The id of the node that is seen through the camera at a place in a picture of this size; 0 for the background and
    /// without a scene. Of nodes that are gone the id as well.
    quint32 nodeAt(const osg::UberCameraPtr &camera, const QSizeF &size, const QPointF &place) const;

    /// Those of the newest picture; null before the first one and without a scene.
    std::shared_ptr<const kxRender::NodeMap> nodes() const;

Q_SIGNALS:
    /// \a samples is 0 for the coarse picture, which has the full size as well. While the camera is moved on, a picture may
    /// be that of an earlier start(), but of none before the last cancel().
    void pictureReady(const QImage &picture, int samples, quint64 start);
    /// The last picture was delivered.
    void finished();

private:
    struct Private;

    void deliver();

    std::unique_ptr<Private> _private;
};
