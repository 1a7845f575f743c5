// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/DriveInquiry.h"

#include <QCache>
#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QPixmap>
#include <QString>
#include <QTimer>

#include <functional>
#include <vector>

class kxUrlManager;

/// The previews of assets, loaded in the background and kept up to a bound. Main thread only.
///
/// Whoever shows assets says which are to be seen, in the order of importance; what is no longer wanted is not loaded.
/// A drive that does not answer holds up neither the others for long nor the end of the program.
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
    ~PreviewCache() override;

    /// Null when it is not there yet, or there is none. No larger than Size in either direction.
    QPixmap find(const QString &uuid) const;
    /// Whether the asset has no preview that can be read.
    bool isMissing(const QString &uuid) const { return _missing.contains(uuid); }
    /// Replaces what was wanted before.
    void want(const std::vector<Wanted> &wanted);
    /// Has the preview loaded again when it is wanted next.
    void forget(const QString &uuid);

    /// Nothing is to be loaded but what does not answer.
    bool isIdle() const;
    int loadedCount() const { return _loadedCount; }
    /// Has directories of one library count as those of one drive; those in none, where it is "", by the folder that they are in.
    void setLibraryOf(const std::function<QString(const QString &)> &libraryOf) { _libraryOf = libraryOf; }
    /// How long a drive may take before others are asked beside it, and no more of it.
    void setPatience(int milliseconds) { _patience = milliseconds; }

    static constexpr int Size = 288; ///< pixels
    static constexpr int MaxMissing =
        1000; ///< of which it is remembered that they have no preview; more than are seen at once

Q_SIGNALS:
    void loaded(const QString &uuid);
    /// The asset's directory holds no payload although it needs one.
    void brokenFound(const QString &uuid, bool isBroken);

private:
    struct Result;
    struct Loading
    {
        QString drive; ///< the library, or the folder that the asset lies in
        QElapsedTimer since;
    };
    static Result load(const Wanted &wanted, const kxUrlManager *manager);
    int busyCount() const;
    QString driveOf(const QString &directory) const;
    bool isHeldUp(const Wanted &wanted) const;
    void loadNext();
    void receive(const Result &result);

    QCache<QString, QPixmap> _pixmaps;
    QCache<QString, bool> _missing{MaxMissing};
    std::vector<Wanted> _queue; ///< the next one last
    QHash<QString, Loading> _underWay;
    std::function<QString(const QString &)> _libraryOf;
    QTimer _timer; ///< looks for what does not answer
    int _patience = 8000;
    int _loadedCount = 0;
    DriveInquiry _inquiry;
};
