// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/LibrarySide.h"
#include "Import/kxSceneImporter.h"
#include "Kernel/kxModalQuestion.h"
#include "LibraryContent.h"
#include "WindowFixture.h"

#include <QComboBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QTimer>

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <utility>

namespace {

/// Stops the import of a file that takes long by itself.
class MainWindowImportStopTest : public WindowFixture
{
protected:
    MainWindowImportStopTest()
    {
        const std::string pid = folder.file("pid");
        const std::string program = folder.write("worker.sh", "#!/bin/sh\necho $$ >'" + pid + ".new'; mv '" + pid +
                                                                  ".new' '" + pid + "'\nexec sleep 20\n");
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        kxSceneImporter::setWorkerProgram(program);
        QObject::connect(&_person, &QTimer::timeout, [this] { clickCancel(); });
    }
    ~MainWindowImportStopTest() override { kxSceneImporter::setWorkerProgram(""); }

    /// Imports it with that choice of what models become, and clicks on the button soon after the parser began.
    void importAndStop(const std::string &file, int choice)
    {
        handled = 0;
        kxModalQuestion::setDialogAnswerer([this, choice](QDialog &dialog) {
            ++dialogs;
            dialog.findChild<QComboBox *>("models")->setCurrentIndex(choice);
            return QDialog::Accepted;
        });
        _person.start(5);
        window->importFiles({QString::fromStdString(file)}, path());
        _person.stop();
        settle();
    }
    bool isParserGone()
    {
        const int process = std::stoi(folder.read("pid"));
        std::filesystem::remove(folder.file("pid"));
        return kill(process, 0) == -1 && errno == ESRCH;
    }

    int handled = 0; ///< events that the window handled while the parser ran
    int dialogs = 0;
    std::function<void()> meanwhile; ///< happens before the click

private:
    void clickCancel()
    {
        auto *dialog = window->findChild<QProgressDialog *>("importProgress");
        if (!dialog || !dialog->isVisible() || dialog->wasCanceled() || input.isBusy() || !folder.contains("pid"))
            return;
        if (++handled < 3)
            return;
        if (meanwhile)
            std::exchange(meanwhile, {})();
        auto *button = dialog->findChild<QPushButton *>();
        input.click(button->mapToGlobal(button->rect().center()), Qt::LeftButton, Qt::NoModifier);
    }

    QTimer _person;
};

} // namespace

TEST_F(MainWindowImportStopTest, StopsTheReadingOfOneFileByTheButton)
{
    storeMaterial("Oak");
    open();
    const LibraryContent before = contentOf(path());
    const std::string model = folder.write("car.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    const std::string picture = folder.write("sky.png", "no picture");

    for (const auto &[file, choice] : {std::pair(model, 0), {model, 1}, {model, 2}, {picture, 0}}) {
        importAndStop(file, choice);

        EXPECT_GE(handled, 3) << file << choice;
        EXPECT_TRUE(isParserGone());
        EXPECT_EQ(reported(), "");
        EXPECT_EQ(differenceOf(before, contentOf(path())), "");
        EXPECT_THAT(names(), testing::ElementsAre("Oak"));
        EXPECT_FALSE(window->undoStack().canUndo());
    }
}

TEST_F(MainWindowImportStopTest, ImportsAfterwardsWhatComesMeanwhile)
{
    open();
    const std::string slow = folder.write("car.obj", "no matter");
    const QString box = QString::fromStdString(folder.write("box.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"));
    meanwhile = [this, box] {
        kxSceneImporter::setWorkerProgram("");
        std::filesystem::remove(folder.file("pid")); // one click is enough
        window->importFiles({box}, path());
        EXPECT_EQ(dialogs, 1) << "nothing is asked in the midst of it";
    };

    importAndStop(slow, 0);

    EXPECT_EQ(dialogs, 2);
    EXPECT_THAT(names(), testing::ElementsAre("box"));
    EXPECT_EQ(reported(), "");
}
