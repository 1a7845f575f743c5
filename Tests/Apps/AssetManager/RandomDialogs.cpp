// SPDX-License-Identifier: Apache-2.0
#include "RandomDialogs.h"

#include "Kernel/kxModalQuestion.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressDialog>
#include <QWindow>

#include <gtest/gtest.h>

namespace {

constexpr int EnoughTries = 12;
constexpr int TooManyTries = 40;

} // namespace

RandomDialogs::RandomDialogs(RealInput &input, std::mt19937 &random) : _input(input), _random(random)
{
    // Queued: a timer whose slot waits for a dialog does not fire again.
    QObject::connect(&_timer, &QTimer::timeout, &_timer, [this] {
        QMetaObject::invokeMethod(
            &_timer, [this] { look(); }, Qt::QueuedConnection);
    });
}

void RandomDialogs::start()
{
    kxModalQuestion::setAnswerer({});
    kxModalQuestion::setDialogAnswerer({});
    _timer.start(1);
}

void RandomDialogs::stop()
{
    _timer.stop();
}

void RandomDialogs::look()
{
    if (_input.isBusy())
        return;
    if (QApplication::activePopupWidget()) {
        static const Qt::Key keys[] = {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Return, Qt::Key_Escape};
        press(keys[below(5)]);
        return;
    }
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (!dialog || qobject_cast<QProgressDialog *>(dialog))
        return;
    if (QGuiApplication::focusWindow() != dialog->windowHandle()) {
        dialog->activateWindow(); // which a window manager does
        return;
    }
    if (dialog != _dialog) {
        _dialog = dialog;
        _tries = 0;
        ++_count;
    }
    answer(*dialog);
}

void RandomDialogs::answer(QDialog &dialog)
{
    ++_tries;
    if (_tries > TooManyTries) {
        ADD_FAILURE() << "it does not close: " << dialog.windowTitle().toStdString();
        dialog.reject();
    } else if (qobject_cast<QFileDialog *>(&dialog)) {
        answerFileDialog(dialog);
    } else if (isFinal(dialog) || _tries > EnoughTries) {
        press(Qt::Key_Escape);
    } else if (below(3) == 0) {
        clickSomeButton(dialog);
    } else {
        static const Qt::Key keys[] = {Qt::Key_Tab,  Qt::Key_Tab,   Qt::Key_Backtab, Qt::Key_Space,  Qt::Key_Down,
                                       Qt::Key_Home, Qt::Key_Right, Qt::Key_Return,  Qt::Key_Return, Qt::Key_Escape};
        press(keys[below(10)]);
    }
}

bool RandomDialogs::isFinal(const QDialog &dialog) const
{
    const auto *box = qobject_cast<const QMessageBox *>(&dialog);
    return box && box->text().contains(QLatin1String("cannot be undone"));
}

void RandomDialogs::answerFileDialog(QDialog &dialog)
{
    const QStringList paths = _paths[dialog.windowTitle()];
    auto *name = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    if (paths.isEmpty() || !name || !name->hasFocus() || _tries > 1 || below(4) == 0) {
        press(Qt::Key_Escape);
        return;
    }
    ++_typed;
    const QPointer<QDialog> shown = &dialog;
    _input.press(Qt::Key_A, Qt::ControlModifier); // what it proposes
    EXPECT_TRUE(_input.type(paths.at(below(paths.size()))));
    for (int i = 0; i < 3 && shown && shown->isVisible(); ++i) // one may close the list of what begins like it
        press(Qt::Key_Return);
}

void RandomDialogs::clickSomeButton(const QDialog &dialog)
{
    const auto buttons = dialog.findChildren<QAbstractButton *>();
    if (buttons.isEmpty())
        return;
    const QAbstractButton &button = *buttons.at(below(buttons.size()));
    if (button.isVisible())
        _input.click(button.mapToGlobal(button.rect().center()), Qt::LeftButton, Qt::NoModifier);
}
