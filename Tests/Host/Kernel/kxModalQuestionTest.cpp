// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxModalQuestion.h"

#include "Kernel/kxLogRecorder.h"

#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QTimer>
#include <QWidget>

#include <gmock/gmock.h>

#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class kxModalQuestionTest : public testing::Test
{
protected:
    ~kxModalQuestionTest() override
    {
        kxModalQuestion::setAnswerer({});
        kxModalQuestion::setDialogAnswerer({});
        kxModalQuestion::setMode(kxModalQuestion::Mode::Person);
    }

    kxLogRecorder log;
};

TEST_F(kxModalQuestionTest, AnswersHeadlessWithTheDefaultAndLogsIt)
{
    kxModalQuestion::setMode(kxModalQuestion::Mode::Headless);

    const auto answer = kxModalQuestion::warning(nullptr, "Asset Manager",
                                                 "The target already contains a folder named 'Holz'.\nMerge folders?",
                                                 QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);

    EXPECT_EQ(answer, QMessageBox::Yes);
    EXPECT_THAT(
        log.lines(kxLogLevel::Info),
        ElementsAre("Asset Manager: The target already contains a folder named 'Holz'. Merge folders? Answered: Yes."));
}

TEST_F(kxModalQuestionTest, FindsAnAnswerHeadlessWithoutADefault)
{
    kxModalQuestion::setMode(kxModalQuestion::Mode::Headless);

    EXPECT_EQ(kxModalQuestion::information(nullptr, "T", "x"), QMessageBox::Ok);
    EXPECT_EQ(kxModalQuestion::question(nullptr, "T", "x"), QMessageBox::Yes);
    EXPECT_EQ(kxModalQuestion::warning(nullptr, "T", "x", QMessageBox::Cancel | QMessageBox::No), QMessageBox::No);
    EXPECT_THAT(log.lines(), ElementsAre("T: x Answered: Ok.", "T: x Answered: Yes.", "T: x Answered: No."));
}

TEST_F(kxModalQuestionTest, LetsAnInstalledAnswererAnswer)
{
    kxModalQuestion::setMode(kxModalQuestion::Mode::Headless);
    std::vector<kxModalQuestion::Question> asked;
    kxModalQuestion::setAnswerer([&asked](const kxModalQuestion::Question &question) {
        asked.push_back(question);
        return QMessageBox::No;
    });
    QWidget parent;

    const auto answer =
        kxModalQuestion::question(&parent, "Titel", "Text?", QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);

    EXPECT_EQ(answer, QMessageBox::No);
    ASSERT_EQ(asked.size(), 1U);
    EXPECT_EQ(asked[0].icon, QMessageBox::Question);
    EXPECT_EQ(asked[0].parent, &parent);
    EXPECT_EQ(asked[0].title, "Titel");
    EXPECT_EQ(asked[0].text, "Text?");
    EXPECT_EQ(asked[0].buttons, QMessageBox::Yes | QMessageBox::No);
    EXPECT_EQ(asked[0].defaultButton, QMessageBox::Yes);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(kxModalQuestionTest, GoesBackToTheModeWithoutAnAnswerer)
{
    kxModalQuestion::setMode(kxModalQuestion::Mode::Headless);
    kxModalQuestion::setAnswerer([](const kxModalQuestion::Question &) { return QMessageBox::No; });

    kxModalQuestion::setAnswerer({});

    EXPECT_EQ(kxModalQuestion::mode(), kxModalQuestion::Mode::Headless);
    EXPECT_EQ(kxModalQuestion::question(nullptr, "T", "x"), QMessageBox::Yes);
}

TEST_F(kxModalQuestionTest, ShowsARealBoxToAPerson)
{
    QWidget parent;
    QString text;
    QString title;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QWidget *boxParent = nullptr;
    QTimer::singleShot(0, [&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        text = box->text();
        title = box->windowTitle();
        icon = box->icon();
        boxParent = box->parentWidget();
        EXPECT_EQ(box->standardButton(box->defaultButton()), QMessageBox::Yes);
        box->button(QMessageBox::No)->click();
    });

    const auto answer = kxModalQuestion::warning(&parent, "Asset Manager", "Really?",
                                                 QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);

    EXPECT_EQ(answer, QMessageBox::No);
    EXPECT_EQ(text, "Really?");
    EXPECT_EQ(title, "Asset Manager");
    EXPECT_EQ(icon, QMessageBox::Warning);
    EXPECT_EQ(boxParent, &parent);
}

TEST_F(kxModalQuestionTest, RejectsDialogsThatNobodyCanAnswer)
{
    kxModalQuestion::setMode(kxModalQuestion::Mode::Headless);
    QDialog dialog;
    dialog.setWindowTitle("Which one?");

    EXPECT_EQ(kxModalQuestion::exec(dialog), QDialog::Rejected);

    EXPECT_THAT(log.lines(kxLogLevel::Warning),
                ElementsAre("Which one?: a choice is needed and nobody is there to make it. Answered: Cancel."));
}

TEST_F(kxModalQuestionTest, HasAnAnswererFillInDialogs)
{
    QDialog dialog;
    kxModalQuestion::setDialogAnswerer([](QDialog &asked) {
        asked.setObjectName("filled in");
        return static_cast<int>(QDialog::Accepted);
    });

    EXPECT_EQ(kxModalQuestion::exec(dialog), QDialog::Accepted);
    EXPECT_EQ(dialog.objectName(), "filled in");
    kxModalQuestion::setDialogAnswerer({});

    QTimer::singleShot(0, &dialog, &QDialog::accept);
    EXPECT_EQ(kxModalQuestion::exec(dialog), QDialog::Accepted) << "by a person";
}

} // namespace
