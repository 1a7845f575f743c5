// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/PropertyPanel.h"

#include "AssetManager/ColorButton.h"
#include "AssetManager/FieldNumbers.h"
#include "AssetManager/NumberBox.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneFixture.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/Light.h"
#include "SceneGraph/Transform.h"
#include "SceneGraph/Transform3D.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <gmock/gmock.h>

using osg::FieldValue;

namespace {

using testing::DoubleNear;
using testing::ElementsAre;

class PropertyPanelTest : public SceneFixture
{
protected:
    PropertyPanelTest()
    {
        panel.resize(360, 700);
        panel.show();
    }
    static osg::Transform3DPtr place(const osg::NodePtr &node) { return osg::Transform3DPtr::dcast(node->getCore()); }
    static void select(const std::vector<osg::NodePtr> &nodes)
    {
        kxSelectionManager::clear();
        kxSelectionManager::selectNodes(nodes);
        process();
    }
    NumberBox *number(const char *field, int place = 0) const
    {
        auto *editor = panel.findChild<QWidget *>(field);
        return editor ? editor->findChild<NumberBox *>("number" + QString::number(place)) : nullptr;
    }
    static void type(QWidget *editor, const QString &text)
    {
        editor->setFocus();
        QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(editor, text);
        QTest::keyClick(editor, Qt::Key_Return);
        process();
    }
    QString label(const char *name) const { return panel.findChild<QLabel *>(name)->text(); }

