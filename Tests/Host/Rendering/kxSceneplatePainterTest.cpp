// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxSceneplatePainter.h"

#include "Kernel/NodeUtils.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "Kernel/kxSceneplateUtils.h"
#include "Kernel/kxTypeConverter.h"
#include "Rendering/QImageConverter.h"
#include "Rendering/kxSceneRenderer.h"
#include "Rendering/kxSceneplateTree.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/Switch.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace {

class kxSceneplatePainterTest : public testing::Test
{
protected:
    kxSceneplatePainterTest() { kxScenegraph::newDocument(); }
    ~kxSceneplatePainterTest() override { kxScenegraph::closeDocument(); }

    static osg::NodePtr root() { return kxSceneplateUtils::getSceneplateRoot(); }
    static osg::NodePtr add(const osg::NodeCorePtr &core, const osg::NodePtr &parent)
    {
        return NodeUtils::createNodeWithCore(core, parent, "");
    }
    /// A plate of one colour.
    static osg::SceneplatePtr makePlate(bool isFront, const QColor &color, const QSize &size = {8, 6})
    {
        QImage picture(size, QImage::Format_ARGB32);
        picture.fill(color);
        const auto image = osg::Image::create();
        QImageConverter::convertToOSGImage(picture, image);
        const auto plate = osg::Sceneplate::create();
        const osg::CPEditor edit(plate, osg::AllFieldMask);
        plate->setIsFront(isFront);
        plate->setImage(image);
        return plate;
    }
    static void setPlace(const osg::SceneplatePtr &plate, const osg::Vec2f &position, const osg::Vec2f &size)
    {
        const osg::CPEditor edit(plate, osg::AllFieldMask);
        plate->setPosition(position);
        plate->setSize(size);
    }
    static QImage canvas(const QColor &color = Qt::transparent)
    {
        QImage image(40, 20, QImage::Format_ARGB32_Premultiplied);
        image.fill(color);
        return image;
    }
    static QImage painted(const osg::NodePtr &node, kxSceneplatePainter::Layers layers = kxSceneplatePainter::Both)
    {
        QImage image = canvas();
        kxSceneplatePainter::paint(node, layers, image);
        return image;
    }
};

TEST_F(kxSceneplatePainterTest, FillsThePicture)
{
    add(makePlate(true, Qt::red), root());

    const QImage image = painted(root());

    for (const QPoint &corner : {QPoint(0, 0), QPoint(39, 0), QPoint(0, 19), QPoint(39, 19), QPoint(20, 10)})
        EXPECT_EQ(image.pixelColor(corner), QColor(Qt::red)) << corner.x() << ' ' << corner.y();
}

TEST_F(kxSceneplatePainterTest, StandsWhereThePlateSays)
{
    const auto plate = makePlate(true, Qt::red);
    setPlace(plate, {0.5F, 0.0F}, {0.25F, 0.5F});
    add(plate, root());

    const QImage image = painted(root());

    EXPECT_EQ(image.pixelColor(22, 18), QColor(Qt::red)) << "lower half, third quarter";
    EXPECT_EQ(image.pixelColor(28, 11), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(22, 8).alpha(), 0) << "above it";
    EXPECT_EQ(image.pixelColor(17, 18).alpha(), 0) << "left of it";
    EXPECT_EQ(image.pixelColor(32, 18).alpha(), 0) << "right of it";
}

TEST_F(kxSceneplatePainterTest, KeepsThePicturesWayUp)
{
    QImage picture(1, 2, QImage::Format_ARGB32);
    picture.setPixelColor(0, 0, Qt::green);
    picture.setPixelColor(0, 1, Qt::blue);
    const auto image = osg::Image::create();
    QImageConverter::convertToOSGImage(picture, image);
    const auto plate = makePlate(true, Qt::red);
    {
        const osg::CPEditor edit(plate, osg::Sceneplate::ImageFieldMask);
        plate->setImage(image);
    }
    add(plate, root());

    EXPECT_EQ(painted(root()).pixelColor(20, 1), QColor(Qt::green));
    EXPECT_EQ(painted(root()).pixelColor(20, 18), QColor(Qt::blue));
}

