// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxViewport.h"

#include "Kernel/kxController.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSelectionManager.h"
#include "Rendering/QImageConverter.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/CameraCore.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/OverrideMaterialAttachment.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/Transform3D.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "Support/SceneTest.h"

#include <QApplication>
#include <QSignalSpy>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <vector>

namespace {

constexpr int Patience = 60000; // milliseconds, on a machine that is busy with other things

/// A red wall of two by two that faces the camera in the middle of what it sees.
class kxViewportTest : public kxtest::SceneTest
{
protected:
    kxViewportTest() : material(osg::UBRDFMaterial::create())
    {
        wall = addNode(wallCore(material.get()), "Wall");
        setColor(material.get(), 0.8F, 0.0F, 0.0F);
    }
    ~kxViewportTest() override
    {
        kxController::enableRenderUpdate(true);
        kxScenegraph::enableUpdate(true);
    }

    static osg::GeometryPtr wallCore(const osg::MaterialPtr &material)
    {
        const osg::GeometryPtr core = osg::Geometry::create();
        const osg::CPEditor edit(core, osg::AllFieldMask);
        core->editPositions() = {osg::Vec3f{-1.0F, -1.0F, 0.0F}, osg::Vec3f{1.0F, -1.0F, 0.0F},
                                 osg::Vec3f{1.0F, 1.0F, 0.0F}, osg::Vec3f{-1.0F, 1.0F, 0.0F}};
        core->editIndices() = {0U, 1U, 2U, 0U, 2U, 3U};
        core->setMaterial(material);
        return core;
    }

    static void setColor(const osg::MaterialPtr &painted, float red, float green, float blue)
    {
        const auto ubrdf = osg::UBRDFMaterialPtr::dcast(painted);
        const osg::CPEditor edit(ubrdf, osg::AllFieldMask);
        ubrdf->setDiffuseColor({red, green, blue, 1.0F});
        ubrdf->setSpecularColor({0.0F, 0.0F, 0.0F, 1.0F});
        ubrdf->setRoughness(1.0F);
    }

    static void addPlate(bool isFront, const QColor &color, const osg::Vec2f &size)
    {
        QImage picture(4, 4, QImage::Format_ARGB32);
        picture.fill(color);
        const osg::ImagePtr image = osg::Image::create();
        QImageConverter::convertToOSGImage(picture, image);
        const osg::SceneplatePtr plate = osg::Sceneplate::create();
        {
            const osg::CPEditor edit(plate, osg::AllFieldMask);
            plate->setIsFront(isFront);
            plate->setImage(image);
            plate->setSize(size);
        }
        addNodeBelow(kxScenegraph::getSceneplateRoot(), plate);
    }

    static osg::UberCameraPtr camera()
    {
        return osg::CameraCorePtr::dcast(kxScenegraph::getCameraNode()->getCore())->getCamera();
    }

    static double distance()
    {
        const osg::Vec3d from = camera()->getFrom();
        const osg::Vec3d at = camera()->getAt();
        return std::hypot(from[0] - at[0], from[1] - at[1], from[2] - at[2]);
    }

    /// Shows the view and waits until nothing better is to come.
    static void show(kxViewport &view, int samples = 4)
    {
        view.resize(120, 80);
        view.setSampleLimit(samples);
        QSignalSpy refined(&view, &kxViewport::refined);
        view.show();
        ASSERT_TRUE(refined.wait(Patience));
    }

    /// Waits until the view refined what \a change did.
    static void refineAfter(kxViewport &view, const std::function<void()> &change)
    {
        QSignalSpy refined(&view, &kxViewport::refined);
        change();
        ASSERT_TRUE(refined.wait(Patience));
    }

    /// Everything that is to happen on the next passes of the event loop.
    static void drain()
    {
        for (int i = 0; i < 5; ++i) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }

    static void send(kxViewport &view, QEvent::Type type, const QPoint &place, Qt::MouseButton button,
                     Qt::KeyboardModifiers modifiers = {})
    {
        const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : button;
        const Qt::MouseButton changed = type == QEvent::MouseMove ? Qt::NoButton : button;
        QMouseEvent event(type, place, changed, held, modifiers);
        QApplication::sendEvent(&view, &event);
    }

