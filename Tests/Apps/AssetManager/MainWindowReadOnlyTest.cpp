// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/LibrarySide.h"
#include "AssetManager/Trash.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxModalQuestion.h"
#include "ReadOnly.h"
#include "Support/FileSizeLimit.h"
#include "WindowFixture.h"

#include <QDialog>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QMimeData>
#include <QTreeView>

#include <gmock/gmock.h>

namespace {

/// What a person is told where nothing can be written, and that everything stays as it was.
class MainWindowReadOnlyTest : public WindowFixture
{
protected:
    /// All files of the library with their contents, and its folders.
    std::map<QString, QByteArray> content() const
    {
        std::map<QString, QByteArray> all;
        QDirIterator entries(path(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            QFile file(entries.next());
            const bool isRead = entries.fileInfo().isFile() && file.open(QIODevice::ReadOnly);
            all[file.fileName()] = isRead ? file.readAll() : QByteArray();
        }
        all.erase(path(".kx-trash")); // an empty one is nothing
        return all;
    }
    LibraryActions &actions() { return window->libraries().actions(); }
    QString box() { return QString::fromStdString(folder.write("box.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")); }
    void importBox()
    {
        kxModalQuestion::setDialogAnswerer([](QDialog &) { return QDialog::Accepted; });
        window->importFiles({_box}, path());
    }
    /// Loads it and changes the copy.
    std::vector<std::uint32_t> change(const std::string &material)
    {
        clickAsset(material);
        press(Qt::Key_Return, Qt::ControlModifier);
        const osg::MaterialPtr copy = kxMaterials::findAssetMaterial(material);
        kxMaterials::setName(copy, "Bog oak", false);
        return {copy.getFieldContainerId()};
    }

    const QString _box = box();
};

TEST_F(MainWindowReadOnlyTest, SaysOfEachActionThatNothingMayBeWritten)
{
    const std::string oak = storeMaterial("Oak");
    const std::string elm = storeMaterial("Elm");
    for (const char *name : {"Wood", "A/Wood/Dark"})
        ASSERT_TRUE(QDir().mkpath(path(name)));
    open();
    actions().trashAssets({id(elm)});
    window->undoStack().clear();
    const Trash::Entry trashed = Trash(path()).entries().front();
    const std::vector<std::uint32_t> changed = change(oak);
    kxModalQuestion::setAnswerer([](const kxModalQuestion::Question &) { return QMessageBox::Yes; });
    window->undoStack().clear();
    settle();
    const auto before = content();
    {
        const ReadOnly disk(path());

        actions().moveAssets({id(oak)}, path("Wood"));
        EXPECT_EQ(takeReport(), "\"Oak\" could not be moved: you may not write there.");
        importBox();
        EXPECT_EQ(takeReport(), "\"box.obj\" could not be imported. You may not write there.");
        window->libraries().assetActions().renderPreviews({id(oak)});
        EXPECT_EQ(takeReport(),
                  "\"Oak\" was left as it is: its present version could not be kept. You may not write there.");
        window->libraries().assetActions().overwrite(changed);
        EXPECT_EQ(takeReport(),
                  "\"Oak\" was left as it is: its present version could not be kept. You may not write there.");
        actions().restore({trashed});
        EXPECT_EQ(takeReport(), "\"Elm\" could not be moved: you may not write there.");
        actions().moveFolders({path("A/Wood")}, path());
        EXPECT_EQ(takeReport(), "\"Wood\" was not moved. You may not write there.");
    }

    settle();
    EXPECT_EQ(content(), before);
    EXPECT_FALSE(window->undoStack().canUndo());
    EXPECT_THAT(names(), testing::ElementsAre("Oak"));
}

TEST_F(MainWindowReadOnlyTest, SaysThatTheDiskIsFullAndLeavesNothingHalfMade)
{
    const std::string oak = storeMaterial("Oak");
    addChair("Chair");
    open();
    const QString scene = QString::fromStdString(folder.file("room.osb"));
    auto &tree = widget<QTreeView>("sceneTree");
    const std::unique_ptr<QMimeData> chair(tree.model()->mimeData({rowOf(tree, "Chair")}));
    const auto before = content();
    {
        const kxtest::FileSizeLimit full(0, kxtest::FileSizeLimit::Fails);

        importBox();
        EXPECT_EQ(takeReport(), "\"box.obj\" could not be imported. The disk is full.");
        dropOnFolder(path(), *chair);
        EXPECT_EQ(takeReport(), "\"Chair\" was not saved. The disk is full.");
        window->libraries().assetActions().renderPreviews({id(oak)});
        EXPECT_EQ(takeReport(), "\"Oak\" was left as it is: the disk is too full to keep its present version.");
        EXPECT_FALSE(window->scene().actions().saveScene(scene));
        EXPECT_EQ(takeReport(), "The scene could not be saved as \"room.osb\". The disk is full.");
    }

    settle();
    EXPECT_EQ(content(), before);
    EXPECT_FALSE(QFileInfo::exists(scene));
    EXPECT_FALSE(window->undoStack().canUndo());
}

} // namespace
