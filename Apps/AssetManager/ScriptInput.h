// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class QWidget;
class ScriptRunner;

/// Keeps what a person does from everything but one widget while a script runs, so that nothing is pulled away from under
/// the script. Whoever closes a window stops the script instead. Dialogs that the script itself opens work as ever.
class ScriptInput final : public QObject
{
    Q_OBJECT

public:
    /// The widget and the runner have to live longer.
    ScriptInput(ScriptRunner &runner, QWidget &allowed, QObject *parent = nullptr);
    ~ScriptInput() override;

private:
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool isAllowed(const QObject *receiver) const;

    ScriptRunner &_runner;
    QWidget &_allowed;
};
