// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCache>
#include <QHash>
#include <QObject>
#include <QPixmap>
#include <QString>
#include <QThreadPool>

#include <vector>

/// The previews of assets, loaded in the background and kept up to a bound. Main thread only.
///
/// Whoever shows assets says which are to be seen, in the order of importance; what is no longer wanted is not loaded.
class PreviewCache final : public QObject
{
    Q_OBJECT

public:
    struct Wanted
    {
        QString uuid;
        QString directory; ///< the asset's own
    };

    /// \a capacity is in kilobytes of pixels.
    explicit PreviewCache(int capacity = 64 * 1024, QObject *parent = nullptr);
    /// Waits for what is being loaded.
    ~PreviewCache() override;

    /// Null when it is not there yet, or there is none. No larger than Size in either direction.
    QPixmap find(const QString &uuid) const;
    /// Whether the asset has no preview that can be read.
    bool isMissing(const QString &uuid) const { return _missing.contains(uuid); }
    /// Replaces what was wanted before.
    void want(const std::vector<Wanted> &wanted);
    /// Has the preview loaded again when it is wanted next.
    void forget(const QString &uuid);

    bool isIdle() const { return _queue.empty() && _underWay.isEmpty(); }
    int loadedCount() const { return _loadedCount; }

    static constexpr int Size = 288; ///< pixels
    static constexpr int MaxMissing =
        1000; ///< of which it is remembered that they have no preview; more than are seen at once

Q_SIGNALS:
    void loaded(const QString &uuid);
    /// The asset's directory holds no payload although it needs one.
    void brokenFound(const QString &uuid, bool isBroken);

private:
    struct Result;
    static Result load(const Wanted &wanted);
    void loadNext();
    void receive(const Result &result);

    QThreadPool _pool;
    QCache<QString, QPixmap> _pixmaps;
    QCache<QString, bool> _missing{MaxMissing};
    std::vector<Wanted> _queue; ///< the next one last
    QHash<QString, bool> _underWay;
    int _loadedCount = 0;
};