    static void drag(kxViewport &view, const QPoint &way, Qt::MouseButton button, Qt::KeyboardModifiers modifiers = {})
    {
        const QPoint begin = view.rect().center();
        send(view, QEvent::MouseButtonPress, begin, button, modifiers);
        send(view, QEvent::MouseMove, begin + way / 2, button, modifiers);
        send(view, QEvent::MouseMove, begin + way, button, modifiers);
        send(view, QEvent::MouseButtonRelease, begin + way, button, modifiers);
    }

    static void click(kxViewport &view, const QPoint &place, Qt::KeyboardModifiers modifiers = {})
    {
        send(view, QEvent::MouseButtonPress, place, Qt::LeftButton, modifiers);
        send(view, QEvent::MouseButtonRelease, place, Qt::LeftButton, modifiers);
    }

    static bool press(kxViewport &view, int key, Qt::KeyboardModifiers modifiers = {})
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        QApplication::sendEvent(&view, &event);
        return event.isAccepted();
    }

    static void turnWheel(kxViewport &view, int eighths)
    {
        QWheelEvent event(QPointF(5.0, 5.0), view.mapToGlobal(QPoint(5, 5)), QPoint(), QPoint(0, eighths), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&view, &event);
    }

    static QColor middle(const kxViewport &view)
    {
        const QImage picture = view.picture();
        return picture.pixelColor(picture.rect().center());
    }

    osg::FCRef<osg::Material> material;
    osg::NodePtr wall;
};

TEST_F(kxViewportTest, ShowsTheSceneInTheSizeOfTheWidget)
{
    kxViewport view;

    show(view);

    EXPECT_EQ(view.picture().size(), QSize(120, 80));
    EXPECT_GT(middle(view).red(), 2 * middle(view).green());
    const QColor corner = view.picture().pixelColor(1, 1);
    EXPECT_EQ(corner.alpha(), 255) << "the sky is drawn";
    EXPECT_GE(corner.blue(), corner.red());
}

TEST_F(kxViewportTest, BeginsWithACoarsePictureAndEndsAtTheLimit)
{
    kxViewport view;
    std::vector<int> samples;
    QObject::connect(&view, &kxViewport::pictureChanged, [&] { samples.push_back(view.samples()); });

    show(view, 9);

    ASSERT_GE(samples.size(), 1U);
    EXPECT_EQ(samples.back(), 9);
    EXPECT_TRUE(std::is_sorted(samples.begin(), samples.end()));
    EXPECT_FALSE(view.isRefining());
}

TEST_F(kxViewportTest, IsTheMainViewOfTheProgram)
{
    const kxViewport view;

    EXPECT_EQ(kxOSGWidget::getMGLW(-1), &view);
    EXPECT_EQ(view.getUberCamera(), camera());
}

TEST_F(kxViewportTest, OrbitsAroundTheTargetWithTheLeftButton)
{
    kxViewport view;
    show(view);
    const double before = distance();
    QSignalSpy picks(&view, &kxViewport::picked);

    refineAfter(view, [&] { drag(view, {40, 20}, Qt::LeftButton); });

    EXPECT_LT(camera()->getFrom()[0], -1.0) << "what is seen follows to the right, so the camera goes to the left";
    EXPECT_GT(camera()->getFrom()[1], 1.0) << "and up, where it is pulled down";
    EXPECT_EQ(camera()->getAt(), (osg::Vec3d{0.0, 0.0, 0.0}));
    EXPECT_NEAR(distance(), before, 1e-9);
    EXPECT_EQ(picks.count(), 0) << "a drag is no click";
}

TEST_F(kxViewportTest, StopsOrbitingShortOfThePoles)
{
    kxViewport view;
    show(view);

    refineAfter(view, [&] { drag(view, {0, 5000}, Qt::LeftButton); });

    EXPECT_NEAR(camera()->getFrom()[1], 5.0, 0.01);
    EXPECT_GT(camera()->getFrom()[2], 0.05) << "on the side where it was";
}

TEST_F(kxViewportTest, PansWithTheMiddleButtonAndWithShift)
{
    kxViewport view;
    show(view);
    // The picture is as high as 2 * 5 * tan(0.3) at the target: 3.09336.
    refineAfter(view, [&] { drag(view, {40, 0}, Qt::MiddleButton); });

    EXPECT_NEAR(camera()->getAt()[0], -1.54668, 1e-4);
    EXPECT_NEAR(camera()->getFrom()[0], -1.54668, 1e-4);

    refineAfter(view, [&] { drag(view, {0, -20}, Qt::LeftButton, Qt::ShiftModifier); });
    EXPECT_NEAR(camera()->getAt()[1], -0.77334, 1e-4);
}

