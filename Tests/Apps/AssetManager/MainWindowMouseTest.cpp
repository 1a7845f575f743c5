// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetGrid.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/AssetStates.h"
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
#include "Kernel/kxSelectionManager.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/CameraCore.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/Transform3D.h"
#include "WindowFixture.h"

#include <QCheckBox>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QHeaderView>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QProgressDialog>
#include <QPushButton>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTabBar>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QToolTip>
#include <QTreeView>

#include <gmock/gmock.h>

#include <cmath>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// What a person does with the mouse, and the keys beside it, all over the window.
class MainWindowMouseTest : public WindowFixture
{
protected:
    /// What appears beside the pointer on the tile, once it says so.
    bool showsTip(const std::string &uuid, const QString &sentence)
    {
        const QModelIndex index = window->libraries().assets().indexOf(uuid);
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return index.data(Qt::ToolTipRole).toString().contains(sentence); }, Patience));
        QAbstractItemView &tiles = window->browser().view();
        input.moveTo(window->mapToGlobal({2, 2}));
        QToolTip::hideText();
        input.moveTo(tiles.viewport()->mapToGlobal(tiles.visualRect(index).center()));
        return QTest::qWaitFor([&] { return QToolTip::isVisible() && QToolTip::text().contains(sentence); }, Patience);
    }
    static QStringList textsOf(const QMenu &menu)
    {
        QStringList texts;
        for (const QAction *action : menu.actions())
            texts.append(QString(action->text()).remove('&'));
        return texts;
    }
    /// Clicks on the button that stops something as soon as it is seen and \a isTime.
    void stopWhen(QTimer &helper, const char *progress, const std::function<bool()> &isTime)
    {
        QObject::connect(&helper, &QTimer::timeout, [this, progress, isTime] {
            auto *dialog = window->findChild<QProgressDialog *>(progress);
            if (!dialog || !dialog->isVisible() || dialog->wasCanceled() || input.isBusy() || !isTime())
                return;
            auto *button = dialog->findChild<QPushButton *>();
            input.click(button->mapToGlobal(button->rect().center()), Qt::LeftButton, Qt::NoModifier);
        });
        helper.start(5);
    }
};

TEST_F(MainWindowMouseTest, ShowsTheAssetsOfEachLibrary)
{
    const QString other = QString::fromStdString(folder.makeFolder("other"));
    ASSERT_TRUE(QDir().mkpath(path()));
    storeMaterial("Oak");
    ASSERT_TRUE(QDir().rename(path() + "/MAT_Oak", other + "/MAT_Oak"));
    storeMaterial("Steel");
    window->openLibraries({path(), other});
    settle();

    clickFolder(other);
    EXPECT_THAT(names(), ElementsAre("Oak"));
    clickFolder(path());

    EXPECT_THAT(names(), ElementsAre("Steel"));
    EXPECT_EQ(window->libraries().folders().libraries(), (QStringList{path(), other}));
}

TEST_F(MainWindowMouseTest, SearchesInNamesTagsAndTypes)
{
    const std::string oak = storeMaterial("Oak");
    storeMaterial("Steel");
    storePlate("Logo");
    open();
    clickAsset(oak);
    auto &tag = widget<QLineEdit>("newTag");
    click(tag, tag.rect().center());
    type("furniture");
    press(Qt::Key_Return);

    press(Qt::Key_F, Qt::ControlModifier);
    type("furn");
    EXPECT_THAT(names(), ElementsAre("Oak"));
    press(Qt::Key_Escape);
    type("steel");
    EXPECT_THAT(names(), ElementsAre("Steel"));
    press(Qt::Key_Escape);
    type(window->libraries().assets().find(oak)->type);

    EXPECT_THAT(names(), Contains("Oak"));
    EXPECT_THAT(names(), testing::Not(Contains("Logo")));
}

TEST_F(MainWindowMouseTest, MakesTilesLargerByTheSliderAndTheWheel)
{
    storeMaterial("Oak");
    open();
    auto &slider = widget<QSlider>("tileSize");
    const int before = window->browser().tileSize();
    const QRect groove = slider.rect();
    const int handle =
        QStyle::sliderPositionFromValue(slider.minimum(), slider.maximum(), slider.value(), groove.width());

    dragMouse(slider, {handle, groove.center().y()}, slider, {groove.right() - 4, groove.center().y()});
    const int bySlider = window->browser().tileSize();
    EXPECT_GT(bySlider, before);
    QWidget &tiles = *widget<AssetGrid>("assetGrid").viewport();
    input.turnWheel(tiles.mapToGlobal(tiles.rect().center()), -2, Qt::ControlModifier);
    process();

    EXPECT_LT(window->browser().tileSize(), bySlider);
}

