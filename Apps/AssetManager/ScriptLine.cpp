// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptLine.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QTextBlock>

#include <algorithm>

namespace {

constexpr int MaxLines = 8;
constexpr int MaxFormer = 500;

QString commonBeginning(const QStringList &words)
{
    QString beginning = words.first();
    for (const QString &word : words)
        while (!word.startsWith(beginning))
            beginning.chop(1);
    return beginning;
}

bool isReturn(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

} // namespace

ScriptLine::ScriptLine(Language language, QWidget *parent) : QPlainTextEdit(parent), _language(std::move(language))
{
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(this, &QPlainTextEdit::textChanged, this, &ScriptLine::fitHeight);
    fitHeight();
}

ScriptLine::~ScriptLine() = default;

void ScriptLine::fitHeight()
{
    const int lines = std::clamp(blockCount(), 1, MaxLines);
    const int frame = 2 * (frameWidth() + static_cast<int>(document()->documentMargin()));
    setFixedHeight(lines * fontMetrics().lineSpacing() + frame);
    setVerticalScrollBarPolicy(blockCount() > MaxLines ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
}

void ScriptLine::keyPressEvent(QKeyEvent *event)
{
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (isReturn(*event) && isPlain)
        enter();
    else if (event->key() == Qt::Key_Tab && isPlain)
        complete();
    else if (event->key() == Qt::Key_Backtab)
        leave(false);
    else if (!(isPlain && event->key() == Qt::Key_Up && recall(-1)) &&
             !(isPlain && event->key() == Qt::Key_Down && recall(1)))
        QPlainTextEdit::keyPressEvent(event);
}

void ScriptLine::enter()
{
    QString text = toPlainText();
    const int lastLine = text.lastIndexOf('\n') + 1;
    if (lastLine > 0 && text.midRef(lastLine).trimmed().isEmpty())
        text.truncate(lastLine); // an indentation that nobody wanted is no statement
    if (text.trimmed().isEmpty())
        return;
    if (!_language.isComplete(text)) {
        const QString line = textCursor().block().text();
        const auto content = std::find_if(line.begin(), line.end(), [](QChar letter) { return !letter.isSpace(); });
        QString indent = line.left(static_cast<int>(content - line.begin()));
        if (line.trimmed().endsWith(':'))
            indent += QStringLiteral("    ");
        insertPlainText('\n' + indent);
        ensureCursorVisible();
        return;
    }
    if (_former.isEmpty() || _former.last() != text)
        _former.append(text);
    if (_former.size() > MaxFormer)
        _former.removeFirst();
    _place = _former.size();
    clear();
    emit entered(text);
}

/// An editor lets go of the focus only where tabs are no text.
void ScriptLine::leave(bool isForward)
{
    setTabChangesFocus(true);
    focusNextPrevChild(isForward);
    setTabChangesFocus(false);
}

void ScriptLine::complete()
{
    if (toPlainText().isEmpty()) {
        leave(true);
        return;
    }
    const QString line = textCursor().block().text().left(textCursor().positionInBlock());
    if (line.trimmed().isEmpty()) {
        insertPlainText(QStringLiteral("    "));
        return;
    }
    const QStringList words = _language.completions(line);
    if (words.isEmpty())
        return;
    const QString common = commonBeginning(words);
    // The words go on from the end of the line: what is missing of them is inserted.
    int known = std::min(common.size(), line.size());
    while (!common.startsWith(line.right(known)))
        --known;
    insertPlainText(common.mid(known));
    if (words.size() > 1)
        emit offered(words);
}

bool ScriptLine::recall(int direction)
{
    const bool isAtEdge =
        direction < 0 ? textCursor().blockNumber() == 0 : textCursor().blockNumber() == blockCount() - 1;
    const int place = _place + direction;
    if (!isAtEdge || place < 0 || place > _former.size())
        return false;
    if (_place == _former.size())
        _unfinished = toPlainText();
    _place = place;
    setPlainText(_place == _former.size() ? _unfinished : _former[_place]);
    moveCursor(QTextCursor::End);
    return true;
}
