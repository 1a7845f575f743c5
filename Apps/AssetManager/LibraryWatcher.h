// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/DirectoryStamp.h"
#include "AssetManager/DriveInquiry.h"

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QHash>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTimer>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <optional>

/// Notices that something changed in folders, once it is quiet there. Main thread only.
///
/// Files that are overwritten where they are change no folder, and drives that come no folder on them. The directories of assets
/// that a person sees, and the libraries, are therefore looked at every second, and no others: a hundred thousand would cost too
/// much. Threads do that, one for each library, and a drive that does not answer is not asked again meanwhile.
class LibraryWatcher final : public QObject
{
    Q_OBJECT

public:
    explicit LibraryWatcher(QObject *parent = nullptr);

    void watch(const QString &folder);
    /// The folder and all below.
    void forget(const QString &folder);
    /// Replaces the asset directories that are looked at; of more than MaxSeen, the first ones are.
    void setSeen(const QStringList &directories);
    /// The same for those that a person sees elsewhere than among the assets.
    void setUsed(const QStringList &directories);
    /// Replaces the libraries of which it is noticed that they go and come, as their drives do.
    void setLibraries(const QStringList &libraries);
    /// There was nothing at its path: it is told when there is something.
    void setGone(const QString &library);
    /// What asset directories were like when what is shown of them was read; the null stamp for those that nobody knows of.
    void setKnown(const std::function<DirectoryStamp(const QString &)> &stampOf) { _stampOf = stampOf; }

    /// Whether the library, or "" for what lies in none, was asked and its drive has not answered for longer than usual.
    bool isSilent(const QString &library) const;

    static constexpr int MaxSeen = 256;

Q_SIGNALS:
    void changed(const QString &folder);
    void assetChanged(const QString &directory);

private:
    using Stamps = QMap<QString, std::optional<DirectoryStamp>>; ///< none of those not looked at yet

    /// What a path leads to, which is something else once a drive came or went.
    struct Place
    {
        Place() = default;
        explicit Place(const QString &path);
        bool isNothing() const { return device == 0 && file == 0; }
        friend bool operator==(const Place &a, const Place &b) { return a.device == b.device && a.file == b.file; }

        quint64 device = 0;
        quint64 file = 0;
    };

    /// A question that is under way, or whose answer is.
    struct Asked
    {
        QElapsedTimer since;
        std::shared_ptr<std::atomic<bool>> isAnswered;
    };

    /// What one drive has to say.
    struct Sight
    {
        Place library;
        QMap<QString, DirectoryStamp> assets;
    };

    void announce();
    void look();
    void lookAt(const QString &library, const QStringList &directories);
    void receive(const QString &library, const Sight &sight);
    void compare(Stamps &assets, const QMap<QString, DirectoryStamp> &now);
    void noteLibrary(const QString &library, const Place &now);
    QString libraryOf(const QString &directory) const;
    void lookWhileNeeded();
    void replace(Stamps &assets, const QStringList &directories);

    QFileSystemWatcher _watcher;
    QSet<QString> _changed;
    QSet<QString> _changedAssets;
    QTimer _timer;
    Stamps _seen; ///< asset directories, as they were when they were looked at
    Stamps _used;
    std::map<QString, std::optional<Place>> _libraries;
    QHash<QString, Asked> _asked; ///< by library
    std::function<DirectoryStamp(const QString &)> _stampOf;
    QTimer _lookTimer;
    DriveInquiry _inquiry;
};