TEST_F(MainWindowMouseTest, ShowsTheColumnsOfTheKind)
{
    const std::string oak = storeMaterial("Oak");
    storeGeometry("Stool");
    open();
    press(Qt::Key_2, Qt::ControlModifier);
    const QTableView &table = widget<QTableView>("assetTable");
    const auto headers = [&] {
        QStringList texts;
        for (int column = 0; column < table.model()->columnCount(); ++column)
            if (!table.isColumnHidden(column))
                texts.append(table.model()->headerData(column, Qt::Horizontal).toString());
        return texts;
    };
    auto &tabs = widget<QTabBar>("categories");

    click(tabs, tabs.tabRect(1).center());
    EXPECT_THAT(names(), ElementsAre("Oak"));
    EXPECT_EQ(headers(), (QStringList{"Material", "Type", "Modified on", "Storage Location", "Tags"}));
    click(tabs, tabs.tabRect(3).center());

    EXPECT_THAT(names(), ElementsAre("Stool"));
    EXPECT_EQ(headers().size(), 4);
}

TEST_F(MainWindowMouseTest, TellsTheStateOfTheTileUnderThePointer)
{
    const std::string stool = storeGeometry("Stool");
    const std::string table = storeGeometry("Table");
    open();
    clickAsset(stool);
    press(Qt::Key_Return, Qt::ControlModifier);
    settle();
    EXPECT_TRUE(showsTip(stool, "It is used in the scene."));

    const auto nodes = kxScenegraph::getAssetNodes(root());
    ASSERT_EQ(nodes.size(), 1U);
    const osg::AssetAttachmentPtr asset = osg::AssetAttachment::getAssetAttachment(nodes.front());
    {
        const osg::CPEditor edit(asset, osg::AssetAttachment::UserEditedFieldMask);
        asset->setUserEdited(true);
    }
    EXPECT_TRUE(showsTip(stool, "The copy in the scene was changed and differs from the stored asset."));
    {
        const osg::CPEditor edit(asset, osg::AssetAttachment::ChecksumFieldMask);
        asset->setChecksum(1);
    }
    EXPECT_TRUE(showsTip(stool, "The stored asset was saved again after it was loaded into the scene."));
    for (const QFileInfo &file : QDir(directoryOf(table)).entryInfoList({"*.osb"}))
        ASSERT_TRUE(QFile::remove(file.filePath()));
    EXPECT_TRUE(showsTip(table, "Its file is missing: it cannot be loaded."));
}

TEST_F(MainWindowMouseTest, OrbitsPansZoomsAndFrames)
{
    addChair("Chair");
    open();
    view().frameAll();
    settle();
    const QPoint middle = view().rect().center();
    const osg::Vec3d from = camera()->getFrom();
    const osg::Vec3d at = camera()->getAt();
    const double before = distance();

    dragMouse(view(), middle, view(), middle + QPoint(60, 30));
    EXPECT_NE(camera()->getFrom(), from);
    EXPECT_EQ(camera()->getAt(), at);
    dragMouse(view(), middle, view(), middle + QPoint(60, 30), Qt::MiddleButton);
    EXPECT_NE(camera()->getAt(), at);
    const osg::Vec3d panned = camera()->getAt();
    dragMouse(view(), middle, view(), middle + QPoint(60, 30), Qt::LeftButton, Qt::ShiftModifier);
    EXPECT_NE(camera()->getAt(), panned);
    input.turnWheel(view().mapToGlobal(middle), 3, Qt::NoModifier);
    EXPECT_LT(distance(), 0.9 * before);
    click(view(), middle);
    press(Qt::Key_Home);
    settle();

    EXPECT_GT(distance(), 0.9 * before);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(camera()->getAt()[i], at[i], 1e-6);
}

TEST_F(MainWindowMouseTest, BeginsThePictureAnewWhileTheCameraIsDragged)
{
    addChair("Chair");
    open();
    view().frameAll();
    settle();
    view().setSampleLimit(100000); // more than there is time for
    const QPoint middle = view().rect().center();
    ASSERT_TRUE(QTest::qWaitFor([&] { return view().samples() >= 4; }, Patience));
    int least = view().samples();
    const auto watch =
        QObject::connect(&view(), &kxViewport::pictureChanged, [&] { least = std::min(least, view().samples()); });

    const QPoint place = view().mapToGlobal(middle);
    input.drag({place, place + QPoint(20, 5), place + QPoint(60, 20)}, Qt::LeftButton, Qt::NoModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return least <= 1; }, Patience));
    EXPECT_TRUE(QTest::qWaitFor([&] { return view().samples() >= 2; }, Patience)) << "and goes on afterwards";

    QObject::disconnect(watch);
    view().setSampleLimit(1);
}

