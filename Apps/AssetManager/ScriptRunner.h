// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QStringList>

#include <memory>

class QUndoStack;

/// Runs Python in this program, on its scene and its libraries, in one namespace that stays. Main thread only.
///
/// The interpreter is started at the first use. While a script runs, events are processed now and then; whoever does not
/// want a person to do other things meanwhile has to see to that. What a script leaves behind, ScriptGuard puts back.
class ScriptRunner final : public QObject
{
    Q_OBJECT

public:
    /// The stack has to live longer.
    explicit ScriptRunner(QUndoStack &undo, QObject *parent = nullptr);
    /// Runs what scripts registered for the end, and lets go of what they made. Not while one is running.
    ~ScriptRunner() override;

    /// The code that a program would end with: 0, that of SystemExit, or 1 after any other exception. Where another script
    /// is running, or Python cannot be started, the answer is 1 and a line in written() says so.
    int runFile(const QString &path, const QStringList &arguments = {});
    /// Statements as they are typed: the values of expressions are written.
    int runText(const QString &text);

    /// Whether typed statements may be run, or want to be gone on with.
    bool isComplete(const QString &text);
    /// Words that the last one of \a text can go on as.
    QStringList completions(const QString &text);

    bool isRunning() const;
    /// Raises KeyboardInterrupt in the running script as soon as it is at a statement of its own. The second time it is
    /// raised at every statement, until the script has ended.
    void stop();

Q_SIGNALS:
    void started();
    /// What a script printed, in the pieces in which it was written, and tracebacks.
    void written(const QString &text, bool isError);
    void finished(int code);
    /// What could be undone before cannot be any more: the script has changed the scene or the libraries.
    void undoEmptied();

private:
    class Private;
    std::unique_ptr<Private> _d;
};
