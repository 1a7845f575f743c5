// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ColorButton.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxNodeUtils.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/Light.h"
#include "SceneGraph/Transform3D.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "WindowFixture.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QListView>
#include <QScrollArea>
#include <QTest>
#include <QTreeView>

#include <gtest/gtest.h>

namespace {

/// What a person enters in the properties of objects and materials.
class MainWindowPropertyTest : public WindowFixture
{
protected:
    /// Shows the properties of these objects.
    void choose(const std::vector<QString> &objects)
    {
        raise("propertyDock");
        auto &tree = widget<QTreeView>("sceneTree");
        for (const QString &object : objects)
            clickItem(tree, rowOf(tree, object), object == objects.front() ? Qt::NoModifier : Qt::ControlModifier);
    }
    /// Shows the properties of a stored material that is brought into the scene.
    osg::UBRDFMaterialPtr chooseMaterial()
    {
        const osg::NodePtr seat = addChair("Chair")->getChild(0);
        const std::string oak = storeMaterial("Oak");
        open();
        choose({"Chair"});
        clickAsset(oak);
        press(Qt::Key_Return, Qt::ControlModifier);
        settle();
        raise("materialDock");
        auto &list = widget<QListView>("materialList");
        clickItem(list, rowOf(list, "Oak"));
        return osg::UBRDFMaterialPtr::dcast(materialOf(seat));
    }
    QWidget *editor(const char *field) const { return widget<QWidget>("propertyPanel").findChild<QWidget *>(field); }
    /// What edits a part of the field, where it is seen.
    template <class Widget> Widget &part(const char *field, const QString &name)
    {
        auto *found = editor(field) ? editor(field)->findChild<Widget *>(name) : nullptr;
        EXPECT_NE(found, nullptr) << field;
        for (QWidget *parent = found; parent; parent = parent->parentWidget())
            if (auto *scroll = qobject_cast<QScrollArea *>(parent))
                scroll->ensureWidgetVisible(found);
        process();
        return *found;
    }
    void enter(QWidget &line, const QString &text)
    {
        click(line, {10, line.height() / 2});
        press(Qt::Key_A, Qt::ControlModifier);
        type(text);
        press(Qt::Key_Return);
    }
    static osg::Vec3d placeOf(const osg::NodePtr &node)
    {
        return osg::Transform3DPtr::dcast(node->getCore())->getTranslation();
    }
    /// Where the focus is, which is in the box that was changed.
    void undo() { press(Qt::Key_Z, Qt::ControlModifier); }
};

TEST_F(MainWindowPropertyTest, RenamesTheObject)
{
    const osg::NodePtr chair = addChair("Chair");
    open();
    choose({"Chair"});

    enter(*editor("name"), "Stool");
    EXPECT_EQ(kxNodeUtils::getName(chair), "Stool");
    undo();

    EXPECT_EQ(kxNodeUtils::getName(chair), "Chair");
}

TEST_F(MainWindowPropertyTest, MovesSeveralObjectsByOneNumber)
{
    const osg::NodePtr chair = addChair("Chair");
    const osg::NodePtr table = addChair("Table");
    open();
    choose({"Chair", "Table"});

    enter(part<QWidget>("Translation", "number1"), "-1.5");
    EXPECT_EQ(placeOf(chair), (osg::Vec3d{{0, -1.5, 0}}));
    EXPECT_EQ(placeOf(table), (osg::Vec3d{{0, -1.5, 0}}));
    undo();

    EXPECT_EQ(placeOf(chair), osg::Vec3d());
    EXPECT_EQ(placeOf(table), osg::Vec3d());
}

TEST_F(MainWindowPropertyTest, ChangesANumberByArrowsAndWheelInOneStep)
{
    const osg::NodePtr chair = addChair("Chair");
    open();
    choose({"Chair"});
    auto &number = part<QWidget>("Translation", "number0");
    const QPoint place = number.mapToGlobal({10, number.height() / 2});

    input.turnWheel(place, 1, Qt::NoModifier);
    EXPECT_EQ(placeOf(chair), osg::Vec3d()) << "whoever scrolls past it changes nothing";
    click(number, {10, number.height() / 2});
    press(Qt::Key_Up);
    const double byKey = placeOf(chair)[0];
    EXPECT_GT(byKey, 0.0);
    input.turnWheel(place, 1, Qt::NoModifier);
    EXPECT_GT(placeOf(chair)[0], byKey);
    undo();

    EXPECT_EQ(placeOf(chair), osg::Vec3d());
}

TEST_F(MainWindowPropertyTest, EditsAMaterialByTypingAndByItsMark)
{
    const osg::UBRDFMaterialPtr oak = chooseMaterial();
    ASSERT_TRUE(oak);
    ASSERT_TRUE(oak->getIsTwoSided());

    enter(part<QWidget>("Roughness", "number0"), "0.25");
    EXPECT_EQ(oak->getRoughness(), 0.25F);
    auto &mark = part<QCheckBox>("IsTwoSided", "flag");
    click(mark, {8, mark.height() / 2});
    EXPECT_FALSE(oak->getIsTwoSided());
    press(Qt::Key_Space);
    EXPECT_TRUE(oak->getIsTwoSided());
    undo();
    EXPECT_FALSE(oak->getIsTwoSided());
}

TEST_F(MainWindowPropertyTest, TakesTheColourThatIsTypedIntoTheDialog)
{
    const osg::UBRDFMaterialPtr oak = chooseMaterial();
    ASSERT_TRUE(oak);
    kxModalQuestion::setDialogAnswerer([this](QDialog &dialog) {
        showForInput(dialog);
        for (QLineEdit *line : dialog.findChildren<QLineEdit *>())
            if (line->isVisible() && line->text().startsWith('#'))
                enter(*line, "#ff8000");
        return dialog.result();
    });

    auto &button = part<ColorButton>("DiffuseColor", "color");
    click(button, button.rect().center());

    const osg::Vec4f color = oak->getDiffuseColor();
    EXPECT_EQ(color[0], 1.0F);
    EXPECT_NEAR(color[1], 0.2158605F, 1e-5F);
    EXPECT_EQ(color[2], 0.0F);
}

TEST_F(MainWindowPropertyTest, ChoosesTheKindOfALight)
{
    const osg::NodePtr lamp = add(osg::Light::create(), root(), "Lamp");
    open();
    choose({"Lamp"});
    const auto kind = [&] { return osg::LightPtr::dcast(lamp->getCore())->getKind(); };
    ASSERT_EQ(kind(), 0U);

    auto &choice = part<QComboBox>("Kind", "choice");
    input.hold(choice.mapToGlobal(choice.rect().center()));
    QAbstractItemView &list = *choice.view();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(list.window(), Patience));
    input.moveTo(list.viewport()->mapToGlobal(list.visualRect(list.model()->index(1, 0)).center()));
    input.letGo();
    process();
    EXPECT_EQ(kind(), 1U);
    undo();

    EXPECT_EQ(kind(), 0U);
}

} // namespace