TEST_F(kxViewportTest, ZoomsWithTheWheelAndWithKeys)
{
    kxViewport view;
    show(view);

    refineAfter(view, [&] { turnWheel(view, 240); });
    EXPECT_NEAR(distance(), 5.0 / 1.15 / 1.15, 1e-9);

    refineAfter(view, [&] { press(view, Qt::Key_Minus); });
    EXPECT_NEAR(distance(), 5.0 / 1.15, 1e-9);

    refineAfter(view, [&] { press(view, Qt::Key_Plus, Qt::ShiftModifier); });
    EXPECT_NEAR(distance(), 5.0 / 1.15 / 1.15, 1e-9);
}

TEST_F(kxViewportTest, OrbitsWithArrowKeysAndLeavesOthersToTheProgram)
{
    kxViewport view;
    show(view);

    refineAfter(view, [&] { EXPECT_TRUE(press(view, Qt::Key_Right)); });

    EXPECT_NEAR(camera()->getFrom()[0], -5.0 * std::sin(0.1308997), 1e-5);
    EXPECT_FALSE(press(view, Qt::Key_Escape));
    EXPECT_FALSE(press(view, Qt::Key_F, Qt::ControlModifier));
    EXPECT_FALSE(press(view, Qt::Key_Delete));
}

TEST_F(kxViewportTest, FramesTheSelectionOrEverything)
{
    kxViewport view;
    show(view);
    const osg::Transform3DPtr far = osg::Transform3D::create();
    {
        const osg::CPEditor edit(far, osg::AllFieldMask);
        far->setTranslation({10.0, 0.0, 0.0});
    }
    const osg::NodePtr second = addNodeBelow(addNode(far), wallCore(material.get()));

    refineAfter(view, [&] { EXPECT_TRUE(press(view, Qt::Key_F)); });
    EXPECT_EQ(camera()->getAt(), (osg::Vec3d{5.0, 0.0, 0.0})) << "nothing is selected";

    kxSelectionManager::selectNodes({second});
    refineAfter(view, [&] { EXPECT_TRUE(press(view, Qt::Key_F)); });
    EXPECT_EQ(camera()->getAt(), (osg::Vec3d{10.0, 0.0, 0.0}));

    refineAfter(view, [&] { EXPECT_TRUE(press(view, Qt::Key_Home)); });
    EXPECT_EQ(camera()->getAt(), (osg::Vec3d{5.0, 0.0, 0.0}));
}

TEST_F(kxViewportTest, FramesAlsoInAHighAndNarrowWidget)
{
    kxViewport view;
    show(view);
    view.resize(60, 120);

    refineAfter(view, [&] { press(view, Qt::Key_Home); });

    EXPECT_EQ(view.nodeAt({3, 60}), wall) << "the left edge of the wall";
    EXPECT_FALSE(view.nodeAt({0, 60}));
}

TEST_F(kxViewportTest, PicksTheNodeOrTheBackground)
{
    kxViewport view;
    show(view);
    QSignalSpy picks(&view, &kxViewport::picked);

    click(view, {60, 40}, Qt::ControlModifier);
    click(view, {2, 2});

    ASSERT_EQ(picks.count(), 2);
    EXPECT_EQ(picks[0][0].toUInt(), wall.getFieldContainerId());
    EXPECT_EQ(picks[0][1].value<Qt::KeyboardModifiers>(), Qt::ControlModifier);
    EXPECT_EQ(picks[1][0].toUInt(), 0U);
    EXPECT_EQ(view.nodeAt({60, 40}), wall);
    EXPECT_FALSE(view.nodeAt({2, 2}));
    EXPECT_FALSE(view.nodeAt({60, 400})) << "outside of the widget";
}

TEST_F(kxViewportTest, PicksWhereTheWallIsSeen)
{
    kxViewport view;
    show(view);
    // The wall is 2 of 3.09336 high: 51.7 of the widget's 80 pixels, from 14.1 to 65.9.
    EXPECT_FALSE(view.nodeAt({60, 13}));
    EXPECT_TRUE(view.nodeAt({60, 15}));
    EXPECT_TRUE(view.nodeAt({60, 64}));
    EXPECT_FALSE(view.nodeAt({60, 66}));
}

