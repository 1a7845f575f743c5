// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ElidedLine.h"

#include <QFocusEvent>

namespace {

constexpr int TextMargin = 2; // pixels that a line leaves free on either side of its text

} // namespace

ElidedLine::ElidedLine(QWidget *parent) : QLineEdit(parent)
{
    setReadOnly(true);
    setFrame(false);
    setTextMargins(-TextMargin, 0, 0, 0); // as labels begin
    QPalette flat;
    flat.setColor(QPalette::Base, Qt::transparent);
    setPalette(flat);
}

ElidedLine::~ElidedLine() = default;

void ElidedLine::setWholeText(const QString &text)
{
    _whole = text;
    setToolTip(text);
    showWhatFits();
}

void ElidedLine::showWhatFits()
{
    const int room = width() - 2 * TextMargin;
    setText(hasFocus() ? _whole : fontMetrics().elidedText(_whole, Qt::ElideMiddle, room));
    setCursorPosition(0);
}

void ElidedLine::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    showWhatFits();
    selectAll();
}

void ElidedLine::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason) // its own menu, which copies what is selected
        showWhatFits();
}

void ElidedLine::resizeEvent(QResizeEvent *event)
{
    QLineEdit::resizeEvent(event);
    if (!hasFocus())
        showWhatFits();
}