    PropertyPanel panel{actions};
};

TEST_F(PropertyPanelTest, SaysWhatToDoWithoutASelection)
{
    EXPECT_TRUE(panel.findChild<QLabel *>("emptyHint")->isVisible());

    select({addChair("Chair")});

    EXPECT_FALSE(panel.findChild<QLabel *>("emptyHint")->isVisible());
    EXPECT_EQ(panel.findChild<QLineEdit *>("name")->text(), "Chair");
    EXPECT_EQ(label("type"), "Transform");
    EXPECT_EQ(label("asset"), "none");
}

TEST_F(PropertyPanelTest, EditsOneNumberOfSeveralObjectsThatDiffer)
{
    const osg::NodePtr a = addChair("A");
    const osg::NodePtr b = addChair("B");
    actions.setField({a->getCore().getFieldContainerId()}, "Translation", osg::Vec3d{{1, 2, 3}}, "Move");
    select({a, b});
    ASSERT_TRUE(number("Translation", 1));
    EXPECT_EQ(number("Translation", 1)->text(), "several");
    EXPECT_EQ(number("Scale", 1)->text(), "1");

    type(number("Translation", 1), "7.5");

    EXPECT_EQ(place(a)->getTranslation(), (osg::Vec3d{{1, 7.5, 3}}));
    EXPECT_EQ(place(b)->getTranslation(), (osg::Vec3d{{0, 7.5, 0}}));
    EXPECT_EQ(stack.undoText(), "Change Translation");
    stack.undo();
    process();
    EXPECT_EQ(place(b)->getTranslation(), (osg::Vec3d{{0, 0, 0}}));
    EXPECT_EQ(number("Translation", 1)->text(), "several");
}

TEST_F(PropertyPanelTest, TakesTheNumberThatTheFirstOfThemHasAlready)
{
    const osg::NodePtr a = addChair("A");
    const osg::NodePtr b = addChair("B");
    actions.setField({a->getCore().getFieldContainerId()}, "Translation", osg::Vec3d{{5, 0, 0}}, "Move");
    select({a, b});

    type(number("Translation", 0), "5");

    EXPECT_EQ(place(b)->getTranslation()[0], 5.0);
}

TEST_F(PropertyPanelTest, MakesOneStepOfTheStepsOfOneVisit)
{
    const osg::NodePtr chair = addChair("Chair");
    select({chair});
    NumberBox *box = number("Translation", 0);
    box->setFocus();

    QTest::keyClick(box, Qt::Key_Up);
    QTest::keyClick(box, Qt::Key_Up);

    EXPECT_GT(place(chair)->getTranslation()[0], 0.0);
    EXPECT_EQ(stack.count(), 1);
    stack.undo();
    EXPECT_EQ(place(chair)->getTranslation()[0], 0.0);
}

TEST_F(PropertyPanelTest, ShowsRotationsAsAngles)
{
    const osg::NodePtr chair = addChair("Chair");
    select({chair});

    type(number("RotationAsQuaternion", 1), "90");
    type(number("RotationAsQuaternion", 0), "0");

    const osg::Quaternion q = place(chair)->getRotationAsQuaternion();
    EXPECT_NEAR(q.y, 0.70710678, 1e-7);
    EXPECT_NEAR(q.w, 0.70710678, 1e-7);
}

TEST_F(PropertyPanelTest, EditsTheMaterialOfTheSelection)
{
    const osg::NodePtr chair = addChair("Chair");
    actions.assignMaterial(storeMaterial("Red"), {chair});
    select({chair});
    const auto red = osg::UBRDFMaterialPtr::dcast(materialOf(chair->getChild(0)));
    EXPECT_EQ(label("materialAsset"), "Same as the asset \"Red\" in the library");

    type(number("Roughness"), "0.25");
    QTest::mouseClick(panel.findChild<QWidget *>("IsTwoSided")->findChild<QCheckBox *>(), Qt::LeftButton, {}, {8, 8});
    process();

    EXPECT_EQ(red->getRoughness(), 0.25F);
    EXPECT_FALSE(red->getIsTwoSided());
    EXPECT_EQ(label("materialAsset"), "Changed here; the asset \"Red\" in the library is different");
}

TEST_F(PropertyPanelTest, AsksForColoursAsTheyAreSeen)
{
    const osg::FCRef<osg::Material> paint(osg::UBRDFMaterial::create());
    panel.showMaterials({paint.get().getFieldContainerId()});
    process();
    const auto before = kxModalQuestion::setDialogAnswerer([](QDialog &dialog) {
        dynamic_cast<QColorDialog &>(dialog).setCurrentColor(QColor(255, 128, 0));
        return static_cast<int>(QDialog::Accepted);
    });

    panel.findChild<QWidget *>("DiffuseColor")->findChild<ColorButton *>()->click();

    kxModalQuestion::setDialogAnswerer(before);
    const osg::Vec4f color = osg::UBRDFMaterialPtr::dcast(paint.get())->getDiffuseColor();
    EXPECT_EQ(color[0], 1.0F);
    EXPECT_NEAR(color[1], 0.2158605F, 1e-5F) << "linear light";
    EXPECT_EQ(color[3], 1.0F) << "the opacity is another matter";
}

TEST_F(PropertyPanelTest, OffersTheKindsOfALightByName)
{
    const osg::NodePtr lamp = add(osg::Light::create(), root(), "Lamp");
    select({lamp});
    auto *kinds = panel.findChild<QWidget *>("Kind")->findChild<QComboBox *>();
    ASSERT_TRUE(kinds);
    EXPECT_EQ(kinds->currentText(), "Point");

    QTest::keyClick(kinds, Qt::Key_Down);
    process();

    EXPECT_EQ(osg::LightPtr::dcast(lamp->getCore())->getKind(), 1U);
}

TEST_F(PropertyPanelTest, RenamesTheObject)
{
    const osg::NodePtr chair = addChair("Chair");
    select({chair});

    type(panel.findChild<QLineEdit *>("name"), "Stuhl");

    EXPECT_EQ(kxNodeUtils::getName(chair), "Stuhl");
    stack.undo();
    process();
    EXPECT_EQ(panel.findChild<QLineEdit *>("name")->text(), "Chair");
}

TEST_F(PropertyPanelTest, StandsTheLossOfWhatItShows)
{
    const osg::NodePtr chair = addChair("Chair");
    actions.assignMaterial(storeMaterial("Red"), {chair});
    select({chair});
    {
        const osg::NodePtr parent = root();
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->subChild(chair);
    }
    stack.clear();
    process();
    EXPECT_TRUE(panel.findChild<QLabel *>("emptyHint")->isVisible());

    select({addChair("Other")});
    kxScenegraph::newDocument();
    process();

    EXPECT_TRUE(panel.findChild<QLabel *>("emptyHint")->isVisible());
}

TEST(FieldNumbersTest, TakesAPlacementApartAndPutsItTogether)
{
    const FieldValue before(osg::composeMatrix({{1, 2, 3}}, {}, {{1, 1, 2}}));

    const FieldValue after = FieldNumbers::with(before, 3, 30.0, false);

    EXPECT_THAT(FieldNumbers::of(after, false),
                ElementsAre(DoubleNear(1, 1e-9), DoubleNear(2, 1e-9), DoubleNear(3, 1e-9), DoubleNear(30, 1e-9),
                            DoubleNear(0, 1e-9), DoubleNear(0, 1e-9), DoubleNear(1, 1e-9), DoubleNear(1, 1e-9),
                            DoubleNear(2, 1e-9)));
}

TEST(FieldNumbersTest, ShowsAnglesInDegreesAndKeepsWholeNumbersInRange)
{
    EXPECT_NEAR(FieldNumbers::of(FieldValue(3.14159265F), true)[0], 180.0, 1e-5);
    EXPECT_EQ(*FieldNumbers::with(FieldValue(std::uint32_t{5}), 0, -3.0, false).get<std::uint32_t>(), 0U);
    EXPECT_TRUE(FieldNumbers::of(FieldValue(std::string("x")), false).empty());
    EXPECT_TRUE(FieldNumbers::of(FieldValue(true), false).empty());
}

} // namespace
