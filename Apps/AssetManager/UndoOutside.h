// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class QLineEdit;

/// Lets the window undo and redo while a line has nothing of its own to undo or redo. What was confirmed by Return is none of
/// the line's any more: undo takes back what came of it.
class UndoOutside final : public QObject
{
    Q_OBJECT

public:
    /// The line owns it.
    explicit UndoOutside(QLineEdit &line);
    /// The line is part of \a box, which has the focus for it.
    UndoOutside(QLineEdit &line, QWidget &box);
    ~UndoOutside() override;

private:
    bool eventFilter(QObject *watched, QEvent *event) override;

    QLineEdit &_line;
};