TEST_F(kxSceneplatePainterTest, DrawsLaterPlatesOverEarlierOnes)
{
    const osg::NodePtr group = add(osg::Group::create(), root());
    add(makePlate(true, Qt::red), group);
    add(makePlate(true, Qt::green), group);
    add(makePlate(false, Qt::blue), root());

    EXPECT_EQ(painted(root(), kxSceneplatePainter::Front).pixelColor(20, 10), QColor(Qt::green));
    EXPECT_EQ(painted(root(), kxSceneplatePainter::Back).pixelColor(20, 10), QColor(Qt::blue));
}

TEST_F(kxSceneplatePainterTest, MixesByOpacity)
{
    const auto plate = makePlate(true, Qt::white);
    {
        const osg::CPEditor edit(plate, osg::Sceneplate::OpacityFieldMask);
        plate->setOpacity(0.25F);
    }
    add(plate, root());
    QImage image = canvas(Qt::black);

    kxSceneplatePainter::paint(root(), kxSceneplatePainter::Front, image);

    EXPECT_NEAR(image.pixelColor(20, 10).red(), 64, 1);
}

TEST_F(kxSceneplatePainterTest, LeavesOutWhatIsNotShown)
{
    const osg::SwitchPtr choice = osg::Switch::create();
    const osg::NodePtr chooser = add(choice, root());
    add(makePlate(true, Qt::red), chooser);
    add(makePlate(true, Qt::green), chooser);
    const auto hidden = makePlate(true, Qt::blue);
    {
        const osg::CPEditor edit(hidden, osg::Sceneplate::IsVisibleFieldMask);
        hidden->setIsVisible(false);
    }
    add(makePlate(true, Qt::blue), add(hidden, root()));
    const auto choose = [&choice](std::int32_t which) {
        const osg::CPEditor edit(choice, osg::Switch::ChoiceFieldMask);
        choice->setChoice(which);
    };

    EXPECT_EQ(painted(root()).pixelColor(20, 10), QColor(Qt::red));
    choose(1);
    EXPECT_EQ(painted(root()).pixelColor(20, 10), QColor(Qt::green));
    choose(5);
    EXPECT_EQ(painted(root()).pixelColor(20, 10).alpha(), 0);
    EXPECT_FALSE(kxSceneplatePainter::hasContent(root(), kxSceneplatePainter::Both));
    choose(osg::Switch::All);
    EXPECT_TRUE(kxSceneplatePainter::hasContent(root(), kxSceneplatePainter::Front));
    EXPECT_FALSE(kxSceneplatePainter::hasContent(root(), kxSceneplatePainter::Back));
    EXPECT_FALSE(kxSceneplatePainter::hasContent(nullptr, kxSceneplatePainter::Both));
}

TEST_F(kxSceneplatePainterTest, PutsTheImageBetweenThePlates)
{
    const auto back = makePlate(false, Qt::blue);
    const auto front = makePlate(true, Qt::red);
    setPlace(front, {0.0F, 0.0F}, {0.25F, 1.0F});
    add(back, root());
    add(front, root());
    QImage rendered = canvas().convertToFormat(QImage::Format_RGBA8888);
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 20; ++x)
            rendered.setPixelColor(x, y, Qt::green);

    const QImage image = kxSceneplatePainter::composed(rendered, root());

    EXPECT_EQ(image.format(), rendered.format());
    EXPECT_EQ(image.pixelColor(5, 10), QColor(Qt::red)) << "over the image";
    EXPECT_EQ(image.pixelColor(15, 10), QColor(Qt::green)) << "the image";
    EXPECT_EQ(image.pixelColor(35, 10), QColor(Qt::blue)) << "under it, where it is empty";
    EXPECT_EQ(kxSceneplatePainter::composed(rendered, nullptr), rendered);
    EXPECT_TRUE(kxSceneplatePainter::composed({}, root()).isNull());
}

