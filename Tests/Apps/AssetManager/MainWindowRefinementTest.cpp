// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/SceneView.h"
#include "Kernel/kxScenegraph.h"
#include "Rendering/kxProgressiveRendering.h"
#include "SceneGraph/Transform3D.h"
#include "WindowFixture.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QTest>
#include <QTreeView>

#include <gtest/gtest.h>

namespace {

/// The picture of a scene that would get better all the time.
class MainWindowRefinementTest : public WindowFixture
{
protected:
    MainWindowRefinementTest()
    {
        stool = storeGeometry("Stool");
        open();
        view().frameAll();
        settle();
        view().setSampleLimit(1 << 20); // more than there is time for
        waitForRefinement();
    }
    ~MainWindowRefinementTest() override { view().setSampleLimit(1); }

    void waitForRefinement()
    {
        const int before = view().samples();
        EXPECT_TRUE(QTest::qWaitFor([&] { return view().samples() >= before + 2; }, Patience)) << "it stands still";
    }
    /// As long as it takes another picture to get better that often.
    void waitAWhile(int times)
    {
        kxProgressiveRendering other;
        int better = 0;
        QObject::connect(&other, &kxProgressiveRendering::pictureReady,
                         [&](const QImage &, int samples) { better += samples > 0 ? 1 : 0; });
        other.setScene({root()}, true);
        other.start(camera(), view().size(), 1 << 20);
        EXPECT_TRUE(QTest::qWaitFor([&] { return better >= times; }, Patience));
    }
    /// But for one picture that was being rendered, and one that was waiting to be shown.
    void expectStandstill()
    {
        int better = 0;
        const auto watch =
            QObject::connect(&view(), &kxViewport::pictureChanged, [&] { better += view().samples() > 1 ? 1 : 0; });
        waitAWhile(5);
        QObject::disconnect(watch);
        EXPECT_LE(better, 2);
    }

    const osg::NodePtr chair = addChair("Chair");
    std::string stool;
};

TEST_F(MainWindowRefinementTest, StandsStillWhileANumberIsStepped)
{
    raise("propertyDock");
    auto &tree = widget<QTreeView>("sceneTree");
    clickItem(tree, rowOf(tree, "Chair"));
    auto *number = widget<QWidget>("Translation").findChild<QWidget *>("number0");
    click(*number, {20, number->height() / 2});
    const auto place = [&] { return osg::Transform3DPtr::dcast(chair->getCore())->getTranslation()[0]; };

    input.holdKey(Qt::Key_Up);
    EXPECT_GT(place(), 0.0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return view().samples() <= 1; }, Patience)) << "it shows each step";
    expectStandstill();
    input.letGoKey(Qt::Key_Up);

    waitForRefinement();
}

TEST_F(MainWindowRefinementTest, StandsStillWhileAnObjectIsDraggedOverIt)
{
    QAbstractItemView &tiles = window->browser().view();
    const QModelIndex tile = window->libraries().assets().indexOf(stool);
    const QPoint begin = tiles.viewport()->mapToGlobal(tiles.visualRect(tile).center());
    const QPoint away = begin + QPoint(QApplication::startDragDistance() + 2, 2);
    const QPoint over = view().mapToGlobal(view().rect().center());

    input.dragAndDo({begin, away, over}, [this] { expectStandstill(); });
    EXPECT_EQ(childNames(root()).back(), "Stool");
    waitForRefinement();
    input.drag({begin, away, over, away}, Qt::LeftButton, Qt::NoModifier); // without a drop there

    waitForRefinement();
}

} // namespace
