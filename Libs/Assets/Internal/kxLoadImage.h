// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QRunnable>
#include <QUrl>

class QImage;

/// Loads one preview on a worker thread of the pool, which deletes the task afterwards.
class kxLoadImage : public QObject, public QRunnable
{
    Q_OBJECT

public:
    /// The image is not owned and is touched by nobody else until finished() was emitted.
    kxLoadImage(const QUrl &directory, QImage *image);

    void run() override;

signals:
    /// Emitted on the worker thread in every case; an image that stayed null is a failure.
    void finished(const QUrl &directory, QImage *image);

private:
    QUrl _directory;
    QImage *_image;
};
