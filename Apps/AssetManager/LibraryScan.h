// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/DirectoryStamp.h"
#include "AssetManager/DriveInquiry.h"
#include "AssetManager/ReadAhead.h"

#include <QElapsedTimer>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTimer>

#include <string>
#include <vector>

/// Reads libraries a little at a time, so that the window stays alive meanwhile. Main thread only.
///
/// A worker reads each directory first, so that a drive that takes its time holds nobody up but the reading itself. What does not
/// answer for a while is left aside, and read when it answers: others are read meanwhile.
///
/// What is found is in the registry when it is announced. Folders are read in the order of their names.
class LibraryScan final : public QObject
{
    Q_OBJECT

public:
    explicit LibraryScan(QObject *parent = nullptr);
    ~LibraryScan() override;

    /// Reads the folder and all below, after what is being read already.
    void add(const QString &folder);
    /// The same, before what is being read, and only what looks changed: assets that came, went, or were written since. Of a
    /// folder that was added, its drive is asked first whether it is there.
    void refresh(const QString &folder);
    /// The same for one directory with an asset.
    void refreshAsset(const QString &directory);
    /// Ends with what was found so far.
    void cancel();

    /// Forgets what was read below the folder, and reads no more of it; the registry is not touched.
    void forget(const QString &folder);

    /// Not while all that is left to read does not answer.
    bool isRunning() const { return _isRunning; }
    int assetCount() const { return _assetCount; }
    /// Whether assets were read in the folder or below.
    bool hasAssetsIn(const QString &folder) const;
    /// Whether the place is not read before its drive answers, which it did not do for long.
    bool isSilent(const QString &path) const;
    /// The same of anything in the library.
    bool hasSilence(const QString &library) const;
    /// What an asset's directory was like when it was read.
    DirectoryStamp stampOf(const QString &directory) const { return _known.value(directory).stamp; }

    /// How long a drive may take before it counts as silent.
    void setPatience(int milliseconds) { _patience = milliseconds; }

Q_SIGNALS:
    void started();
    /// A folder that holds no asset of its own, before what lies in it.
    void folderFound(const QString &parent, const QString &folder);
    /// The folder has exactly these folders that hold no asset of their own; announced for each folder that was read.
    void folderRead(const QString &folder, const QStringList &subFolders);
    /// New, read again, or gone from the registry.
    void assetsChanged(const std::vector<std::string> &uuids);
    /// A folder that cannot be read, with the reason in a sentence.
    void folderFailed(const QString &folder, const QString &reason);
    /// The same where it is not there.
    void folderGone(const QString &folder, const QString &reason);
    /// The drive of a folder that was asked for does not answer; it is read as soon as it does.
    void folderSilent(const QString &folder);
    void folderAnswered(const QString &folder);
    /// A folder that was added is spelled otherwise, and was not read.
    void folderElsewhere(const QString &folder, const QString &canonical);
    void progressed(int assetCount, const QString &folder);
    void finished(bool wasCancelled);

private:
    struct Folder
    {
        QString path;
        QStringList left; ///< sub-directories that are still to be read, the next one last
        QStringList plain;
        QSet<QString> assets; ///< directories
        bool isReadAhead = false;
        bool isListed = false;
        bool isAsked = false; ///< and not met on the way
        bool onlyChanges = false;
        bool withContents = false; ///< which are not known yet
        bool isPartial = false;    ///< what is left is not all that it holds
    };

    /// An asset directory as it was when it was read.
    struct Known
    {
        DirectoryStamp stamp;
        std::vector<std::string> uuids;
    };

    /// Something that has to answer before a folder is read.
    struct Question
    {
        int id = 0;
        Folder folder;
        QString place;
        QElapsedTimer since;
        bool isSilent = false;
    };

    void ask(const Folder &folder, const QString &place, bool isSilent = false);
    void receive(int id, const QString &canonical);
    bool isAsked(const QString &folder) const;
    void noteSilence(bool hasAdvanced, bool isHeldUp);
    QString setAside();
    void drop(const QString &folder);
    void work();
    bool hasFolders() const { return !_open.empty() || !_waiting.empty(); }
    bool isDone() const;
    bool step();
    bool isReadAhead(const Folder &folder);
    void list(Folder &folder);
    void readDirectory(const QString &directory);
    void leave();
    void leaveVanished(const Folder &folder);
    void removeAssets(const QString &directory, const Known &known);
    void reportDamage(const QString &directory, const DirectoryStamp &stamp);
    bool isUnchanged(const QString &directory) const;
    void removeGone(const Folder &folder);
    void announce();
    void start();
    void stop();

    static constexpr int Patience = 8000; // milliseconds: longer than a drive takes that was asleep

    ReadAhead _ahead;
    QTimer _timer;
    QMap<QString, Known> _known;            ///< by path
    QMap<QString, DirectoryStamp> _damaged; ///< directories that were reported, with what they were like
    std::vector<Folder> _open;              ///< from the top down to that which is being read
    std::vector<Folder> _waiting;
    std::vector<Question> _questions;
    QStringList _forgotten; ///< while something of it may be looked at
    QSet<QString> _roots;   ///< what was added
    QElapsedTimer _heldUp;  ///< since when nothing could be read
    DriveInquiry _inquiry;
    int _lastQuestion = 0;
    int _patience = Patience;
    std::vector<std::string> _changed;
    qint64 _announcedAt = 0;
    qint64 _announcing = 0; ///< how long the last announcement took, milliseconds
    int _assetCount = 0;
    bool _isRunning = false;
    bool _isStepping = false;
};
