// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/LibraryCommands.h"

#include "AssetManager/Trash.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <utility>

namespace {

/// To the trash, where \a move has no place yet; "" or why not.
QString takeBack(LibraryActions &actions, LibraryActions::Move &move)
{
    if (QString reason = actions.obstacleOf(move.to); !reason.isEmpty())
        return reason;
    if (move.from.isEmpty()) {
        const osg::Result<QString> place = Trash(actions.libraryOf(move.to)).makePlaceFor(move.to);
        if (!place)
            return QString::fromStdString(place.reason());
        move.from = place.value();
    }
    return actions.carryOut({move.to, move.from, move.uuids});
}

} // namespace

MoveCommand::MoveCommand(LibraryActions &actions, const QString &text, std::vector<LibraryActions::Move> moves)
    : QUndoCommand(text), _actions(actions)
{
    for (LibraryActions::Move &move : moves)
        _steps.push_back({std::move(move)});
}

void MoveCommand::tellProgress(int done) const
{
    emit _actions.progressed(done, static_cast<int>(_steps.size()), text());
}

void MoveCommand::undo()
{
    QStringList failures;
    int done = 0;
    for (auto step = _steps.rbegin(); step != _steps.rend(); ++step, tellProgress(++done)) {
        if (!step->isDone)
            continue;
        const QString reason = takeBack(_actions, step->move);
        step->isDone = !reason.isEmpty();
        if (step->isDone)
            failures.append(reason);
    }
    _actions.report(failures);
}

void MoveCommand::redo()
{
    if (std::exchange(_isDone, false))
        return;
    QStringList failures;
    int done = 0;
    for (auto step = _steps.begin(); step != _steps.end(); ++step, tellProgress(++done)) {
        if (step->isDone)
            continue;
        const QString reason = _actions.carryOut(step->move);
        step->isDone = reason.isEmpty();
        if (!step->isDone)
            failures.append(reason);
    }
    _actions.report(failures);
}

MergeCommand::MergeCommand(LibraryActions &actions, const QString &text, std::vector<LibraryActions::Move> moves,
                           QStringList emptied)
    : QUndoCommand(text), _actions(actions), _moves(actions, text, std::move(moves)), _emptied(std::move(emptied))
{}

void MergeCommand::undo()
{
    _actions.makeFolders(_emptied);
    _moves.undo();
}

void MergeCommand::redo()
{
    _moves.redo();
    _actions.removeEmptyFolders(_emptied); // the first time they are gone already
}

NewFolderCommand::NewFolderCommand(LibraryActions &actions, const QString &path)
    : QUndoCommand(LibraryActions::tr("New folder")), _actions(actions), _path(path)
{}

void NewFolderCommand::undo()
{
    _actions.removeEmptyFolders({_path});
    if (!QFileInfo(_path).isDir())
        return;
    const QString obstacle = _actions.obstacleOf(_path);
    const QString left = LibraryActions::tr("\"%1\" was left: there is something in it, or it may not be removed.");
    _actions.report({obstacle.isEmpty() ? left.arg(QFileInfo(_path).fileName()) : obstacle});
}

void NewFolderCommand::redo()
{
    if (std::exchange(_isDone, false))
        return;
    _actions.makeFolders({_path});
    if (const QString obstacle = _actions.obstacleOf(_path); !obstacle.isEmpty())
        _actions.report({obstacle});
}

RenameCommand::RenameCommand(LibraryActions &actions, const QString &uuid, const QString &former, const QString &name)
    : QUndoCommand(LibraryActions::tr("Rename of \"%1\"").arg(former)), _actions(actions), _uuid(uuid), _former(former),
      _name(name)
{}

void RenameCommand::undo()
{
    if (const QString reason = _actions.rename(_uuid, _former); !reason.isEmpty())
        _actions.report({reason});
}

void RenameCommand::redo()
{
    if (std::exchange(_isDone, false))
        return;
    if (const QString reason = _actions.rename(_uuid, _name); !reason.isEmpty())
        _actions.report({reason});
}
