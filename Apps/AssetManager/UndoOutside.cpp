// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/UndoOutside.h"

#include <QKeyEvent>
#include <QLineEdit>

UndoOutside::UndoOutside(QLineEdit &line) : UndoOutside(line, line) {}

UndoOutside::UndoOutside(QLineEdit &line, QWidget &box) : QObject(&line), _line(line)
{
    box.installEventFilter(this);
    // Setting a text is what makes a line forget how it was typed; after everybody else heard of the key.
    connect(
        &line, &QLineEdit::returnPressed, this, [&line] { line.setText(line.text()); }, Qt::QueuedConnection);
}

UndoOutside::~UndoOutside() = default;

bool UndoOutside::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ShortcutOverride)
        return QObject::eventFilter(watched, event);
    auto *key = static_cast<QKeyEvent *>(event);
    const bool isOutside = (key->matches(QKeySequence::Undo) && !_line.isUndoAvailable()) ||
                           (key->matches(QKeySequence::Redo) && !_line.isRedoAvailable());
    return isOutside || QObject::eventFilter(watched, event);
}
