// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetsExport.h"

#include <QObject>
#include <QUrl>

#include <map>

class QImage;

/// Loads the preview images of asset directories on worker threads and hands them over on the main thread.
///
/// Main thread only. A directory is loaded at most once at a time, however often it is asked for.
class KX_ASSETS_EXPORT kxPreviewImageLoader : public QObject
{
    Q_OBJECT

public:
    explicit kxPreviewImageLoader(QObject *parent = nullptr);
    /// Forgets what is under way; the images of running tasks stay theirs.
    ~kxPreviewImageLoader() override;

    /// Asks for the preview of the asset in \a directory and returns at once.
    /// Without a readable preview nothing is emitted, and the directory may be asked for again.
    void loadImageFromDir(const QUrl &directory);
    /// Waits for all tasks and hands over what they loaded. For the end: the main thread stands still meanwhile.
    void deliverAll();

Q_SIGNALS:
    /// The receiver owns \a image. There is one receiver, or none: then the image is deleted.
    void previewLoaded(const QUrl &directory, QImage *image);

private Q_SLOTS:
    void previewReady(const QUrl &directory, QImage *image);

private:
    std::map<QUrl, QImage *> _pending; // the task fills the image; it changes hands in previewReady
};
