// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/LastingCommand.h"

#include <QUndoStack>

#include <utility>

LastingCommand::LastingCommand(const QString &text, Parts parts)
    : QUndoCommand(text), _parts(std::make_shared<Parts>(std::move(parts)))
{}

LastingCommand::LastingCommand(const LastingCommand &other)
    : QUndoCommand(other.text()), _parts(other._parts), _isTakenOver(true)
{}

void LastingCommand::undo()
{
    for (auto part = _parts->rbegin(); part != _parts->rend(); ++part)
        (*part)->undo();
}

/// The parts know of themselves that they are done the first time.
void LastingCommand::redo()
{
    if (std::exchange(_isTakenOver, false))
        return;
    for (const std::unique_ptr<QUndoCommand> &part : *_parts)
        part->redo();
}

bool LastingCommand::keepOnly(QUndoStack &stack)
{
    const int before = stack.index();
    std::vector<std::unique_ptr<LastingCommand>> kept;
    for (int i = 0; i < before; ++i)
        if (const auto *lasting = dynamic_cast<const LastingCommand *>(stack.command(i)))
            kept.emplace_back(new LastingCommand(*lasting));
    const bool isLess = static_cast<int>(kept.size()) < before;
    stack.clear();
    for (std::unique_ptr<LastingCommand> &command : kept)
        stack.push(command.release()); // the stack's
    return isLess;
}
