// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/PreviewCache.h"
#include "AssetManager/SceneView.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QDir>
#include <QDrag>
#include <QDragMoveEvent>
#include <QImage>
#include <QListView>
#include <QTest>
#include <QTreeView>

#include <gmock/gmock.h>

namespace {

using testing::Gt;

/// Takes the picture that a view has under the pointer while something is dragged out of it.
class PictureWatch final : public QObject
{
public:
    explicit PictureWatch(const QObject &view) : _view(view) { qApp->installEventFilter(this); }

    const QImage &picture() const { return _picture; }

private:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::DragMove || event->type() == QEvent::DragEnter)
            if (const auto *drag = _view.findChild<QDrag *>())
                _picture = drag->pixmap().toImage();
        return QObject::eventFilter(watched, event);
    }

    const QObject &_view;
    QImage _picture;
};

/// What is seen under the pointer while something is dragged.
class MainWindowDragPictureTest : public WindowFixture
{
protected:
    QImage pictureOf(QAbstractItemView &from, const QModelIndex &index)
    {
        const PictureWatch watch(from);
        const QPoint begin = from.viewport()->mapToGlobal(from.visualRect(index).center());
        const QPoint end = view().mapToGlobal(view().rect().center());
        input.dragAndEscape({begin, begin + QPoint(12, 2), (begin + end) / 2, end - QPoint(1, 1), end});
        process();
        EXPECT_FALSE(watch.picture().isNull());
        return watch.picture();
    }
    /// Rows that are seen already, each of which is clicked.
    QImage pictureOf(QAbstractItemView &from, const QModelIndexList &indexes)
    {
        for (const QModelIndex &index : indexes)
            clickItem(from, index, index == indexes.first() ? Qt::NoModifier : Qt::ControlModifier);
        return pictureOf(from, indexes.last());
    }
    QImage pictureOf(const std::vector<std::string> &uuids)
    {
        QModelIndexList indexes;
        for (const std::string &uuid : uuids)
            indexes.append(window->libraries().assets().indexOf(uuid));
        return pictureOf(window->browser().view(), indexes);
    }
    QTreeView &sceneTree() const { return widget<QTreeView>("sceneTree"); }
    static int count(const QImage &picture, const QColor &color)
    {
        int found = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                found += picture.pixelColor(x, y).rgb() == color.rgb() ? 1 : 0;
        return found;
    }
    /// Of the sign that says how many they are.
    static int badge(const QImage &picture)
    {
        return count(picture, QApplication::palette().color(QPalette::Highlight));
    }
    /// Whether both have such a sign, and it says something else.
    static bool saysAnotherCount(const QImage &one, const QImage &other)
    {
        const QSize size(26, 20);
        const auto sign = [&](const QImage &picture) {
            return picture.copy(QRect(QPoint(picture.width() - size.width(), picture.height() - size.height()), size));
        };
        return badge(one) > 50 && badge(other) > 50 && sign(one) != sign(other);
    }
    std::string storeRed(const std::string &name)
    {
        std::string uuid = storeMaterial(name);
        const QDir directory(path("MAT_" + QString::fromStdString(name)));
        QImage red(64, 64, QImage::Format_RGB32);
        red.fill(Qt::red);
        EXPECT_TRUE(red.save(directory.filePath(directory.entryList({"*.png"}, QDir::Files).value(0))));
        return uuid;
    }
    /// As a picture through which a little of the ground is seen.
    static int reddish(const QImage &picture)
    {
        int found = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                if (const QColor color = picture.pixelColor(x, y); color.red() > 200 && color.green() < 60)
                    ++found;
        return found;
    }
    static constexpr int Some = 50; ///< pixels
};

TEST_F(MainWindowDragPictureTest, ShowsThePreviewsOfDraggedAssetsAndHowManyTheyAre)
{
    const std::vector<std::string> all{storeRed("Ash"), storeRed("Elm"), storeRed("Fir"), storeRed("Oak")};
    open();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window->libraries().previews().find(id(all[3])).isNull(); }, Patience));

    const QImage one = pictureOf({all[0]});
    const QImage three = pictureOf({all[0], all[1], all[2]});
    const QImage four = pictureOf(all);

    EXPECT_THAT(reddish(one), Gt(2000));
    EXPECT_EQ(badge(one), 0);
    EXPECT_THAT(reddish(three), Gt(reddish(one)));
    EXPECT_TRUE(saysAnotherCount(three, four));
}

TEST_F(MainWindowDragPictureTest, ShowsTheSameForRowsOfTheList)
{
    const std::string oak = storeRed("Oak");
    open();
    press(Qt::Key_2, Qt::ControlModifier);
    settle();

    EXPECT_THAT(reddish(pictureOf({oak})), Gt(2000));
}

TEST_F(MainWindowDragPictureTest, ShowsHowManyObjectsAreDragged)
{
    addChair("Chair");
    addChair("Stool");
    addChair("Table");
    open();
    const QModelIndex chair = rowOf(sceneTree(), "Chair");
    const QModelIndex stool = rowOf(sceneTree(), "Stool");
    const QModelIndex table = rowOf(sceneTree(), "Table");

    const QImage one = pictureOf(sceneTree(), {chair});
    const QImage two = pictureOf(sceneTree(), {chair, stool});
    const QImage three = pictureOf(sceneTree(), {chair, stool, table});

    EXPECT_THAT(count(one, QApplication::palette().color(QPalette::Text)), Gt(0)); // its name
    EXPECT_EQ(badge(one), 0);
    EXPECT_TRUE(saysAnotherCount(two, three));
}

TEST_F(MainWindowDragPictureTest, ShowsThePicturesOfDraggedMaterialsOfTheScene)
{
    const std::string oak = storeRed("Oak");
    const std::string ash = storeRed("Ash");
    open();
    clickAsset(oak);
    clickAsset(ash, Qt::ControlModifier);
    press(Qt::Key_Return, Qt::ControlModifier);
    settle();
    auto &list = widget<QListView>("materialList");
    ASSERT_EQ(list.model()->rowCount(), 2);
    raise("materialDock");
    settle();

    const QImage one = pictureOf(list, {list.model()->index(0, 0)});
    const QImage two = pictureOf(list, {list.model()->index(0, 0), list.model()->index(1, 0)});

    EXPECT_GE(one.width(), 72);
    EXPECT_EQ(badge(one), 0);
    EXPECT_THAT(badge(two), Gt(Some));
}

TEST_F(MainWindowDragPictureTest, ShowsTheNameOfADraggedFolder)
{
    ASSERT_TRUE(QDir().mkpath(path("Wood")));
    ASSERT_TRUE(QDir().mkpath(path("A folder with a longer name")));
    storeMaterial("Oak");
    open();
    const FolderModel &folders = window->libraries().folders();

    const QImage small = pictureOf(window->folders(), {folders.indexOf(path("Wood"))});
    const QImage large = pictureOf(window->folders(), {folders.indexOf(path("A folder with a longer name"))});

    EXPECT_THAT(count(small, QApplication::palette().color(QPalette::Text)), Gt(0));
    EXPECT_LT(small.width() + Some, large.width());
    EXPECT_EQ(badge(small), 0);
}

} // namespace
