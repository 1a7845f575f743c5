// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QUndoCommand>

#include <memory>
#include <vector>

class QUndoStack;

/// Steps as one that can be undone whatever else happens beside them: each looks itself whether it still can. It is made when
/// they are done already.
class LastingCommand final : public QUndoCommand
{
public:
    using Parts = std::vector<std::unique_ptr<QUndoCommand>>;

    LastingCommand(const QString &text, Parts parts);

    void undo() override;
    void redo() override;

    /// Empties a stack but for those that are done. Whether anything is gone that could be undone.
    static bool keepOnly(QUndoStack &stack);

private:
    LastingCommand(const LastingCommand &other);

    std::shared_ptr<Parts> _parts; ///< shared for a moment only: a stack gives nothing back
    bool _isTakenOver = false;
};
