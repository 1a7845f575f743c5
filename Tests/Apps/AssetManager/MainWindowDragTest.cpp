// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/SceneSide.h"
#include "AssetManager/SceneView.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QListView>
#include <QProcess>
#include <QTest>
#include <QTreeView>

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

/// Another program, out of whose window files are dragged.
class FileManager
{
public:
    FileManager(const QStringList &files, const QPoint &place) : _place(place)
    {
        _program.start(QStringLiteral(KX_FILE_MANAGER),
                       QStringList{QString::number(place.x()), QString::number(place.y())} + files);
    }
    ~FileManager()
    {
        _program.kill();
        _program.waitForFinished();
    }
    FileManager(const FileManager &) = delete;
    FileManager &operator=(const FileManager &) = delete;

    /// Where a drag begins.
    QPoint place() const { return _place + QPoint(20, 20); }
    /// Waits until it has said so.
    bool says(const QByteArray &what)
    {
        return QTest::qWaitFor(
            [&] {
                _said += _program.readAllStandardOutput();
                return _said.contains(what);
            },
            30000);
    }

private:
    QProcess _program;
    QPoint _place;
    QByteArray _said;
};

/// Whether something is dragged over a widget that takes drops.
class DragWatch final : public QObject
{
public:
    DragWatch() { qApp->installEventFilter(this); }

    bool isOver() const { return _isOver; }

private:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        _isOver |= event->type() == QEvent::DragMove && watched->isWidgetType();
        return QObject::eventFilter(watched, event);
    }

    bool _isOver = false;
};

/// What is dragged with the mouse from where it is seen to where it shall go.
class MainWindowDragTest : public WindowFixture
{
protected:
    QPoint placeOf(const osg::NodePtr &node)
    {
        view().frameAll();
        settle();
        std::vector<QPoint> places;
        for (int y = 4; y < view().height(); y += 8)
            for (int x = 4; x < view().width(); x += 8)
                if (view().nodeAt({x, y}) == node)
                    places.emplace_back(x, y);
        EXPECT_FALSE(places.empty()) << "not to be seen: " << kxNodeUtils::getName(node);
        return places.empty() ? QPoint() : places[places.size() / 2];
    }
    QTreeView &sceneTree() { return widget<QTreeView>("sceneTree"); }
    QWidget &raised(const char *dock, const char *list)
    {
        raise(dock);
        return *widget<QAbstractItemView>(list).viewport();
    }
    /// Drags its files there. The other program moves on in its own time.
    void dragFrom(FileManager &program, QWidget &target, const QPoint &place)
    {
        ASSERT_TRUE(program.says("ready"));
        input.hold(program.place());
        ASSERT_TRUE(program.says("dragging"));
        const DragWatch watch;
        const QPoint end = target.mapToGlobal(place);
        int step = 0;
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                input.moveTo(end - QPoint(++step % 2, 0));
                return watch.isOver();
            },
            Patience));
        input.letGo();
        EXPECT_TRUE(program.says("taken"));
        settle();
    }
    QWidget &folderView() { return *window->folders().viewport(); }
};

TEST_F(MainWindowDragTest, GivesAMaterialToTheObjectUnderThePointer)
{
    const osg::NodePtr seat = addChair("Chair")->getChild(0);
    const std::string oak = storeMaterial("Oak");
    open();

    clickAsset(oak); // what is shown of it may take room from the picture
    settle();
    dragItem(window->browser().view(), window->libraries().assets().indexOf(oak), view(), placeOf(seat));
    EXPECT_EQ(materialNameOf(seat), "Oak");
    undo();
    EXPECT_EQ(materialOf(seat), nullptr);
    pressRedo();

    EXPECT_EQ(materialNameOf(seat), "Oak");
}

TEST_F(MainWindowDragTest, GivesAMaterialToTheObjectInTheTree)
{
    const osg::NodePtr seat = addChair("Chair")->getChild(0);
    const std::string oak = storeMaterial("Oak");
    open();
    sceneTree().expandAll();

    dragAssets({oak}, *sceneTree().viewport(), sceneTree().visualRect(rowOf(sceneTree(), "Seat")).center());

    EXPECT_EQ(materialNameOf(seat), "Oak");
}

TEST_F(MainWindowDragTest, LoadsGeometryIntoThePictureAndBelowANode)
{
    const osg::NodePtr room = addChair("Room");
    const std::string stool = storeGeometry("Stool");
    open();

    dragAssets({stool}, view(), view().rect().center());
    EXPECT_THAT(childNames(root()), Contains("Stool"));
    undo();
    EXPECT_THAT(childNames(root()), Not(Contains("Stool")));
    dragAssets({stool}, *sceneTree().viewport(), sceneTree().visualRect(rowOf(sceneTree(), "Room")).center());

    EXPECT_THAT(childNames(room), ElementsAre("Seat", "Stool"));
}

