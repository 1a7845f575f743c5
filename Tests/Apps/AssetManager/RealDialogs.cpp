// SPDX-License-Identifier: Apache-2.0
#include "RealDialogs.h"

#include "Kernel/kxModalQuestion.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressDialog>
#include <QWindow>

#include <gtest/gtest.h>

RealDialogs::RealDialogs(RealInput &input) : _input(input)
{
    kxModalQuestion::setAnswerer({});
    kxModalQuestion::setDialogAnswerer({});
    // Queued: a timer whose slot waits for a dialog does not fire again.
    QObject::connect(&_timer, &QTimer::timeout, &_timer, [this] {
        QMetaObject::invokeMethod(
            &_timer, [this] { look(); }, Qt::QueuedConnection);
    });
    _timer.start(10);
}

RealDialogs::~RealDialogs()
{
    EXPECT_EQ(_answers.size(), 0U) << "dialogs that did not come";
}

void RealDialogs::next(Answer answer)
{
    _answers.push_back(std::move(answer));
}

void RealDialogs::nextByKey(Qt::Key key)
{
    next([this, key](QDialog &) { _input.press(key, Qt::NoModifier); });
}

void RealDialogs::nextByButton(const QString &text, const QString &button)
{
    next([this, text, button](QDialog &dialog) {
        const auto *box = qobject_cast<QMessageBox *>(&dialog);
        EXPECT_TRUE(box && box->text().contains(text)) << (box ? box->text().toStdString() : "no message box");
        for (QAbstractButton *one : dialog.findChildren<QAbstractButton *>())
            if (one->text().remove('&') == button) {
                click(*one);
                return;
            }
        ADD_FAILURE() << "no button: " << button.toStdString();
    });
}

void RealDialogs::nextByPath(const QString &path)
{
    next([this, path](QDialog &dialog) {
        EXPECT_TRUE(qobject_cast<QFileDialog *>(&dialog));
        auto *name = dialog.findChild<QLineEdit *>("fileNameEdit");
        ASSERT_TRUE(name);
        EXPECT_TRUE(name->hasFocus()) << "typing works at once";
        const QPointer<QDialog> shown = &dialog;
        _input.press(Qt::Key_A, Qt::ControlModifier); // what it proposes
        EXPECT_TRUE(_input.type(path));
        for (int i = 0; i < 3 && shown && shown->isVisible(); ++i) // one may close the list of what begins like it
            _input.press(Qt::Key_Return, Qt::NoModifier);
    });
}

void RealDialogs::click(QAbstractButton &button)
{
    _input.click(button.mapToGlobal(button.rect().center()), Qt::LeftButton, Qt::NoModifier);
}

void RealDialogs::look()
{
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (!dialog || dialog == _answered || qobject_cast<QProgressDialog *>(dialog) || _input.isBusy())
        return;
    if (QGuiApplication::focusWindow() != dialog->windowHandle()) {
        dialog->activateWindow();
        return;
    }
    _answered = dialog;
    Answer answer = [this](QDialog &unexpected) {
        ADD_FAILURE() << "unexpected: " << unexpected.windowTitle().toStdString();
        _input.press(Qt::Key_Escape, Qt::NoModifier);
    };
    if (!_answers.empty()) {
        answer = std::move(_answers.front());
        _answers.pop_front();
    }
    answer(*dialog);
}
