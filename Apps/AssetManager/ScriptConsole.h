// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

class QPlainTextEdit;
class QPushButton;
class ScriptLine;
class ScriptRunner;

/// Where Python is typed, and what it answers. Main thread only.
class ScriptConsole final : public QWidget
{
    Q_OBJECT

public:
    /// The runner has to live as long as the console is used.
    explicit ScriptConsole(ScriptRunner &runner, QWidget *parent = nullptr);
    ~ScriptConsole() override;

    void runFile(const QString &path);

public Q_SLOTS:
    void chooseFile();

private:
    enum class Kind { Entered, Printed, Error };

    QWidget *makeButtons();
    QPushButton *makeButton(const QString &text, const char *name, const QString &help);
    void run(const QString &text);
    void write(const QString &text, Kind kind);
    QColor colorOf(Kind kind) const;
    void updateButtons();

    ScriptRunner &_runner;
    QPlainTextEdit *_output;
    ScriptLine *_input;
    QPushButton *_runFile;
    QPushButton *_stop;
};
