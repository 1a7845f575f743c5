// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "RealInput.h"

#include <QDialog>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <map>
#include <random>

/// Somebody who presses keys and buttons at random in menus and dialogs that are really shown, until they are gone.
///
/// Asked for a file or a folder, one of those is typed that may be taken, or Escape is pressed, since anything else of the disk is
/// not to be touched. What cannot be undone is not agreed to.
class RandomDialogs
{
public:
    RandomDialogs(RealInput &input, std::mt19937 &random);

    /// From now on nothing answers questions and dialogs by itself.
    void start();
    void stop();
    /// What may be typed where the dialog has that title.
    void allow(const QString &title, const QStringList &paths) { _paths[title] = paths; }
    /// How many dialogs were seen.
    int count() const { return _count; }
    /// Those that were asked for a file or a folder and got one.
    int typed() const { return _typed; }

private:
    void look();
    void answer(QDialog &dialog);
    void answerFileDialog(QDialog &dialog);
    bool isFinal(const QDialog &dialog) const;
    void press(Qt::Key key) { _input.press(key, Qt::NoModifier); }
    void clickSomeButton(const QDialog &dialog);
    int below(int bound) { return static_cast<int>(_random() % static_cast<std::uint32_t>(bound)); }

    RealInput &_input;
    std::mt19937 &_random;
    QTimer _timer;
    std::map<QString, QStringList> _paths;
    QPointer<QDialog> _dialog;
    int _tries = 0; ///< with this dialog
    int _count = 0;
    int _typed = 0;
};