TEST_F(MainWindowDragTest, LoadsSeveralAtOnce)
{
    const std::string stool = storeGeometry("Stool");
    const std::string table = storeGeometry("Table");
    open();

    dragAssets({stool, table}, view(), view().rect().center());

    EXPECT_THAT(childNames(root()), testing::IsSupersetOf({"Stool", "Table"}));
}

TEST_F(MainWindowDragTest, LoadsSeveralOfEachKindAtOnce)
{
    const std::vector<std::string> all{storeGeometry("Stool"), storeEnvironment("Dawn"), storeEnvironment("Dusk"),
                                       storePlate("Logo"),     storePlate("Frame"),      storeMaterial("Ash"),
                                       storeMaterial("Oak")};
    open();
    const std::size_t before = kxDefaultEnvironment::getSwitch()->getMaterials().size();

    dragAssets(all, view(), {4, 4});

    EXPECT_THAT(childNames(root()), Contains("Stool"));
    EXPECT_EQ(kxDefaultEnvironment::getSwitch()->getMaterials().size(), before + 2);
    EXPECT_THAT(childNames(kxSceneplateUtils::getSceneplateRoot()), UnorderedElementsAre("Logo", "Frame"));
    for (const std::size_t material : {5U, 6U})
        EXPECT_TRUE(kxMaterials::findAssetMaterial(all[material])) << material;
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowDragTest, LightsTheSceneByTheBackgroundAndByTheList)
{
    const std::string sky = storeEnvironment("Blue sky");
    open();
    const auto choices = [] { return kxDefaultEnvironment::getSwitch()->getMaterials().size(); };
    const std::size_t before = choices();
    EXPECT_FALSE(view().nodeAt({4, 4}));

    dragAssets({sky}, view(), {4, 4});
    EXPECT_EQ(choices(), before + 1);
    undo();
    EXPECT_EQ(choices(), before);
    QWidget &list = raised("environmentDock", "environmentList");
    dragAssets({sky}, list, list.rect().center());

    EXPECT_EQ(choices(), before + 1);
}

TEST_F(MainWindowDragTest, LaysPlatesOnTheirListAndTakesNothingElseThere)
{
    const std::string logo = storePlate("Logo");
    const std::string stool = storeGeometry("Stool");
    open();
    QWidget &list = raised("plateDock", "plateTree");

    dragAssets({stool}, list, list.rect().center());
    EXPECT_FALSE(window->undoStack().canUndo());
    dragAssets({logo}, list, list.rect().center());

    EXPECT_THAT(childNames(kxSceneplateUtils::getSceneplateRoot()), ElementsAre("Logo"));
}

TEST_F(MainWindowDragTest, SavesObjectsAndMaterialsIntoAFolder)
{
    ASSERT_TRUE(QDir().mkpath(path("Kept")));
    addChair("Chair");
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    press(Qt::Key_Return, Qt::ControlModifier); // into the scene
    settle();
    QAbstractItemView &materials = widget<QListView>("materialList");
    raised("materialDock", "materialList");
    clickFolder(path("Kept"));
    ASSERT_THAT(names(), IsEmpty());

    dragItem(sceneTree(), rowOf(sceneTree(), "Chair"), folderView(), placeOfFolder(path("Kept")));
    EXPECT_THAT(names(), ElementsAre("Chair"));
    dragItem(materials, materials.model()->index(0, 0), folderView(), placeOfFolder(path("Kept")));

    EXPECT_FALSE(QDir(path("Kept")).entryList({"MAT_*"}, QDir::Dirs).isEmpty());
    EXPECT_THAT(childNames(root()), Contains("Chair")) << "it stays in the scene";
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowDragTest, MovesSeveralAssetsAndKeepsTheFolderThatIsEmptyThen)
{
    ASSERT_TRUE(QDir().mkpath(path("Wood")));
    const std::string oak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    open();

    dragAssets({oak, ash}, folderView(), placeOfFolder(path("Wood")));
    EXPECT_EQ(QFileInfo(directoryOf(oak)).path(), path("Wood"));
    EXPECT_EQ(QFileInfo(directoryOf(ash)).path(), path("Wood"));
    clickFolder(path("Wood"));
    dragAssets({ash, oak}, folderView(), placeOfFolder(path()));

    EXPECT_EQ(QFileInfo(directoryOf(oak)).path(), path());
    EXPECT_TRUE(QFileInfo(path("Wood")).isDir());
    EXPECT_TRUE(window->libraries().folders().indexOf(path("Wood")).isValid());
    undo();
    EXPECT_EQ(QFileInfo(directoryOf(oak)).path(), path("Wood"));
    pressRedo();
    settle();
    EXPECT_EQ(QFileInfo(directoryOf(oak)).path(), path());
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowDragTest, MovesAFolderIntoAnother)
{
    ASSERT_TRUE(QDir().mkpath(path("Wood")) && QDir().mkpath(path("All")));
    const std::string oak = storeMaterial("Oak");
    open();
    dragAssets({oak}, folderView(), placeOfFolder(path("Wood")));
    FolderModel &folders = window->libraries().folders();

    dragItem(window->folders(), folders.indexOf(path("Wood")), folderView(), placeOfFolder(path("All")));

    EXPECT_EQ(QFileInfo(directoryOf(oak)).path(), path("All/Wood"));
    EXPECT_TRUE(folders.indexOf(path("All/Wood")).isValid());
    EXPECT_FALSE(folders.indexOf(path("Wood")).isValid());
    undo();
    EXPECT_EQ(QFileInfo(directoryOf(oak)).path(), path("Wood"));
}

