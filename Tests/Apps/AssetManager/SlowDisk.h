// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxLocalUrlManager.h"

#include <QStringList>

#include <condition_variable>
#include <functional>
#include <mutex>

/// A disk that a test may hold up: what workers ask of its folders waits until it is let go. There is one, to which nothing
/// belongs before a test says so.
///
/// What the main thread asks is answered at once, and noted: where it should have been left to a worker, a test sees that.
class SlowDisk final : public kxLocalUrlManager
{
public:
    static SlowDisk &the();

    /// All below \a root belongs to it; nothing is held and nothing was asked.
    void begin(const QString &root);
    /// Lets go and gives everything back to the back-end of all disks.
    void end();

    /// Has questions about this folder and what lies below wait.
    void hold(const QString &folder);
    /// Has only those about previews wait.
    void holdPreviews();
    void letGo();

    /// The directories whose previews workers asked for, in that order.
    QStringList previewsAsked() const;
    /// How many workers wait.
    int waitingCount() const;
    /// Directories whose previews were read on the main thread.
    QStringList readByMainThread() const;

    bool accepts(const QUrl &url) const override;
    std::vector<QUrl> files(const QUrl &url, const QStringList &nameFilters, QDir::SortFlags sort) override;
    bool loadImageFromDir(const QUrl &url, QImage *image) const override;

private:
    SlowDisk();

    void waitFor(const QUrl &url) const;
    void waitUntil(std::unique_lock<std::mutex> &lock, const std::function<bool()> &isFree) const;

    mutable std::mutex _mutex; ///< guards what follows
    mutable std::condition_variable _changed;
    QString _root;
    QString _held;
    bool _arePreviewsHeld = false;
    mutable QStringList _previewsAsked;
    mutable QStringList _readByMainThread;
    mutable int _waitingCount = 0;
};
