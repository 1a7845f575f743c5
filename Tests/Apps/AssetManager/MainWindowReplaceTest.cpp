// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetModel.h"
#include "AssetManager/AssetStates.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/SceneSide.h"
#include "AssetManager/Trash.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxModalQuestion.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Group.h"
#include "Support/FileSizeLimit.h"
#include "WindowFixture.h"

#include <QDirIterator>
#include <QDockWidget>
#include <QFile>
#include <QMenu>
#include <QTest>

#include <gmock/gmock.h>

#include <map>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

/// What of the library is replaced by something else, and comes back by undo.
class MainWindowReplaceTest : public WindowFixture
{
protected:
    MainWindowReplaceTest()
    {
        kxModalQuestion::setAnswerer([](const kxModalQuestion::Question &) { return QMessageBox::Save; });
    }

    void saveOver(const std::string &uuid)
    {
        clickAsset(uuid);
        for (QAction *action : widget<QMenu>("assetMenu").actions())
            if (action->text().contains("over it"))
                action->trigger();
        settle();
    }
    void renderPreviewAnew(const std::string &uuid)
    {
        clickAsset(uuid);
        press(Qt::Key_P, Qt::ControlModifier);
        settle();
        activate(); // a window manager does that when the progress closes
    }
    std::uint32_t stateOf(const std::string &uuid) const { return window->libraries().states().stateOf(uuid); }
    bool becomes(const std::string &uuid, std::uint32_t state) const
    {
        return QTest::qWaitFor([&] { return stateOf(uuid) == state; }, Patience);
    }

    /// Every file of the library by its relative path, without what is in the trash.
    std::map<QString, QByteArray> content() const
    {
        std::map<QString, QByteArray> files;
        for (QDirIterator found(path(), QDir::Files, QDirIterator::Subdirectories); found.hasNext();) {
            QFile file(found.next());
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            files[QDir(path()).relativeFilePath(file.fileName())] = file.readAll();
        }
        return files;
    }
    QString previewOf(const std::string &uuid) const
    {
        const QDir directory(directoryOf(uuid));
        return directory.filePath(directory.entryList({"*.png"}).value(0));
    }
};

} // namespace

TEST_F(MainWindowReplaceTest, BringsBackTheMaterialThatTheScenesCopyWasSavedOver)
{
    const std::string oak = storeMaterial("Oak");
    open();
    load(oak);
    kxMaterials::setName(kxMaterials::findAssetMaterial(oak), "Bog oak", false);
    const auto before = content();
    saveOver(oak);
    const auto after = content();
    ASSERT_NE(after, before);

    undo();

    EXPECT_THAT(names(), ElementsAre("Oak"));
    EXPECT_EQ(content(), before);
    EXPECT_TRUE(QFileInfo(directoryOf(oak)).isDir());
    redo();
    EXPECT_THAT(names(), ElementsAre("Bog oak"));
    EXPECT_EQ(content(), after);
    undo();
    EXPECT_THAT(names(), ElementsAre("Oak"));
    EXPECT_EQ(content(), before);
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowReplaceTest, CountsTheScenesCopyAsEditedAgain)
{
    const std::string chair = storeGeometry("Chair");
    open();
    widget<QDockWidget>("viewDock").hide(); // drawing the scene takes time
    settle();
    load(chair);
    const osg::NodePtr node = root()->getChild(root()->getNChildren() - 1);
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(node);
    ASSERT_TRUE(attachment);
    add(osg::Group::create(), node, "Arm");
    {
        const osg::CPEditor edit(attachment, osg::AssetAttachment::UserEditedFieldMask);
        attachment->setUserEdited(true);
    }
    ASSERT_TRUE(becomes(chair, AssetStates::InScene | AssetStates::EditedInScene));
    const std::uint32_t checksum = attachment->getChecksum();
    saveOver(chair);
    ASSERT_TRUE(becomes(chair, AssetStates::InScene));

    undo();

    EXPECT_TRUE(becomes(chair, AssetStates::InScene | AssetStates::EditedInScene));
    EXPECT_TRUE(attachment->getUserEdited());
    EXPECT_EQ(attachment->getChecksum(), checksum);
    redo();
    EXPECT_TRUE(becomes(chair, AssetStates::InScene));
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowReplaceTest, KeepsFormerVersionsOutOfSightAndOnlyAsLongAsTheyCanComeBack)
{
    const std::string oak = storeMaterial("Oak");
    open();
    load(oak);
    kxMaterials::setName(kxMaterials::findAssetMaterial(oak), "Bog oak", false);

    saveOver(oak);

    EXPECT_TRUE(Trash(path()).entries().empty());
    EXPECT_FALSE(QDir(path(".kx-trash")).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot));
    window.reset();
    EXPECT_TRUE(QDir(path(".kx-trash")).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot));
}