TEST_F(MainWindowDragTest, MergesAFolderWithItsNamesakeAfterAsking)
{
    ASSERT_TRUE(QDir().mkpath(path("Wood")) && QDir().mkpath(path("All/Wood")));
    const std::string oak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    open();
    dragAssets({oak}, folderView(), placeOfFolder(path("Wood")));
    window->folders().expandAll();
    dragAssets({ash}, folderView(), placeOfFolder(path("All/Wood")));
    FolderModel &folders = window->libraries().folders();
    int asked = 0;
    auto answer = QMessageBox::No;
    kxModalQuestion::setAnswerer([&](const kxModalQuestion::Question &question) {
        ++asked;
        for (const auto button : {answer, QMessageBox::Cancel})
            if (question.buttons.testFlag(button))
                return button;
        return question.defaultButton;
    });

    dragItem(window->folders(), folders.indexOf(path("Wood")), folderView(), placeOfFolder(path("All")));
    EXPECT_EQ(QFileInfo(directoryOf(oak)).path(), path("Wood"));
    EXPECT_EQ(asked, 1);
    takeReport();
    answer = QMessageBox::Yes;
    dragItem(window->folders(), folders.indexOf(path("Wood")), folderView(), placeOfFolder(path("All")));

    EXPECT_EQ(asked, 2);
    EXPECT_EQ(QFileInfo(directoryOf(oak)).path(), path("All/Wood"));
    EXPECT_EQ(QFileInfo(directoryOf(ash)).path(), path("All/Wood"));
}

TEST_F(MainWindowDragTest, ImportsFilesThatComeFromAnotherProgram)
{
    ASSERT_TRUE(QDir().mkpath(path("Models")));
    open();
    kxModalQuestion::setDialogAnswerer([](QDialog &) { return QDialog::Accepted; });
    FileManager box({QStringLiteral(KX_TEST_MODELS "/OBJ/box.obj")}, {1420, 100});
    FileManager cube({QStringLiteral(KX_TEST_MODELS "/PLY/cube.ply")}, {1420, 300});
    QWidget &shown = *window->browser().view().viewport();
    const auto areImported = [this](std::size_t count) {
        return QTest::qWaitFor([=, this] { return names().size() == count; }, Patience);
    };

    dragFrom(box, shown, shown.rect().center());
    EXPECT_TRUE(areImported(1));
    dragFrom(cube, folderView(), placeOfFolder(path("Models")));
    EXPECT_TRUE(areImported(2));

    EXPECT_THAT(names(), UnorderedElementsAre("box", "cube"));
    activate();
    clickFolder(path("Models"));
    EXPECT_THAT(names(), ElementsAre("cube"));
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowDragTest, DropsNothingAfterEscape)
{
    ASSERT_TRUE(QDir().mkpath(path("Wood")));
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    const QString before = directoryOf(oak);
    QAbstractItemView &tiles = window->browser().view();
    const QPoint from =
        tiles.viewport()->mapToGlobal(tiles.visualRect(window->libraries().assets().indexOf(oak)).center());
    const QPoint to = folderView().mapToGlobal(placeOfFolder(path("Wood")));

    input.dragAndEscape({from, from + QPoint(20, 0), to});
    settle();

    EXPECT_EQ(directoryOf(oak), before);
    EXPECT_FALSE(window->undoStack().canUndo());
}

TEST_F(MainWindowDragTest, TakesASlipOfTheMouseForAClick)
{
    const std::string oak = storeMaterial("Oak");
    open();
    QAbstractItemView &tiles = window->browser().view();
    const QPoint place = tiles.visualRect(window->libraries().assets().indexOf(oak)).center();

    input.drag({tiles.viewport()->mapToGlobal(place), tiles.viewport()->mapToGlobal(place + QPoint(3, 2))},
               Qt::LeftButton, Qt::NoModifier);
    process();

    EXPECT_THAT(window->browser().selected(), ElementsAre(oak));
    EXPECT_FALSE(window->undoStack().canUndo());
}

} // namespace
