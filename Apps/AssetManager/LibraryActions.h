// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/AssetFilter.h"
#include "AssetManager/BatchQueue.h"
#include "AssetManager/Trash.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class AssetModel;
class AssetTies;
class FolderModel;
class QUndoCommand;
class QUndoStack;

/// What a person does to libraries. Everything but emptying the trash can be undone. Main thread only.
///
/// A batch goes on when one of its assets fails, and reports all failures together at its end. One that takes long shows its
/// progress and can be stopped: what was done by then is one step for undo. What is asked for meanwhile is done after it.
class LibraryActions final : public QObject
{
    Q_OBJECT

public:
    /// All have to live longer.
    LibraryActions(AssetModel &model, FolderModel &folders, QUndoStack &undo, QObject *parent = nullptr);
    ~LibraryActions() override;

    void renameAsset(const QString &uuid, const QString &name);
    void renameFolder(const QString &path, const QString &name);
    /// Its path, "" when it cannot be made.
    QString createFolder(const QString &parent);
    void moveAssets(const QStringList &uuids, const QString &folder);
    /// Asks whether to merge where the target has a folder of that name.
    void moveFolders(const QStringList &paths, const QString &folder);
    void trashAssets(const QStringList &uuids);
    void trashFolders(const QStringList &paths);
    /// Puts back from the trash where they were, as one step.
    void restore(const std::vector<Trash::Entry> &entries);
    /// Lets undo move into the trash what an import or a save has made, and tie objects as they were tied \a before that.
    void remember(const std::vector<std::string> &uuids, const QString &text, const AssetTies *before = nullptr);
    /// What is done already is a step from now on. It is kept whatever becomes of the scene.
    void push(std::unique_ptr<QUndoCommand> command, const AssetTies *before = nullptr);

    /// A directory that goes from one place to another, with the assets in it that are known; reading finds the others.
    struct Move
    {
        QString from;
        QString to;
        std::vector<std::string> uuids;
    };
    /// "" or the reason why not.
    QString carryOut(const Move &move);
    /// Renames on the disk and in the registry; the answer says whether it worked.
    QString rename(const QString &uuid, const QString &name);
    /// Each after the one that holds it. Both leave closed libraries as they are.
    void makeFolders(const QStringList &paths);
    /// Those of them that are empty, the last first.
    void removeEmptyFolders(const QStringList &paths);
    /// That another version of the asset is in this directory now.
    void noteReplaced(const std::string &uuid, const QString &directory);
    void report(const QStringList &failures);
    /// Why nothing can be done with what is or was at the path, since its library was closed; "" where it is open.
    QString obstacleOf(const QString &path) const;
    /// The open library that holds the path, "" for none.
    QString libraryOf(const QString &path) const;

    BatchQueue &batches() { return _batches; }

Q_SIGNALS:
    void assetsChanged(const std::vector<std::string> &uuids);
    /// What lies in these folders is not as it was.
    void foldersChanged(const QStringList &paths);
    /// Sentences for people.
    void failed(const QStringList &messages);
    /// \a done of \a total parts of an undo or redo, which cannot be stopped; equal when it has ended.
    void progressed(int done, int total, const QString &what);

private:
    /// Moves that are one step for undo.
    struct Batch
    {
        std::function<QString(int count)> text;
        int total = 1;
        std::vector<Move> done;
        QStringList failures;
    };
    void begin(const Batch &batch);
    void perform(Batch &batch, const Move &move);
    void finish(Batch batch);
    void moveInto(const QString &folder, const QString &directory, const std::vector<std::string> &uuids, Batch &batch);
    void trash(const QString &directory, const std::vector<std::string> &uuids, Batch &batch);
    void putBack(const Trash::Entry &entry, Batch &batch);
    void mergeFolder(const QString &path, const QString &folder, QStringList &failures);
    std::vector<std::string> assetsIn(const QString &path) const;
    /// The directories of these assets, each once, with all assets in them.
    std::vector<std::pair<QString, std::vector<std::string>>> directoriesOf(const QStringList &uuids) const;

    AssetModel &_model;
    FolderModel &_folders;
    QUndoStack &_undo;
    BatchQueue _batches;
};
