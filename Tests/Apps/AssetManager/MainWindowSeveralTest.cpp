// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SceneView.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/Transform3D.h"
#include "WindowFixture.h"

#include <QListView>
#include <QTreeView>

#include <gtest/gtest.h>

namespace {

/// What is done to one of several selected objects, and so to all of them. Only the chair is seen.
class MainWindowSeveralTest : public WindowFixture
{
protected:
    MainWindowSeveralTest()
    {
        for (const osg::NodePtr &object : {table, room}) {
            const auto transform = osg::Transform3DPtr::dcast(object->getCore());
            const osg::CPEditor edit(transform, osg::Transform3D::TranslationFieldMask);
            transform->setTranslation({1000.0, 0.0, 0.0});
        }
    }

    QTreeView &sceneTree() { return widget<QTreeView>("sceneTree"); }
    QTreeView &plateTree() { return widget<QTreeView>("plateTree"); }
    void choose(QAbstractItemView &view, const std::vector<QString> &rows)
    {
        for (const QString &row : rows)
            clickItem(view, rowOf(view, row), row == rows.front() ? Qt::NoModifier : Qt::ControlModifier);
    }
    /// Where the chair is in the picture.
    QPoint showChair()
    {
        choose(sceneTree(), {"Chair"});
        press(Qt::Key_F);
        settle();
        const QPoint middle = view().rect().center();
        for (int y = -40; y <= 40; y += 8)
            if (const QPoint place = middle + QPoint(0, y); view().nodeAt(place))
                return place;
        ADD_FAILURE() << "the chair is not seen";
        return middle;
    }
    std::string materialOfSeat(const osg::NodePtr &object)
    {
        const osg::NodePtr seat = object->getChild(0);
        return materialOf(seat) ? materialNameOf(seat) : std::string("none");
    }
    std::vector<std::string> materialsOf(const std::vector<osg::NodePtr> &objects)
    {
        std::vector<std::string> names;
        names.reserve(objects.size());
        for (const osg::NodePtr &object : objects)
            names.push_back(materialOfSeat(object));
        return names;
    }
    using Names = std::vector<std::string>;

    const osg::NodePtr chair = addChair("Chair");
    const osg::NodePtr table = addChair("Table");
    const osg::NodePtr room = addChair("Room");
};

TEST_F(MainWindowSeveralTest, TakeTheMaterialThatIsDroppedOnOneOfThemInThePicture)
{
    const std::string oak = storeMaterial("Oak");
    open();
    const QPoint place = showChair();
    choose(sceneTree(), {"Chair", "Table"});

    dragAssets({oak}, view(), place);
    EXPECT_EQ(materialsOf({chair, table, room}), (Names{"Oak", "Oak", "none"}));
    undo();
    EXPECT_EQ(materialsOf({chair, table, room}), (Names{"none", "none", "none"}));
    choose(sceneTree(), {"Table", "Room"});
    dragAssets({oak}, view(), place);

    EXPECT_EQ(materialsOf({chair, table, room}), (Names{"Oak", "none", "none"}));
}

TEST_F(MainWindowSeveralTest, TakeTheMaterialOfTheSceneThatIsDroppedOnOneOfThemInThePicture)
{
    const std::string oak = storeMaterial("Oak");
    open();
    const QPoint place = showChair();
    kxSelectionManager::clear();
    clickAsset(oak);
    press(Qt::Key_Return, Qt::ControlModifier);
    settle();
    raise("materialDock");
    choose(sceneTree(), {"Chair", "Table"});
    auto &list = widget<QListView>("materialList");

    dragItem(list, rowOf(list, "Oak"), view(), place);

    EXPECT_EQ(materialsOf({chair, table, room}), (Names{"Oak", "Oak", "none"}));
}

TEST_F(MainWindowSeveralTest, TakeTheMaterialThatIsDroppedOnOneOfThemInTheTree)
{
    const std::string oak = storeMaterial("Oak");
    open();
    choose(sceneTree(), {"Chair", "Table"});
    const auto placeOf = [this](const char *name) { return sceneTree().visualRect(rowOf(sceneTree(), name)).center(); };

    dragAssets({oak}, *sceneTree().viewport(), placeOf("Table"));
    EXPECT_EQ(materialsOf({chair, table, room}), (Names{"Oak", "Oak", "none"}));
    undo();
    dragAssets({oak}, *sceneTree().viewport(), placeOf("Room"));
    EXPECT_EQ(materialsOf({chair, table, room}), (Names{"none", "none", "Oak"}));
    raise("materialDock");
    auto &list = widget<QListView>("materialList");
    dragItem(list, rowOf(list, "Oak"), *sceneTree().viewport(), placeOf("Chair"));

    EXPECT_EQ(materialsOf({chair, table, room}), (Names{"Oak", "Oak", "Oak"}));
}

TEST_F(MainWindowSeveralTest, AreHiddenWithOneOfThem)
{
    const osg::SceneplatePtr logo = osg::SceneplatePtr::dcast(addPlate("Logo")->getCore());
    const osg::SceneplatePtr frame = osg::SceneplatePtr::dcast(addPlate("Frame")->getCore());
    const osg::SceneplatePtr sky = osg::SceneplatePtr::dcast(addPlate("Sky")->getCore());
    open();
    raise("plateDock");
    choose(plateTree(), {"Logo", "Frame"});

    press(Qt::Key_Space);
    EXPECT_FALSE(logo->getIsVisible());
    EXPECT_FALSE(frame->getIsVisible());
    EXPECT_TRUE(sky->getIsVisible());
    undo();

    EXPECT_TRUE(logo->getIsVisible());
    EXPECT_TRUE(frame->getIsVisible());
}

} // namespace