TEST_F(MainWindowReplaceTest, LeavesAnAssetOfAClosedLibraryAsItIs)
{
    const std::string oak = storeMaterial("Oak");
    open();
    load(oak);
    kxMaterials::setName(kxMaterials::findAssetMaterial(oak), "Bog oak", false);
    saveOver(oak);
    const auto after = content();
    window->libraries().close(path());

    undo();

    EXPECT_EQ(content(), after);
    EXPECT_EQ(reported(), "\"Bog oak\" was left as it is: its library is not open any more.");
}

TEST_F(MainWindowReplaceTest, SavesNothingOverWhatItCannotKeep)
{
    const std::string oak = storeMaterial("Oak");
    open();
    load(oak);
    kxMaterials::setName(kxMaterials::findAssetMaterial(oak), "Bog oak", false);
    const auto before = content();
    {
        const kxtest::FileSizeLimit full(0, kxtest::FileSizeLimit::Fails);
        saveOver(oak);
    }

    EXPECT_EQ(reported(), "\"Oak\" was left as it is: the disk is too full to keep its present version.");
    EXPECT_EQ(content(), before);
    EXPECT_FALSE(window->undoStack().undoText().contains("Saving over"));
}

TEST_F(MainWindowReplaceTest, BringsBackTheFormerPreview)
{
    const std::string oak = storeMaterial("Oak");
    open();
    QFile file(previewOf(oak));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("painted by hand");
    file.close();

    renderPreviewAnew(oak);

    ASSERT_FALSE(QImage(file.fileName()).isNull());
    undo();
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "painted by hand");
    redo();
    EXPECT_FALSE(QImage(file.fileName()).isNull());
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowReplaceTest, TakesAPreviewAwayWhereThereWasNone)
{
    const std::string oak = storeMaterial("Oak");
    open();
    const QString file = previewOf(oak);
    ASSERT_TRUE(QFile::remove(file));

    renderPreviewAnew(oak);

    ASSERT_TRUE(QFile::exists(file));
    undo();
    EXPECT_FALSE(QFile::exists(file));
    redo();
    EXPECT_TRUE(QFile::exists(file));
}

TEST_F(MainWindowReplaceTest, TakesANewFolderBackUnlessThereIsSomethingInIt)
{
    storeMaterial("Oak");
    open();
    clickFolder(path());
    press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    settle();
    const QDir library(path());
    ASSERT_THAT(library.entryList(QDir::Dirs | QDir::NoDotAndDotDot), Contains("New folder"));

    undo();
    EXPECT_THAT(library.entryList(QDir::Dirs | QDir::NoDotAndDotDot), Not(Contains("New folder")));
    redo();
    EXPECT_THAT(library.entryList(QDir::Dirs | QDir::NoDotAndDotDot), Contains("New folder"));

    QFile other(path("New folder/notes.txt"));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    undo();

    EXPECT_TRUE(other.exists());
    EXPECT_EQ(reported(), "\"New folder\" was left: there is something in it, or it may not be removed.");
}