TEST_F(kxViewportTest, PicksNoNodeThatIsGone)
{
    kxViewport view;
    show(view);
    QSignalSpy picks(&view, &kxViewport::picked);

    remove(wall);
    click(view, {60, 40});

    ASSERT_EQ(picks.count(), 1);
    EXPECT_EQ(picks[0][0].toUInt(), 0U);
}

TEST_F(kxViewportTest, FollowsAMaterialsColour)
{
    kxViewport view;
    show(view);

    refineAfter(view, [&] { setColor(material.get(), 0.0F, 0.8F, 0.0F); });

    EXPECT_GT(middle(view).green(), 2 * middle(view).red());
}

TEST_F(kxViewportTest, FollowsTheStructureOfTheScene)
{
    kxViewport view;
    show(view);
    const QColor red = middle(view);

    refineAfter(view, [&] { remove(wall); });

    EXPECT_NE(middle(view), red);
    EXPECT_FALSE(view.nodeAt({60, 40}));
}

TEST_F(kxViewportTest, FollowsAnOverrideThatComesAndGoes)
{
    kxViewport view;
    show(view);
    const osg::FCRef<osg::Material> green(osg::UBRDFMaterial::create());
    setColor(green.get(), 0.0F, 0.8F, 0.0F);
    const osg::OverrideMaterialAttachmentPtr override = osg::OverrideMaterialAttachment::create();
    {
        const osg::CPEditor edit(override, osg::OverrideMaterialAttachment::MaterialFieldMask);
        override->setMaterial(green.get());
    }

    refineAfter(view, [&] {
        const osg::CPEditor edit(wall, osg::Node::AttachmentsFieldMask);
        wall->addAttachment(override);
    });
    EXPECT_GT(middle(view).green(), 2 * middle(view).red());

    refineAfter(view, [&] {
        const osg::CPEditor edit(wall, osg::Node::AttachmentsFieldMask);
        wall->removeAttachment(osg::OverrideMaterialAttachment::getClassType());
    });
    EXPECT_GT(middle(view).red(), 2 * middle(view).green());
}

