// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

#include <QMessageBox>
#include <QString>

#include <functional>

class QDialog;
class QWidget;

/// A message box that needs an answer, and who gives it: a person, or a rule where no person can be waited for.
///
/// Main thread only. With a person the call runs an event loop until the box is closed.
class KX_KERNEL_EXPORT kxModalQuestion
{
public:
    /// What is asked; the default button is also what a headless program answers.
    struct Question
    {
        QMessageBox::Icon icon = QMessageBox::Question;
        QWidget *parent = nullptr;
        QString title;
        QString text;
        QMessageBox::StandardButtons buttons = QMessageBox::Ok;
        QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    };

    using Answerer = std::function<QMessageBox::StandardButton(const Question &question)>;
    using DialogAnswerer = std::function<int(QDialog &dialog)>;

    enum class Mode {
        Person,  ///< shows the box; the mode at first
        Headless ///< answers with the default button, and logs question and answer
    };

    kxModalQuestion() = delete;

    static Mode mode();
    static void setMode(Mode mode);

    /// Has \a answerer answer instead of the mode, until another or an empty one is set; the answer is the one before. For
    /// tests and for batch programs that know their answers.
    static Answerer setAnswerer(Answerer answerer);

    /// Has \a answerer fill in dialogs and say how they end (QDialog::Accepted or QDialog::Rejected) instead of the mode,
    /// until another or an empty one is set; the answer is the one before.
    static DialogAnswerer setDialogAnswerer(DialogAnswerer answerer);
    /// Runs a dialog with a person, and answers how it ended. A headless program rejects it, and logs that.
    static int exec(QDialog &dialog);

    /// Without a default button the first of OK, Yes, No, Cancel, Close that is offered takes its place.
    static QMessageBox::StandardButton ask(const Question &question);

    static QMessageBox::StandardButton warning(QWidget *parent, const QString &title, const QString &text,
                                               QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                                               QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);
    static QMessageBox::StandardButton question(QWidget *parent, const QString &title, const QString &text,
                                                QMessageBox::StandardButtons buttons = QMessageBox::Yes |
                                                                                       QMessageBox::No,
                                                QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);
    static QMessageBox::StandardButton information(QWidget *parent, const QString &title, const QString &text,
                                                   QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                                                   QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);
};
