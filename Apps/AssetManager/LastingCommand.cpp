// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/LastingCommand.h"

#include <QUndoStack>

#include <utility>

LastingCommand::LastingCommand(const QString &text, Parts parts)
    : QUndoCommand(text), _parts(std::make_shared<Parts>(std::move(parts)))
{}

LastingCommand::LastingCommand(const LastingCommand &other, int passedOver)
    : QUndoCommand(other.text()), _parts(other._parts), _passedOver(passedOver)
{}

void LastingCommand::undo()
{
    if (_passedOver > 0) {
        --_passedOver;
        return;
    }
    for (const std::unique_ptr<QUndoCommand> &part : *_parts)
        part->undo();
}

/// The parts know of themselves that they are done the first time.
void LastingCommand::redo()
{
    if (_passedOver > 0) {
        --_passedOver;
        return;
    }
    for (const std::unique_ptr<QUndoCommand> &part : *_parts)
        part->redo();
}

int LastingCommand::countOthers(const QUndoStack &stack)
{
    int count = 0;
    for (int i = 0; i < stack.index(); ++i)
        if (!dynamic_cast<const LastingCommand *>(stack.command(i)))
            ++count;
    return count;
}

bool LastingCommand::keepOnly(QUndoStack &stack)
{
    const bool isLess = countOthers(stack) > 0;
    const int before = stack.index();
    std::vector<std::unique_ptr<LastingCommand>> kept;
    int done = 0;
    for (int i = 0; i < stack.count(); ++i) {
        const auto *lasting = dynamic_cast<const LastingCommand *>(stack.command(i));
        if (!lasting)
            continue;
        const bool isDone = i < before;
        done += isDone ? 1 : 0;
        kept.emplace_back(new LastingCommand(*lasting, isDone ? 1 : 2)); // to redo; and to undo as well
    }
    stack.clear();
    for (std::unique_ptr<LastingCommand> &command : kept)
        stack.push(command.release()); // the stack's
    stack.setIndex(done);
    return isLess;
}