TEST_F(kxViewportTest, RendersNothingAnewWhereWhatChangedIsNotSeen)
{
    kxViewport view;
    show(view);
    const osg::FCRef<osg::Material> other(osg::UBRDFMaterial::create());
    QSignalSpy changes(&view, &kxViewport::pictureChanged);

    osg::setName(wall, "Another name");
    osg::setName(wall->getCore(), "A first name");
    osg::AssetAttachment::createAssetAttachment(wall);
    kxScenegraph::addToMaterialPool(other.get());
    kxScenegraph::update(true);
    drain();

    EXPECT_FALSE(view.isRefining());
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(kxViewportTest, HoldsTheSceneBackWhileRenderUpdatesAreOff)
{
    kxViewport view;
    show(view);
    kxController::enableRenderUpdate(false);

    setColor(material.get(), 0.0F, 0.8F, 0.0F);
    turnWheel(view, 120);
    drain();

    EXPECT_FALSE(view.isRefining());
    EXPECT_GT(middle(view).red(), 2 * middle(view).green());
    refineAfter(view, [] { kxController::enableRenderUpdate(true); });
    EXPECT_GT(middle(view).green(), 2 * middle(view).red());
}

TEST_F(kxViewportTest, HoldsTheSceneBackWhileUpdatesOfTheSceneAreOff)
{
    kxViewport view;
    show(view);
    kxScenegraph::enableUpdate(false);

    setColor(material.get(), 0.0F, 0.8F, 0.0F);
    drain();

    EXPECT_FALSE(view.isRefining());
    refineAfter(view, [] { kxScenegraph::enableUpdate(true); });
    EXPECT_GT(middle(view).green(), 2 * middle(view).red());
}

TEST_F(kxViewportTest, RendersAnewWhenItIsAskedTo)
{
    kxViewport view;
    show(view);

    refineAfter(view, [] { kxController::updateRender(true); });

    EXPECT_EQ(view.samples(), 4);
}

TEST_F(kxViewportTest, StopsRefiningUntilSomethingHappens)
{
    kxViewport view;
    view.resize(320, 240);
    view.setSampleLimit(1 << 20);
    QSignalSpy changes(&view, &kxViewport::pictureChanged);
    view.show();
    ASSERT_TRUE(changes.wait(Patience));
    ASSERT_TRUE(view.isRefining());

    kxOSGWidget::cancelAntialiasing();
    changes.clear();
    drain();

    EXPECT_FALSE(view.isRefining());
    EXPECT_EQ(changes.count(), 0) << "also of what was on its way";
    turnWheel(view, 120);
    ASSERT_TRUE(changes.wait(Patience));
    kxOSGWidget::cancelAntialiasing();
    kxScenegraph::update(false);
    drain();
    EXPECT_TRUE(view.isRefining()) << "updates were asked for";
}

TEST_F(kxViewportTest, GoesCleanlyWhileItIsRefining)
{
    auto view = std::make_unique<kxViewport>();
    view->resize(320, 240);
    view->setSampleLimit(1 << 20);
    QSignalSpy changes(view.get(), &kxViewport::pictureChanged);
    view->show();
    ASSERT_TRUE(changes.wait(Patience));

    setColor(material.get(), 0.0F, 0.8F, 0.0F);
    view.reset();
    drain();

    EXPECT_EQ(kxOSGWidget::getMGLW(-1), nullptr);
}

TEST_F(kxViewportTest, FollowsItsSize)
{
    kxViewport view;
    show(view);

    refineAfter(view, [&] { view.resize(90, 60); });

    EXPECT_EQ(view.picture().size(), QSize(90, 60));
}

TEST_F(kxViewportTest, KeepsQuietWhileItIsHidden)
{
    kxViewport view;
    show(view);
    view.hide();

    setColor(material.get(), 0.0F, 0.8F, 0.0F);
    drain();

    EXPECT_FALSE(view.isRefining());
    refineAfter(view, [&] { view.show(); });
    EXPECT_GT(middle(view).green(), 2 * middle(view).red());
}

TEST_F(kxViewportTest, ShowsAnotherDocumentInTheMiddleOfRefining)
{
    kxViewport view;
    view.resize(120, 80);
    view.setSampleLimit(1 << 20);
    QSignalSpy changes(&view, &kxViewport::pictureChanged);
    view.show();
    ASSERT_TRUE(changes.wait(Patience));

    kxScenegraph::newDocument();
    EXPECT_TRUE(view.picture().isNull());
    view.setSampleLimit(4);
    refineAfter(view, [] {});

    EXPECT_FALSE(view.nodeAt({60, 40}));
    EXPECT_EQ(view.getUberCamera(), camera());
    EXPECT_LT(middle(view).red(), 2 * middle(view).green()) << "the wall is gone";
}

TEST_F(kxViewportTest, ShowsNothingWithoutADocument)
{
    kxViewport view;
    show(view);

    kxScenegraph::closeDocument();
    drain();

    EXPECT_TRUE(view.picture().isNull());
    EXPECT_FALSE(view.isRefining());
    EXPECT_FALSE(view.nodeAt({60, 40}));
    EXPECT_FALSE(press(view, Qt::Key_Left));
    turnWheel(view, 120);
    drag(view, {10, 10}, Qt::LeftButton);
    click(view, {60, 40});
}

TEST_F(kxViewportTest, DrawsPlatesUnderAndOverTheScene)
{
    kxViewport view;
    show(view);

    refineAfter(view, [] { addPlate(false, Qt::blue, {1.0F, 1.0F}); });
    EXPECT_EQ(view.picture().pixelColor(2, 2), QColor(Qt::blue)) << "instead of the sky";
    EXPECT_GT(middle(view).red(), 2 * middle(view).green()) << "the wall stands before it";

    refineAfter(view, [] { addPlate(true, Qt::yellow, {0.5F, 1.0F}); });
    EXPECT_EQ(view.picture().pixelColor(50, 40), QColor(Qt::yellow)) << "before the wall";
    const QColor beside = view.picture().pixelColor(70, 40);
    EXPECT_GT(beside.red(), 2 * beside.green()) << "which goes on beside it";
}

TEST_F(kxViewportTest, ShowsItsRenderRootsAlone)
{
    kxViewport view;
    show(view);
    const osg::NodePtr group = addNode(osg::Group::create());

    refineAfter(view, [&] { kxOSGWidget::setRenderRoots(-1, {group}); });
    EXPECT_FALSE(view.nodeAt({60, 40}));

    refineAfter(view, [&] { kxOSGWidget::setRenderRoots(-1, {}); });
    EXPECT_EQ(view.nodeAt({60, 40}), wall);
}

TEST_F(kxViewportTest, SaysThatItShowsAPartOnly)
{
    kxViewport view;
    show(view);
    const QImage whole = view.grab().toImage();

    refineAfter(view, [&] { kxOSGWidget::setRenderRoots(-1, {wall}); });
    const QImage labelled = view.grab().toImage();
    view.setIsolateViewOverlayVisible(false);
    const QImage plain = view.grab().toImage();

    const QRect corner(8, 8, 20, 12);
    EXPECT_EQ(plain.copy(corner), whole.copy(corner));
    EXPECT_NE(labelled.copy(corner), whole.copy(corner));
}

/// With a colour that is nowhere else in the picture.
class kxViewportOutlineTest : public kxViewportTest
{
protected:
    kxViewportOutlineTest()
    {
        QPalette palette = view.palette();
        palette.setColor(QPalette::Highlight, QColor(0, 255, 255));
        view.setPalette(palette);
        show(view);
    }

    bool isLine(int x, int y) const
    {
        const QColor pixel = shown.pixelColor(x, y);
        return pixel.red() < 60 && pixel.green() > 200 && pixel.blue() > 200;
    }

    /// Two pixels around this rectangle, whose corners are round, are the line, and nothing else is.
    void expectLineAround(const QRect &seen)
    {
        shown = view.grab().toImage();
        for (int y = 0; y < shown.height(); ++y)
            for (int x = 0; x < shown.width(); ++x) {
                const int right = std::max({seen.left() - x, x - seen.right(), 0});
                const int down = std::max({seen.top() - y, y - seen.bottom(), 0});
                const bool isCorner = right == 2 && down == 2;
                const bool isAround = right + down > 0 && right <= 2 && down <= 2;
                ASSERT_TRUE(isCorner || isLine(x, y) == isAround) << x << ", " << y;
            }
    }

    void expectNoLine() { expectLineAround({-100, -100, 1, 1}); }

    // The wall is 51.7 pixels wide and high: its first pixels whose middle it covers are 34 and 14.
    const QRect wallSeen{34, 14, 52, 52};
    kxViewport view;
    QImage shown;
};

TEST_F(kxViewportOutlineTest, SurroundsWhatIsSelected)
{
    expectNoLine();

    kxSelectionManager::selectNodes({wall});
    expectLineAround(wallSeen);

    kxSelectionManager::clear();
    expectNoLine();
}

TEST_F(kxViewportOutlineTest, SurroundsWhatLiesBelowTheSelectedNode)
{
    kxSelectionManager::selectNodes({kxScenegraph::getRoot()});

    expectLineAround(wallSeen);
}

TEST_F(kxViewportOutlineTest, SurroundsOnlyWhatIsSeen)
{
    const osg::Transform3DPtr aside = osg::Transform3D::create();
    {
        const osg::CPEditor edit(aside, osg::AllFieldMask);
        aside->setTranslation({1.0, 0.0, 0.001});
    }
    const osg::NodePtr parent = addNode(aside);
    refineAfter(view, [&] { addNodeBelow(parent, wallCore(material.get())); });

    kxSelectionManager::selectNodes({wall});

    expectLineAround({34, 14, 26, 52});
}

TEST_F(kxViewportOutlineTest, FollowsTheCameraAndTheScene)
{
    kxSelectionManager::selectNodes({wall});
    refineAfter(view, [&] { drag(view, {10, 5}, Qt::MiddleButton); });
    expectLineAround(wallSeen.translated(10, 5));

    refineAfter(view, [&] { drag(view, {40, 0}, Qt::MiddleButton); });
    shown = view.grab().toImage();
    EXPECT_TRUE(isLine(82, 40));
    EXPECT_FALSE(isLine(119, 40)) << "there the wall goes on";

    refineAfter(view, [&] { remove(wall); });
    expectNoLine();
}

TEST_F(kxViewportOutlineTest, IsThereAlsoBeforeThePictureIsFine)
{
    kxSelectionManager::selectNodes({wall});
    view.setSampleLimit(1 << 20);
    QSignalSpy changes(&view, &kxViewport::pictureChanged);

    turnWheel(view, 120);
    ASSERT_TRUE(changes.wait(Patience));
    ASSERT_EQ(view.samples(), 0) << "the coarse picture";

    shown = view.grab().toImage();
    int edges = 0; // along the middle line
    for (int x = 1; x < shown.width(); ++x)
        edges += isLine(x, 40) && !isLine(x - 1, 40) ? 1 : 0;
    EXPECT_EQ(edges, 2);
}

} // namespace
