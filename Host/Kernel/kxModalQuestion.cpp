// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxModalQuestion.h"

#include "Kernel/kxLog.h"

#include <QDialog>
#include <QMetaEnum>

#include <utility>

namespace {

struct Policy
{
    kxModalQuestion::Mode mode = kxModalQuestion::Mode::Person;
    kxModalQuestion::Answerer answerer;
    kxModalQuestion::DialogAnswerer dialogAnswerer;
};

Policy &policy()
{
    static Policy instance;
    return instance;
}

QMessageBox::StandardButton effectiveDefault(const kxModalQuestion::Question &question)
{
    if (question.defaultButton != QMessageBox::NoButton)
        return question.defaultButton;
    for (const auto button :
         {QMessageBox::Ok, QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel, QMessageBox::Close}) {
        if (question.buttons.testFlag(button))
            return button;
    }
    return QMessageBox::NoButton;
}

const char *nameOf(QMessageBox::StandardButton button)
{
    const QMetaObject &type = QMessageBox::staticMetaObject;
    return type.enumerator(type.indexOfEnumerator("StandardButtons")).valueToKey(button);
}

QMessageBox::StandardButton answerHeadless(const kxModalQuestion::Question &question)
{
    const QMessageBox::StandardButton answer = effectiveDefault(question);
    QString text = question.text;
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    kxLog::info("%s: %s Answered: %s.", question.title.toUtf8().constData(), text.toUtf8().constData(), nameOf(answer));
    return answer;
}

QMessageBox::StandardButton answerByPerson(const kxModalQuestion::Question &question)
{
    QMessageBox box(question.icon, question.title, question.text, question.buttons, question.parent);
    box.setDefaultButton(question.defaultButton);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

} // namespace

kxModalQuestion::Mode kxModalQuestion::mode()
{
    return policy().mode;
}

void kxModalQuestion::setMode(Mode mode)
{
    policy().mode = mode;
}

kxModalQuestion::Answerer kxModalQuestion::setAnswerer(Answerer answerer)
{
    return std::exchange(policy().answerer, std::move(answerer));
}

kxModalQuestion::DialogAnswerer kxModalQuestion::setDialogAnswerer(DialogAnswerer answerer)
{
    return std::exchange(policy().dialogAnswerer, std::move(answerer));
}

int kxModalQuestion::exec(QDialog &dialog)
{
    if (const DialogAnswerer answerer = policy().dialogAnswerer) // a copy, as below
        return answerer(dialog);
    if (policy().mode == Mode::Person)
        return dialog.exec();
    kxLog::warning("%s: a choice is needed and nobody is there to make it. Answered: Cancel.",
                   dialog.windowTitle().toUtf8().constData());
    return QDialog::Rejected;
}

QMessageBox::StandardButton kxModalQuestion::ask(const Question &question)
{
    // A copy: the answerer may install another one.
    if (const Answerer answerer = policy().answerer)
        return answerer(question);
    return policy().mode == Mode::Headless ? answerHeadless(question) : answerByPerson(question);
}

QMessageBox::StandardButton kxModalQuestion::warning(QWidget *parent, const QString &title, const QString &text,
                                                     QMessageBox::StandardButtons buttons,
                                                     QMessageBox::StandardButton defaultButton)
{
    return ask({QMessageBox::Warning, parent, title, text, buttons, defaultButton});
}

QMessageBox::StandardButton kxModalQuestion::question(QWidget *parent, const QString &title, const QString &text,
                                                      QMessageBox::StandardButtons buttons,
                                                      QMessageBox::StandardButton defaultButton)
{
    return ask({QMessageBox::Question, parent, title, text, buttons, defaultButton});
}

QMessageBox::StandardButton kxModalQuestion::information(QWidget *parent, const QString &title, const QString &text,
                                                         QMessageBox::StandardButtons buttons,
                                                         QMessageBox::StandardButton defaultButton)
{
    return ask({QMessageBox::Information, parent, title, text, buttons, defaultButton});
}
