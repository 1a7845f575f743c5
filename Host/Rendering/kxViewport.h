// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/RenderingExport.h"

#if !defined(Q_MOC_RUN) // which cannot read concepts
#include "Rendering/kxOSGWidget.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/Volume.h"
#endif

#include <QImage>
#include <QWidget>

#include <memory>

/// A window onto the scene document: rendered through the scene's camera, refined while nothing happens, begun anew when the
/// scene, the camera or the size changes. Main thread only; rendering happens on other threads.
///
/// The left button drags the camera around its target, the middle one, or Shift and the left one, moves both, the wheel
/// zooms; arrow keys, + and - do the same. F frames what is selected, Home everything. The camera of the scene is what moves.
/// While the updates of kxScenegraph or kxController are off, the picture stays what it is.
class KX_RENDERING_EXPORT kxViewport : public QWidget, public kxOSGWidget
{
    Q_OBJECT
    Q_PROPERTY(int sampleLimit READ sampleLimit WRITE setSampleLimit)

public:
    static constexpr int DefaultSampleLimit = 256;

    explicit kxViewport(QWidget *parent = nullptr);
    ~kxViewport() override;

    /// The newest picture, with the plates under and over it and without what is drawn for orientation; of the widget's size
    /// in pixels of the screen, but for the moment after the size changed. What is empty is transparent. Null before the
    /// first one, and without a scene.
    QImage picture() const;
    /// Of each pixel in the newest picture; 0 for the coarse one.
    int samples() const;
    /// With how many samples of each pixel refinement ends; at least 1.
    int sampleLimit() const;
    void setSampleLimit(int limit);
    /// Whether better pictures are still to come.
    bool isRefining() const;

    /// Has refinement stand still while something is being done for which the machine is needed, such as a drag: what changes
    /// is shown, but gets no better until the pause is over.
    void setRefinementPaused(bool paused);

    /// The node whose surface is seen at a place of the widget; null for the background, and where it is gone meanwhile. Of a
    /// large scene that changed a moment ago it may have to wait for the triangles to be put in order.
    osg::NodePtr nodeAt(const QPoint &place) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// Brings the selected nodes, or without any everything, into the middle; the camera keeps its direction. Nothing happens
    /// where there is nothing to see.
    void frameSelection();
    void frameAll();

Q_SIGNALS:
    /// A click, which is no drag, on a node; 0: on the background.
    void picked(quint32 nodeId, Qt::KeyboardModifiers modifiers);
    void pictureChanged();
    /// The picture has all of its samples.
    void refined();

protected:
    void cancelRefinement() override;
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    struct Private;
    enum class Need { Nothing, Picture, Scene };

    void renderRootsChanged() override;
    void overlayChanged() override;

    void request(Need need);
    void startRendering();
    void takeScene();
    void dropPicture();
    void showPicture(const QImage &rendered, int samples);
    void dropOutline();
    const QImage &outline();
    bool frame(const osg::Volume &box);
    bool moveByKey(int key);
    void drag(const QPointF &way);

    std::unique_ptr<Private> _private;
};