TEST_F(MainWindowMouseTest, PicksAnObjectAndEditsWhatIsShownOfIt)
{
    const osg::NodePtr chair = addChair("Chair");
    open();
    raise("propertyDock");
    auto &tree = widget<QTreeView>("sceneTree");
    clickItem(tree, rowOf(tree, "Chair"));
    ASSERT_TRUE(kxSelectionManager::isSelected(chair));
    auto *field = window->findChild<QWidget *>("Translation");
    ASSERT_NE(field, nullptr);
    auto *number = field->findChild<QWidget *>("number0");

    click(*number, {20, number->height() / 2});
    press(Qt::Key_A, Qt::ControlModifier);
    type("2.5");
    press(Qt::Key_Return);
    const auto place = [&] { return osg::Transform3DPtr::dcast(chair->getCore())->getTranslation()[0]; };
    EXPECT_EQ(place(), 2.5);
    clickFolder(path()); // a number that is being typed has steps of its own
    press(Qt::Key_Z, Qt::ControlModifier);

    EXPECT_EQ(place(), 0.0);
}

TEST_F(MainWindowMouseTest, SwitchesTheEnvironmentByADoubleClick)
{
    const std::string dawn = storeEnvironment("Dawn");
    open();
    clickAsset(dawn);
    press(Qt::Key_Return);
    settle();
    raise("environmentDock");
    auto &list = widget<QListView>("environmentList");
    const auto current = [] { return kxMaterials::getName(kxDefaultEnvironment::getSwitch()->getCurrentMaterial()); };
    ASSERT_EQ(current(), "Dawn");

    doubleClick(*list.viewport(), list.visualRect(list.model()->index(0, 0)).center());

    EXPECT_NE(current(), "Dawn");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(current(), "Dawn");
}

TEST_F(MainWindowMouseTest, HidesAPlateByItsMark)
{
    addPlate("Logo");
    open();
    raise("plateDock");
    auto &tree = widget<QTreeView>("plateTree");
    const QModelIndex row = tree.model()->index(0, 0);
    ASSERT_EQ(row.data(Qt::CheckStateRole).toInt(), Qt::Checked);
    QStyleOptionViewItem option;
    option.initFrom(&tree);
    option.rect = tree.visualRect(row);
    option.features = QStyleOptionViewItem::HasCheckIndicator;
    const QRect mark = tree.style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, &tree);

    click(*tree.viewport(), mark.center());

    EXPECT_EQ(row.data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(row.data(Qt::CheckStateRole).toInt(), Qt::Checked);
}

TEST_F(MainWindowMouseTest, OffersWhatCanBeDoneByTheRightButton)
{
    ASSERT_TRUE(QDir().mkpath(path("Wood")));
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    QAbstractItemView &tiles = window->browser().view();

    openMenu(*tiles.viewport(), tiles.visualRect(window->libraries().assets().indexOf(oak)).center(), [](QMenu &menu) {
        EXPECT_THAT(textsOf(menu), testing::IsSupersetOf({QString("Load into the scene"), QString("Rename"),
                                                          QString("Delete"), QString("Favourite")}));
    });
    openMenu(*window->folders().viewport(), placeOfFolder(path("Wood")), [](QMenu &menu) {
        EXPECT_THAT(textsOf(menu),
                    testing::IsSupersetOf({QString("New folder"), QString("Rename"), QString("Delete")}));
    });
    openMenu(*window->folders().viewport(), placeOfFolder(path()), [this](QMenu &menu) {
        EXPECT_THAT(textsOf(menu), Contains(QString("Close library")));
        EXPECT_THAT(textsOf(menu), testing::Not(Contains(QString("Delete"))));
        clickInMenu(menu, "New folder");
    });
    settle();

    EXPECT_TRUE(QFileInfo(path("New folder")).isDir());
}

TEST_F(MainWindowMouseTest, DeletesNoLibraryByTheKey)
{
    storeMaterial("Oak");
    open();
    clickFolder(path());

    press(Qt::Key_Delete);
    settle();

    EXPECT_TRUE(QFileInfo(path()).isDir());
    EXPECT_THAT(names(), ElementsAre("Oak"));
    EXPECT_FALSE(window->undoStack().canUndo());
}

