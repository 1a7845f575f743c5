// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptConsole.h"

#include "AssetManager/ScriptLine.h"
#include "AssetManager/ScriptRunner.h"

#include <QFileDialog>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

namespace {

constexpr int MaxOutputLines = 10000;
constexpr int HalfLight = 128;

} // namespace

ScriptConsole::ScriptConsole(ScriptRunner &runner, QWidget *parent) : QWidget(parent), _runner(runner)
{
    setObjectName(QStringLiteral("scriptConsole"));
    _output = new QPlainTextEdit(this);
    _output->setObjectName(QStringLiteral("scriptOutput"));
    _output->setAccessibleName(tr("What Python printed"));
    _output->setReadOnly(true);
    _output->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    _output->setTabChangesFocus(true);
    _output->setUndoRedoEnabled(false);
    _output->setMaximumBlockCount(MaxOutputLines);
    _output->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    _input = new ScriptLine({[this](const QString &text) { return _runner.isComplete(text); },
                             [this](const QString &text) { return _runner.completions(text); }},
                            this);
    _input->setObjectName(QStringLiteral("scriptInput"));
    _input->setAccessibleName(tr("Python statements"));
    _input->setPlaceholderText(tr("import kx"));
    _input->setToolTip(tr("Where a statement changes the scene, Undo forgets what was done in it before."));
    auto *prompt = new QLabel(QStringLiteral(">>>"), this);
    prompt->setFont(_input->font());
    prompt->setBuddy(_input);
    // Beside the first of its lines.
    prompt->setContentsMargins(0, _input->frameWidth() + qRound(_input->document()->documentMargin()), 0, 0);
    auto *line = new QHBoxLayout;
    line->addWidget(prompt, 0, Qt::AlignTop);
    line->addWidget(_input, 1);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(_output, 1);
    layout->addLayout(line);
    layout->addWidget(makeButtons());
    setFocusProxy(_input);
    connect(_input, &ScriptLine::entered, this, &ScriptConsole::run);
    connect(_input, &ScriptLine::offered, this,
            [this](const QStringList &words) { write(words.join(QStringLiteral("  ")) + '\n', Kind::Entered); });
    connect(&_runner, &ScriptRunner::written, this,
            [this](const QString &text, bool isError) { write(text, isError ? Kind::Error : Kind::Printed); });
    connect(&_runner, &ScriptRunner::undoEmptied, this, [this] {
        write(tr("What was done in the scene before cannot be undone any more: the script has changed it.") + '\n',
              Kind::Entered);
    });
    connect(&_runner, &ScriptRunner::started, this, &ScriptConsole::updateButtons);
    connect(&_runner, &ScriptRunner::finished, this, &ScriptConsole::updateButtons);
    updateButtons();
}

ScriptConsole::~ScriptConsole() = default;

QWidget *ScriptConsole::makeButtons()
{
    auto *row = new QWidget(this);
    _runFile =
        makeButton(tr("&Run file..."), "scriptRunFile",
                   tr("Runs a Python file in the scene that is open. Where it changes the scene, Undo forgets what was "
                      "done in it before."));
    _stop = makeButton(tr("&Stop"), "scriptStop", tr("Ends the running script; press again if it does not give in"));
    QPushButton *clear = makeButton(tr("&Clear"), "scriptClear", tr("Empties what was printed"));
    connect(_runFile, &QPushButton::clicked, this, &ScriptConsole::chooseFile);
    connect(_stop, &QPushButton::clicked, &_runner, &ScriptRunner::stop);
    connect(clear, &QPushButton::clicked, _output, &QPlainTextEdit::clear);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_runFile);
    layout->addWidget(_stop);
    layout->addStretch(1);
    layout->addWidget(clear);
    return row;
}

QPushButton *ScriptConsole::makeButton(const QString &text, const char *name, const QString &help)
{
    auto *button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(name));
    button->setToolTip(help);
    button->setAccessibleDescription(help);
    button->setAutoDefault(false);
    return button;
}

void ScriptConsole::chooseFile()
{
    const QString file = QFileDialog::getOpenFileName(this, tr("Run a script"), {}, tr("Python scripts (*.py)"));
    if (!file.isEmpty())
        runFile(file);
}

void ScriptConsole::runFile(const QString &path)
{
    write(tr("Running %1").arg(path) + '\n', Kind::Entered);
    _runner.runFile(path);
}

void ScriptConsole::run(const QString &text)
{
    QString shown = text;
    shown.replace(QLatin1String("\n"), QLatin1String("\n... "));
    write(QStringLiteral(">>> ") + shown + '\n', Kind::Entered);
    _runner.runText(text);
}

/// Readable on light and on dark ground.
QColor ScriptConsole::colorOf(Kind kind) const
{
    const bool isDark = palette().color(QPalette::Base).lightness() < HalfLight;
    switch (kind) {
    case Kind::Entered:
        return palette().color(QPalette::PlaceholderText);
    case Kind::Error:
        return isDark ? QColor(255, 130, 120) : QColor(170, 0, 0);
    case Kind::Printed:
        break;
    }
    return palette().color(QPalette::Text);
}

/// Follows the end, but where a person looks at what was before.
void ScriptConsole::write(const QString &text, Kind kind)
{
    QScrollBar *bar = _output->verticalScrollBar();
    const bool isAtEnd = bar->value() == bar->maximum();
    QTextCursor cursor(_output->document());
    cursor.movePosition(QTextCursor::End);
    QTextCharFormat format;
    format.setForeground(colorOf(kind));
    cursor.insertText(text, format);
    if (isAtEnd)
        bar->setValue(bar->maximum());
}

void ScriptConsole::updateButtons()
{
    const bool isRunning = _runner.isRunning();
    const bool hadFocus = _input->hasFocus() || _stop->hasFocus();
    _input->setReadOnly(isRunning);
    _runFile->setEnabled(!isRunning);
    _stop->setEnabled(isRunning);
    if (hadFocus && !isRunning)
        _input->setFocus(); // a button that is disabled gives it to anybody
}
