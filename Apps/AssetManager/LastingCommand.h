// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QUndoCommand>

#include <memory>
#include <vector>

class QUndoStack;

/// Steps as one that can be undone whatever else happens beside them: each looks itself whether it still can. It is made when
/// they are done already. Undone they are in the same order: what follows from the first looks at what became of that.
class LastingCommand final : public QUndoCommand
{
public:
    using Parts = std::vector<std::unique_ptr<QUndoCommand>>;

    LastingCommand(const QString &text, Parts parts);

    void undo() override;
    void redo() override;

    /// How many other steps of a stack are done.
    static int countOthers(const QUndoStack &stack);
    /// Leaves nothing on a stack but those that last, done and undone ones. Whether anything is gone that could be undone.
    static bool keepOnly(QUndoStack &stack);

private:
    LastingCommand(const LastingCommand &other, int passedOver);

    std::shared_ptr<Parts> _parts; ///< shared for a moment only: a stack gives nothing back
    int _passedOver = 0;           ///< calls that are to change nothing, while it is put onto a stack
};
