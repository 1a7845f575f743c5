// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxController.h"
#include "Kernel/kxNodeUtils.h"
#include "WindowFixture.h"

#include <QUndoStack>

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// What can be undone after the scene was saved, and after another one took its place.
class MainWindowKeepTest : public WindowFixture
{
protected:
    void remove(const std::string &uuid)
    {
        clickAsset(uuid);
        press(Qt::Key_Delete);
        settle();
    }
    void saveScene()
    {
        press(Qt::Key_S, Qt::ControlModifier);
        settle();
        EXPECT_FALSE(window->isWindowModified());
    }
};

} // namespace

TEST_F(MainWindowKeepTest, UndoesWhatWasDoneBeforeTheSceneWasSaved)
{
    const std::string chair = storeGeometry("Chair");
    const std::string oak = storeMaterial("Oak");
    open();
    window->scene().open([this] {
        EXPECT_TRUE(window->scene().actions().saveScene(QString::fromStdString(folder.file("room.osb"))));
        return QString::fromStdString(folder.file("room.osb"));
    }());
    settle();
    load(chair);
    remove(oak);
    ASSERT_TRUE(window->isWindowModified());

    saveScene();

    undo();
    EXPECT_THAT(names(), ElementsAre("Chair", "Oak"));
    EXPECT_FALSE(window->isWindowModified()) << "the scene is as it was saved";
    undo();
    EXPECT_THAT(childNames(root()), Not(Contains("Chair")));
    EXPECT_TRUE(window->isWindowModified()) << "the file has the chair";
    redo();
    EXPECT_THAT(childNames(root()), Contains("Chair"));
    saveScene();
    redo();
    EXPECT_THAT(names(), ElementsAre("Chair"));
    undo();
    undo();
    EXPECT_THAT(names(), ElementsAre("Chair", "Oak"));
    EXPECT_THAT(childNames(root()), Not(Contains("Chair")));
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowKeepTest, UndoesWhatWasDoneToLibrariesBeforeAnotherScene)
{
    const std::string chair = storeGeometry("Chair");
    const std::string oak = storeMaterial("Oak");
    open();
    remove(oak);
    load(chair);
    kxController::setModified(false);
    ASSERT_EQ(window->undoStack().count(), 2);

    press(Qt::Key_N, Qt::ControlModifier);
    settle();

    ASSERT_EQ(window->undoStack().count(), 1) << "the chair's object is gone with its scene";
    EXPECT_THAT(names(), ElementsAre("Chair"));
    undo();
    EXPECT_THAT(names(), ElementsAre("Chair", "Oak"));
    redo();
    EXPECT_THAT(names(), ElementsAre("Chair"));
    undo();
    EXPECT_THAT(names(), ElementsAre("Chair", "Oak"));
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowKeepTest, RedoesWhatWasUndoneInLibrariesBeforeAnotherScene)
{
    const std::string ash = storeMaterial("Ash");
    const std::string oak = storeMaterial("Oak");
    open();
    remove(oak);
    remove(ash);
    undo();
    undo();
    redo();
    ASSERT_THAT(names(), ElementsAre("Ash"));

    press(Qt::Key_N, Qt::ControlModifier);
    settle();

    EXPECT_THAT(names(), ElementsAre("Ash")) << "nothing is done by it";
    redo();
    EXPECT_THAT(names(), IsEmpty());
    undo();
    undo();
    EXPECT_THAT(names(), ElementsAre("Ash", "Oak"));
    redo();
    redo();
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(reported(), "");
}
