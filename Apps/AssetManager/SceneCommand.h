// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/SceneStep.h"

#include <QStringList>
#include <QUndoCommand>

#include <functional>
#include <memory>
#include <vector>

/// Steps that are done and undone together.
///
/// They are performed while the command is put together, one by one, so that one that fails does not hold up the others;
/// pushing the command onto the stack does nothing more.
class SceneCommand final : public QUndoCommand
{
public:
    using Report = std::function<void(const QStringList &failures)>;

    /// Commands with the same \a gesture, other than 0, become one where they change the same things. \a report hears of
    /// what could not be undone or redone.
    SceneCommand(const QString &text, Report report, int gesture = 0);
    ~SceneCommand() override;

    bool isEmpty() const { return _steps.empty(); }

    /// Keeps the step where it succeeds; else the answer is the reason.
    QString perform(std::unique_ptr<SceneStep> step);
    /// Keeps a step that was done already.
    void adopt(std::unique_ptr<SceneStep> step);

    void undo() override;
    void redo() override;
    int id() const override { return _gesture == 0 ? -1 : _gesture; }
    bool mergeWith(const QUndoCommand *other) override;

private:
    void finish(const QStringList &failures) const;

    std::vector<std::shared_ptr<SceneStep>> _steps; ///< shared with a later command that was merged into this one
    Report _report;
    int _gesture;
    bool _isApplied = true;
};