TEST_F(kxSceneplatePainterTest, ShowsAPlateByItsPictureAndAGroupByWhatIsInIt)
{
    const QSize size(64, 48);
    const osg::NodePtr group = add(osg::Group::create(), root());
    const osg::NodePtr empty = add(osg::Group::create(), root());
    const auto plate = makePlate(true, Qt::red, {200, 50});
    setPlace(plate, {0.0F, 0.5F}, {1.0F, 0.5F});
    const osg::NodePtr node = add(plate, group);

    EXPECT_EQ(kxSceneplatePainter::preview(node, size).size(), QSize(64, 16)) << "smaller, in its own shape";
    EXPECT_EQ(kxSceneplatePainter::preview(node, {400, 300}).size(), QSize(200, 50)) << "not larger";
    const QImage together = kxSceneplatePainter::preview(group, size);
    EXPECT_EQ(together.size(), size);
    EXPECT_EQ(together.pixelColor(32, 5), QColor(Qt::red));
    EXPECT_EQ(together.pixelColor(32, 40).alpha(), 0);
    EXPECT_TRUE(kxSceneplatePainter::preview(empty, size).isNull());
    EXPECT_TRUE(kxSceneplatePainter::preview(nullptr, size).isNull());
    EXPECT_TRUE(kxSceneplatePainter::preview(add(osg::Sceneplate::create(), root()), size).isNull()) << "no picture";
}

TEST_F(kxSceneplatePainterTest, IsOfferedAsAService)
{
    kxSceneplateTree service;
    const osg::NodePtr node = add(makePlate(true, Qt::red, {1024, 512}), root());
    int updates = 0;
    const auto connection =
        QObject::connect(&kxScenegraph::notifier(), &kxScenegraphNotifier::updateRequested, [&updates] { ++updates; });

    EXPECT_EQ(service.previewImage(kxTypeConverter::convertNode(node)).size(), QSize(512, 256));
    EXPECT_TRUE(service.previewImage(nullptr).isNull());
    QCoreApplication::processEvents();
    updates = 0;
    service.nodesChanged();
    service.nodesChanged();
    EXPECT_EQ(updates, 0) << "on the next pass";
    QCoreApplication::processEvents();
    EXPECT_EQ(updates, 1);
    QObject::disconnect(connection);
}

TEST_F(kxSceneplatePainterTest, IsPartOfRenderedScenes)
{
    const auto back = makePlate(false, Qt::blue);
    const auto front = makePlate(true, Qt::red);
    setPlace(front, {0.0F, 0.0F}, {0.5F, 1.0F});
    add(front, root());
    const osg::FCRef<osg::UberCamera> camera(osg::UberCamera::create());
    kxSceneRenderer::Settings settings;
    settings.width = 16;
    settings.height = 8;
    settings.samples = 1;
    const auto render = [&] {
        const auto image =
            osg::FCRef<osg::Image>::adopt(kxSceneRenderer::render({kxScenegraph::getRoot()}, camera.get(), settings));
        EXPECT_EQ(image->getChannels(), 4U);
        return QImageConverter::convertToQImage(image.get());
    };
    const QImage without = render();
    settings.plates = root();

    const QImage overSky = render();
    add(back, root());
    const QImage overPlate = render();

    EXPECT_EQ(overSky.pixelColor(2, 4), QColor(Qt::red));
    EXPECT_EQ(overSky.pixelColor(12, 4), without.pixelColor(12, 4)) << "the sky stays";
    EXPECT_EQ(overPlate.pixelColor(2, 4), QColor(Qt::red));
    EXPECT_EQ(overPlate.pixelColor(12, 4), QColor(Qt::blue)) << "instead of the sky";
}

} // namespace
