// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/Trash.h"
#include "Kernel/kxModalQuestion.h"
#include "WindowFixture.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QMimeData>
#include <QPushButton>

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

QString model(const char *name)
{
    return QStringLiteral(KX_TEST_MODELS "/") + QLatin1String(name);
}

class MainWindowImportTest : public WindowFixture
{
protected:
    MainWindowImportTest()
    {
        kxModalQuestion::setDialogAnswerer([this](QDialog &dialog) {
            ++dialogs;
            showForInput(dialog);
            if (fillIn)
                fillIn(dialog);
            QWidget &choice = *dialog.findChild<QDialogButtonBox *>()->button(button);
            click(choice, choice.rect().center());
            return dialog.result();
        });
    }

    bool dropFiles(const QStringList &files)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString &file : files)
            urls.append(QUrl::fromLocalFile(file));
        data.setUrls(urls);
        QWidget &shown = *window->browser().view().viewport();
        const bool isTaken = drop(shown, shown.rect().center(), data);
        activate(); // a dialog was before it
        return isTaken;
    }
    std::vector<kxAssetCategoryType> kinds() const
    {
        std::vector<kxAssetCategoryType> found;
        for (int row = 0; row < window->libraries().assets().rowCount(); ++row)
            found.push_back(window->libraries().assets().entry(row).category);
        return found;
    }

    QDialogButtonBox::StandardButton button = QDialogButtonBox::Ok;
    std::function<void(QDialog &)> fillIn;
    int dialogs = 0;
};

TEST_F(MainWindowImportTest, ImportsModelsThatAreDroppedIntoTheWindow)
{
    open();

    ASSERT_TRUE(dropFiles({model("OBJ/box.obj"), model("PLY/cube.ply")}));

    EXPECT_EQ(dialogs, 1);
    EXPECT_THAT(names(), UnorderedElementsAre("box", "cube"));
    EXPECT_THAT(kinds(), ElementsAre(Geometry, Geometry));
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowImportTest, GoesOnAfterABrokenFileAndReportsOnceAtTheEnd)
{
    open();
    const QString broken = QString::fromStdString(folder.write("Kaputter Würfel #1.obj", "v 0 0\nf 1 2 nonsense\n"));
    const QString other = QString::fromStdString(folder.write("notes.txt", "no model"));

    dropFiles({model("OBJ/box.obj"), broken, other, model("PLY/cube.ply")});

    EXPECT_THAT(names(), UnorderedElementsAre("box", "cube"));
    EXPECT_TRUE(reported().contains(QString::fromUtf8("Kaputter Würfel #1.obj"))) << reported().toStdString();
    EXPECT_TRUE(reported().contains("\"notes.txt\" is of a kind that cannot be imported.")) << reported().toStdString();
}

TEST_F(MainWindowImportTest, SaysInWordsOfPeopleWhatIsWrongWithAFile)
{
    open();
    const std::vector<std::pair<std::string, QString>> expected{
        {folder.write("empty.obj", ""), "\"empty.obj\" could not be imported. The file is empty."},
        {folder.file("gone.obj"), "\"gone.obj\" could not be imported. It is not there any more."},
        {folder.write("photo.png", "no picture"),
         "\"photo.png\" could not be imported. It is damaged, or not what its name says. (Not a PNG file)"},
        {folder.write("broken.obj", "v 0 0\nf 1 2 nonsense\n"),
         "\"broken.obj\" could not be imported. It is damaged, or not what its name says. (OBJ: Invalid face index.)"},
    };

    for (const auto &[file, report] : expected) {
        window->importFiles({QString::fromStdString(file)}, path());
        settle();
        EXPECT_EQ(takeReport(), report);
    }
}

TEST_F(MainWindowImportTest, TakesTheWholeImportBackInOneStep)
{
    open();
    dropFiles({model("OBJ/box.obj"), model("OBJ/spider.obj")});
    const std::vector<QString> imported = names();
    EXPECT_THAT(imported, Contains("spider"));

    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_THAT(names(), IsEmpty());
    pressRedo();
    settle();

    EXPECT_EQ(names(), imported);
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowImportTest, ImportsNothingWhenTheDialogIsCancelled)
{
    button = QDialogButtonBox::Cancel;
    open();

    dropFiles({model("OBJ/box.obj")});

    EXPECT_EQ(dialogs, 1);
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_FALSE(window->undoStack().canUndo());
}

TEST_F(MainWindowImportTest, MakesOfPicturesWhatIsChosenByTheKeyboard)
{
    open();
    dropFiles({model("OBJ/SpiderTex.jpg")});
    EXPECT_THAT(kinds(), ElementsAre(Environment));
    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    fillIn = [this](QDialog &dialog) {
        auto *pictures = dialog.findChild<QComboBox *>("pictures");
        EXPECT_FALSE(dialog.findChild<QComboBox *>("models")->isEnabled());
        pictures->setFocus();
        press(Qt::Key_Down);
    };

    dropFiles({model("OBJ/SpiderTex.jpg")});

    EXPECT_THAT(kinds(), ElementsAre(Sceneplate));
}

TEST_F(MainWindowImportTest, TakesOnlyTheMaterialsWhereThatIsChosen)
{
    fillIn = [this](QDialog &dialog) {
        dialog.findChild<QComboBox *>("models")->setFocus();
        press(Qt::Key_End);
    };
    open();

    dropFiles({model("OBJ/spider.obj")});

    EXPECT_FALSE(kinds().empty());
    EXPECT_THAT(kinds(), testing::Each(Material));
}

TEST_F(MainWindowImportTest, PutsFilesIntoTheFolderThatTheyAreDroppedOn)
{
    QDir().mkpath(path("Models"));
    open();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(model("glTF2/BoxTextured-glTF-Binary/BoxTextured.glb"))});

    ASSERT_TRUE(dropOnFolder(path("Models"), data));

    ASSERT_EQ(names().size(), 1U);
    EXPECT_EQ(window->libraries().assets().entry(0).folder, path("Models"));
}

TEST_F(MainWindowImportTest, SaysThatThereIsNoLibraryToImportInto)
{
    dropFiles({model("OBJ/box.obj")});

    EXPECT_EQ(dialogs, 0);
    EXPECT_EQ(reported(), "Add a library first: there is no folder to import into.");
}

} // namespace
