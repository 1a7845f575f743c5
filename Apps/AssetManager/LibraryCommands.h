// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/LibraryActions.h"

#include <QUndoCommand>

/// Directories that were brought to other places; in the trash, too. It is made when that is done already.
class MoveCommand final : public QUndoCommand
{
public:
    /// A move without a beginning made something: undoing puts that into the trash.
    MoveCommand(LibraryActions &actions, const QString &text, std::vector<LibraryActions::Move> moves);

    void undo() override;
    void redo() override;

private:
    /// One that fails stays as it is, for the next time.
    struct Step
    {
        LibraryActions::Move move;
        bool isDone = true;
    };
    void tellProgress(int done) const;

    LibraryActions &_actions;
    std::vector<Step> _steps;
    bool _isDone = true;
};

/// A folder that was merged with another one. It is made when that is done already.
class MergeCommand final : public QUndoCommand
{
public:
    /// \a emptied are the folders that went, each after the one that held it.
    MergeCommand(LibraryActions &actions, const QString &text, std::vector<LibraryActions::Move> moves,
                 QStringList emptied);

    void undo() override;
    void redo() override;

private:
    LibraryActions &_actions;
    MoveCommand _moves;
    QStringList _emptied;
};

/// A folder that was made. It is made when that is done already.
class NewFolderCommand final : public QUndoCommand
{
public:
    NewFolderCommand(LibraryActions &actions, const QString &path);

    void undo() override;
    void redo() override;

private:
    LibraryActions &_actions;
    QString _path;
    bool _isDone = true;
};

/// An asset that got another name.
class RenameCommand final : public QUndoCommand
{
public:
    RenameCommand(LibraryActions &actions, const QString &uuid, const QString &former, const QString &name);

    void undo() override;
    void redo() override;

private:
    LibraryActions &_actions;
    QString _uuid;
    QString _former;
    QString _name;
    bool _isDone = true;
};
