// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/RenderingExport.h"
#include "SceneGraph/Image.h"

#include <QImage>
#include <QString>

#include <vector>

class QWidget;

/// Renders what the main view shows, through its camera, into images. Main thread only, but for convertToQImage().
class KX_RENDERING_EXPORT kxImageRenderWidget
{
public:
    /// The picture with its rows from the top down and its alpha kept; a null image for null. Safe on any thread known to
    /// the scene graph.
    static QImage convertToQImage(const osg::ImagePtr &image);

    /// Whether what is empty is transparent, and of which colour (0 to 1); for all renderings that follow.
    static void setAlpha(bool alpha);
    static void setAlphaColor(float red, float green, float blue);

    /// The one that renders just now, for views that show what is being done; null in between.
    static const kxImageRenderWidget *rendering();

    /// As given to the constructor.
    struct Settings
    {
        QWidget *parent;
        int width;
        int height;
        int stereoMode;
        bool showsTiles;
        int quality;
        bool isRefined;
        bool isAntialiased;
        int tileCount;
        bool keepsOpen;

        bool operator==(const Settings &) const = default;
    };
    /// As given to render().
    struct Request
    {
        osg::ImagePtr target;
        int firstTile = 0;
        bool isAnimated = false;
        bool waits = false;

        bool operator==(const Request &) const = default;
    };

    /// \a width and \a height in pixels. One kind of picture is made: \a stereoMode has to be 0, and \a quality multiplies
    /// the number of samples. Tiles, previews and progress windows are for views that have them.
    kxImageRenderWidget(QWidget *parent, int width, int height, int stereoMode, bool showsTiles, int quality,
                        bool isRefined, bool isAntialiased, int tileCount, bool keepsOpen);
    /// Releases the images that nobody else refers to.
    ~kxImageRenderWidget();
    kxImageRenderWidget(const kxImageRenderWidget &) = delete;
    kxImageRenderWidget &operator=(const kxImageRenderWidget &) = delete;

    /// What a progress window says, and whether one can cancel there.
    void setLabelText(const QString &text) { _labelText = text; }
    const QString &labelText() const { return _labelText; }
    void setShowCancelButton(bool show) { _showsCancelButton = show; }
    bool showsCancelButton() const { return _showsCancelButton; }
    const Settings &settings() const { return _settings; }
    const Request &request() const { return _request; }

    /// Whether there is something to render: a main view with a camera, and a size.
    bool isValid() const;
    /// The images, of 8-bit RGBA, which stay this object's unless they are referenced. Empty when it is not valid. \a target
    /// null: images are made. The others are as with the constructor.
    std::vector<osg::ImagePtr> render(const osg::ImagePtr &target, int firstTile, bool isAnimated, bool waits);

private:
    Settings _settings;
    Request _request;
    QString _labelText;
    bool _showsCancelButton = true;
    std::vector<osg::FCRef<osg::Image>> _images;
};
