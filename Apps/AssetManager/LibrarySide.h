// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/AssetActions.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/AssetStates.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/LibraryActions.h"
#include "AssetManager/LibraryScan.h"
#include "AssetManager/LibraryWatcher.h"
#include "AssetManager/PreviewCache.h"

#include <QObject>

class QUndoStack;

/// The open libraries with everything that keeps what is shown of them up to date. Main thread only.
class LibrarySide final : public QObject
{
    Q_OBJECT

public:
    explicit LibrarySide(QUndoStack &undo, QObject *parent = nullptr);
    ~LibrarySide() override;

    AssetModel &assets() { return _assets; }
    AssetStates &states() { return _states; }
    FolderModel &folders() { return _folders; }
    LibraryActions &actions() { return _actions; }
    AssetActions &assetActions() { return _assetActions; }
    LibraryScan &scan() { return _scan; }
    PreviewCache &previews() { return _previews; }
    LibraryWatcher &watcher() { return _watcher; }

    /// Reads the library in the background; its folder need not be there now, nor its drive answer. "" or why it cannot be
    /// opened.
    QString open(const QString &path);
    /// Forgets the library; its files stay.
    void close(const QString &path);
    /// Whether the window would stand still over what it asks of the place.
    bool isSilent(const QString &path) const;
    /// Looks for what changed since it was read.
    void refresh();

    void setFavourite(const QStringList &uuids, bool isFavourite);
    void markUsed(const QStringList &uuids);

Q_SIGNALS:
    /// Sentences for people.
    void failed(const QStringList &messages);
    void librariesChanged(const QStringList &paths);
    /// What is known of these assets is new, or they are gone.
    void assetsChanged();

private:
    void watchUsed();
    void connectScan();
    void connectSilence();
    void noteRead(const QString &library);
    void noteFailure(const QString &folder, const QString &reason);
    void noteGone(const QString &folder, const QString &reason);
    void noteProblem(const QString &library, const QString &reason);
    void noteSilence(const QString &folder);
    void noteAnswer(const QString &folder);
    void openElsewhere(const QString &path, const QString &canonical);
    void refreshAssets(const std::vector<std::string> &uuids);

    AssetStates _states;
    AssetModel _assets;
    FolderModel _folders;
    PreviewCache _previews;
    LibraryScan _scan;
    LibraryWatcher _watcher;
    LibraryActions _actions;
    AssetActions _assetActions{_actions, _assets};
};
