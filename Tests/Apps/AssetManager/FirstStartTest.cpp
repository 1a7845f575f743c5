// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/WelcomeDialog.h"
#include "RealInput.h"
#include "RunningProgram.h"
#include "SceneFixture.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QPushButton>
#include <QTest>

#include <set>

namespace {

const QString Main = QStringLiteral("Asset Manager");
const QString Welcome = QStringLiteral("Welcome");

/// What somebody meets who starts the program for the first time, and for the second.
class FirstStartTest : public SceneFixture
{
protected:
    /// Where a button of the dialog is seen, which looks like one of ours.
    static QPoint placeIn(const QRect &dialog, const std::function<QWidget *(QDialog &)> &find)
    {
        WelcomeDialog like(QStringLiteral("sample"), nullptr);
        like.setAttribute(Qt::WA_DontShowOnScreen);
        like.show();
        like.resize(dialog.size());
        SceneFixture::process();
        QWidget *button = find(like);
        return dialog.topLeft() + button->mapTo(&like, button->rect().center());
    }
    void clickInWelcome(const std::function<QWidget *(QDialog &)> &find)
    {
        const auto dialog = program.waitForWindow(Welcome);
        ASSERT_TRUE(dialog);
        input.click(placeIn(*dialog, find), Qt::LeftButton, Qt::NoModifier);
    }
    static QWidget *closeButton(QDialog &dialog)
    {
        return dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Close);
    }
    static QWidget *sampleButton(QDialog &dialog) { return dialog.findChild<QAbstractButton *>("sample"); }
    bool waitUntil(const std::function<bool()> &isSo) { return QTest::qWaitFor(isSo, 120000); }

    /// Starts it, closes its window, and answers whether it greeted before it ended. The greeting would keep it from ending.
    bool greets(const QStringList &arguments)
    {
        program.start(arguments);
        program.waitForWindow(Main);
        bool hasGreeted = false;
        EXPECT_TRUE(waitUntil([&] {
            hasGreeted = program.window(Welcome).has_value();
            if (!hasGreeted && program.window(Main))
                program.close(Main);
            return hasGreeted || !program.isRunning();
        }));
        return hasGreeted;
    }

    /// The program below a prefix, with a library beside it that holds one material.
    void install()
    {
        storeMaterial("Oak"); // without which it would not be offered, and the dialog look different
        const QString bin = QString::fromStdString(folder.makeFolder("usr/local/bin"));
        folder.makeFolder("usr/local/share/kxassets");
        ASSERT_TRUE(QFile::copy(QCoreApplication::applicationDirPath() + "/asset-manager", bin + "/asset-manager"));
        ASSERT_TRUE(QDir().rename(library().toLocalFile(),
                                  QString::fromStdString(folder.file("usr/local/share/kxassets/sample-library"))));
        program.setFolder(bin);
    }

    RealInput input;
    RunningProgram program{folder};
};

TEST_F(FirstStartTest, GreetsAtTheFirstStartAndAtNoSecond)
{
    install();
    program.start({});
    clickInWelcome(closeButton);
    ASSERT_TRUE(waitUntil([this] { return !program.window(Welcome); }));
    program.close(Main);
    EXPECT_EQ(program.waitForEnd(), 0);
    EXPECT_TRUE(program.setting("isWelcomed").toBool());

    EXPECT_FALSE(greets({}));
    EXPECT_EQ(program.waitForEnd(), 0);
}

TEST_F(FirstStartTest, GreetsNobodyWhoNamesALibrary)
{
    const QString lib = QString::fromStdString(folder.makeFolder("lib"));

    EXPECT_FALSE(greets({lib}));

    EXPECT_EQ(program.waitForEnd(), 0);
    EXPECT_FALSE(program.setting("isWelcomed").toBool()) << "the next start without one is the first";
    EXPECT_EQ(program.setting("libraries").toStringList(), QStringList{QFileInfo(lib).canonicalFilePath()});
}

TEST_F(FirstStartTest, OpensAnOwnCopyOfTheInstalledSampleLibrary)
{
    install();
    program.start({});
    clickInWelcome(sampleButton);
    const QString own = program.home("data/kxAssets/sample-library");

    EXPECT_TRUE(waitUntil([&] { return program.setting("libraries").toStringList() == QStringList{own}; }));
    EXPECT_EQ(QDir(own).entryList({"MAT_*"}, QDir::Dirs), QStringList{"MAT_Oak"});
    EXPECT_EQ(QDir(program.home("data/kxAssets")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 1)
        << "nothing unfinished is left";
}

TEST_F(FirstStartTest, ShowsTheIconOfTheDesktopInItsWindow)
{
    const QIcon desktop(QStringLiteral(KX_DESKTOP_FOLDER "/kxassets-asset-manager.svg"));
    program.start({QString::fromStdString(folder.makeFolder("lib"))});
    program.waitForWindow(Main);

    const QImage icon = program.icon(Main);

    ASSERT_FALSE(icon.isNull());
    EXPECT_EQ(icon, desktop.pixmap(icon.size()).toImage().convertToFormat(QImage::Format_ARGB32));
    std::set<QRgb> colours;
    for (int y = 0; y < icon.height(); ++y)
        for (int x = 0; x < icon.width(); ++x)
            if (qAlpha(icon.pixel(x, y)) == 255)
                colours.insert(icon.pixel(x, y));
    EXPECT_GE(colours.size(), 4U) << "something is drawn";
}

} // namespace