TEST_F(MainWindowMouseTest, RepeatsTagsAndNamesThatWereTakenBack)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    auto &tag = widget<QLineEdit>("newTag");
    click(tag, tag.rect().center());
    type("wood");
    press(Qt::Key_Return);
    clickAsset(oak);
    press(Qt::Key_F2);
    type("Bog oak");
    press(Qt::Key_Return);
    settle();
    const auto entry = [&] { return window->libraries().assets().find(oak); };
    clickAsset(oak);

    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(entry()->name, "Oak");
    EXPECT_TRUE(entry()->tags.isEmpty());
    pressRedo();
    pressRedo();

    EXPECT_EQ(entry()->name, "Bog oak");
    EXPECT_EQ(entry()->tags, QStringList{"wood"});
}

TEST_F(MainWindowMouseTest, GoesOnWithTheOthersAndListsWhatFailedAtTheEnd)
{
    const std::string oak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    const std::string stool = storeGeometry("Stool");
    const std::string table = storeGeometry("Table");
    open();
    clickAsset(oak);
    for (const std::string &uuid : {ash, stool, table})
        clickAsset(uuid, Qt::ControlModifier);
    ASSERT_TRUE(QDir(directoryOf(ash)).removeRecursively()); // and nobody has looked yet
    ASSERT_TRUE(QDir(directoryOf(stool)).removeRecursively());

    press(Qt::Key_Delete);
    settle();

    EXPECT_EQ(takeReport(), "\"Ash\" could not be moved: it is not there any more.\n\n"
                            "\"Stool\" could not be moved: it is not there any more.");
    EXPECT_THAT(names(), IsEmpty());
    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_THAT(names(), ElementsAre("Oak", "Table"));
}

TEST_F(MainWindowMouseTest, OpensTheSampleLibraryAtTheFirstStartAndShowsAround)
{
    const QString former = QDir::currentPath();
    const QString place = QString::fromStdString(folder.makeFolder("start/sample-library"));
    ASSERT_TRUE(QDir::setCurrent(QFileInfo(place).path()));
    kxModalQuestion::setDialogAnswerer([&](QDialog &dialog) {
        dialog.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&dialog, Patience));
        EXPECT_TRUE(dialog.findChild<QCheckBox *>("tourWanted")->isChecked());
        auto *sample = dialog.findChild<QAbstractButton *>("sample");
        click(*sample, sample->rect().center());
        return dialog.result();
    });

    window->welcome();
    settle();
    QDir::setCurrent(former);

    EXPECT_EQ(window->libraries().folders().libraries(), QStringList{QFileInfo(place).canonicalFilePath()});
    auto *next = window->findChild<QAbstractButton *>("tourNext");
    ASSERT_NE(next, nullptr);
    EXPECT_TRUE(next->isVisible());
    activate();
    clickButton("tourClose");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window->findChild<QAbstractButton *>("tourNext"), nullptr);
}

TEST_F(MainWindowMouseTest, StopsAnImportByTheButtonAndKeepsWhatCameBefore)
{
    open();
    QStringList files;
    for (int i = 0; i < 8; ++i)
        files.append(QString::fromStdString(
            folder.write("box " + std::to_string(i) + ".obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")));
    kxModalQuestion::setDialogAnswerer([](QDialog &) { return QDialog::Accepted; });
    QTimer helper;
    stopWhen(helper, "importProgress", [this] { return !QDir(path()).entryList({"GEO_*"}, QDir::Dirs).isEmpty(); });

    window->importFiles(files, path());
    helper.stop();
    settle();

    EXPECT_GE(names().size(), 1U);
    EXPECT_LT(names().size(), 8U);
    activate();
    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_THAT(names(), IsEmpty()) << "it is one step";
}

TEST_F(MainWindowMouseTest, StopsPreviewsByTheButton)
{
    for (int i = 0; i < 20; ++i)
        storeMaterial("Oak " + std::to_string(i));
    open();
    for (const QFileInfo &directory : QDir(path()).entryInfoList({"MAT_*"}, QDir::Dirs))
        for (const QFileInfo &file : QDir(directory.filePath()).entryInfoList({"*.png"}))
            ASSERT_TRUE(QFile::remove(file.filePath()));
    const auto count = [this] {
        QDirIterator pictures(path(), {"*.png"}, QDir::Files, QDirIterator::Subdirectories);
        int found = 0;
        for (; pictures.hasNext(); pictures.next())
            ++found;
        return found;
    };
    clickAsset(window->libraries().assets().entry(0).uuid);
    press(Qt::Key_A, Qt::ControlModifier);
    ASSERT_EQ(window->browser().selected().size(), 20U);
    QTimer helper;
    stopWhen(helper, "previewProgress", [&] { return count() > 0; });

    press(Qt::Key_P, Qt::ControlModifier);
    helper.stop();
    settle();

    EXPECT_GE(count(), 1);
    EXPECT_LT(count(), 20);
    EXPECT_EQ(reported(), "");
}

} // namespace
