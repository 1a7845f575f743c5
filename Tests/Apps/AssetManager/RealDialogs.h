// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "RealInput.h"

#include <QPointer>
#include <QString>
#include <QTimer>

#include <deque>
#include <functional>

class QAbstractButton;
class QDialog;

/// A person who answers dialogs that are really shown, with the server's mouse and keyboard, one after the other as they come.
///
/// While one lives, nothing answers questions and dialogs by itself.
class RealDialogs
{
public:
    using Answer = std::function<void(QDialog &dialog)>;

    explicit RealDialogs(RealInput &input);
    /// Fails the test where a dialog was waited for that did not come.
    ~RealDialogs();
    RealDialogs(const RealDialogs &) = delete;
    RealDialogs &operator=(const RealDialogs &) = delete;

    /// What to do with the next one. It has the keyboard then, as a window manager sees to. One that comes unexpectedly fails
    /// the test and is closed by Escape.
    void next(Answer answer);
    /// The next one is answered by a key.
    void nextByKey(Qt::Key key);
    /// The next one is a message box, which shows \a text among others, and has its button pressed.
    void nextByButton(const QString &text, const QString &button);
    /// The next one asks for a file or a folder, whose path is typed.
    void nextByPath(const QString &path);

    void click(QAbstractButton &button);

private:
    void look();

    RealInput &_input;
    QTimer _timer;
    std::deque<Answer> _answers;
    QPointer<QDialog> _answered;
};
