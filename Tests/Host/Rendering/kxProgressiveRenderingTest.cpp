// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxProgressiveRendering.h"

#include "Kernel/kxScenegraph.h"
#include "Rendering/QImageConverter.h"
#include "Rendering/kxSceneRenderer.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <QSignalSpy>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

constexpr int Patience = 60000; // milliseconds
constexpr int Endless = 1 << 20;

/// A wall of two by two before a camera, in a document with the default sky.
class kxProgressiveRenderingTest : public testing::Test
{
protected:
    kxProgressiveRenderingTest() : camera(osg::UberCamera::create())
    {
        kxScenegraph::newDocument();
        wall = addWall(0.0F);
    }
    ~kxProgressiveRenderingTest() override { kxScenegraph::closeDocument(); }

    static osg::NodePtr addWall(float z)
    {
        const osg::GeometryPtr core = osg::Geometry::create();
        {
            const osg::CPEditor edit(core, osg::AllFieldMask);
            core->editPositions() = {osg::Vec3f{-1.0F, -1.0F, z}, osg::Vec3f{1.0F, -1.0F, z}, osg::Vec3f{1.0F, 1.0F, z},
                                     osg::Vec3f{-1.0F, 1.0F, z}};
            core->editTexCoords() = {osg::Vec2f{0.0F, 0.0F}, osg::Vec2f{1.0F, 0.0F}, osg::Vec2f{1.0F, 1.0F},
                                     osg::Vec2f{0.0F, 1.0F}};
            core->editIndices() = {0U, 1U, 2U, 0U, 2U, 3U};
            core->setMaterial(osg::UBRDFMaterial::create());
        }
        const osg::NodePtr node = osg::makeNodeFor(core);
        const osg::NodePtr root = kxScenegraph::getRoot();
        const osg::CPEditor edit(root, osg::Node::ChildrenFieldMask);
        root->addChild(node);
        return node;
    }

    void moveTo(double x)
    {
        const osg::CPEditor edit(camera.get(), osg::UberCamera::FromFieldMask);
        camera->setFrom({x, 0.0, 5.0});
    }

    osg::FCRef<osg::UberCamera> camera;
    osg::NodePtr wall;
};

TEST_F(kxProgressiveRenderingTest, EndsWithThePictureOfTheSceneRenderer)
{
    kxProgressiveRendering rendering;
    QSignalSpy pictures(&rendering, &kxProgressiveRendering::pictureReady);
    QSignalSpy finished(&rendering, &kxProgressiveRendering::finished);

    rendering.setScene({kxScenegraph::getRoot()}, true);
    rendering.start(camera.get(), {40, 30}, 8);
    ASSERT_TRUE(finished.wait(Patience));

    kxSceneRenderer::Settings settings;
    settings.width = 40;
    settings.height = 30;
    settings.samples = 8;
    const auto image =
        osg::FCRef<osg::Image>::adopt(kxSceneRenderer::render({kxScenegraph::getRoot()}, camera.get(), settings));
    const QImage expected = QImageConverter::convertToQImage(image.get()).convertToFormat(QImage::Format_ARGB32);
    const QImage picture = pictures.back()[0].value<QImage>().convertToFormat(QImage::Format_ARGB32);
    ASSERT_EQ(picture.size(), expected.size());
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 40; ++x)
            ASSERT_EQ(picture.pixelColor(x, y), expected.pixelColor(x, y)) << x << ", " << y;
}

TEST_F(kxProgressiveRenderingTest, RendersNothingWithoutSceneCameraOrSize)
{
    kxProgressiveRendering rendering;

    EXPECT_EQ(rendering.start(camera.get(), {40, 30}, 8), 0U);
    rendering.setScene({wall}, true);
    EXPECT_EQ(rendering.start(nullptr, {40, 30}, 8), 0U);
    EXPECT_EQ(rendering.start(camera.get(), {0, 30}, 8), 0U);
    EXPECT_EQ(rendering.start(camera.get(), {40, 30}, 0), 0U);
    EXPECT_FALSE(rendering.isRunning());
    EXPECT_NE(rendering.start(camera.get(), {1, 1}, 1), 0U);
}

TEST_F(kxProgressiveRenderingTest, ShowsPicturesWhileTheCameraGoesOnMoving)
{
    kxProgressiveRendering rendering;
    rendering.setScene({kxScenegraph::getRoot()}, true);
    QSignalSpy pictures(&rendering, &kxProgressiveRendering::pictureReady);
    const QSize size(3200, 2400); // so that a coarse picture takes longer than a move
    quint64 last = 0;
    QTimer motion;
    double x = 0.0;
    QObject::connect(&motion, &QTimer::timeout, [&] {
        moveTo(x += 0.001);
        last = rendering.start(camera.get(), size, Endless);
    });
    motion.start(0);

    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(pictures.wait(Patience));

    EXPECT_GT(last, 3U);
    EXPECT_EQ(pictures.back()[1].toInt(), 0) << "the coarse ones";
    EXPECT_EQ(pictures.back()[0].value<QImage>().size(), size);
}

TEST_F(kxProgressiveRenderingTest, DeliversNothingAfterItWasCancelled)
{
    kxProgressiveRendering rendering;
    rendering.setScene({kxScenegraph::getRoot()}, true);
    QSignalSpy pictures(&rendering, &kxProgressiveRendering::pictureReady);
    rendering.start(camera.get(), {64, 48}, Endless);
    ASSERT_TRUE(pictures.wait(Patience));

    rendering.cancel();
    pictures.clear();
    // A rendering that is begun afterwards shows when everything before it is over.
    QSignalSpy finished(&rendering, &kxProgressiveRendering::finished);
    const quint64 next = rendering.start(camera.get(), {8, 8}, 1);
    ASSERT_TRUE(finished.wait(Patience));

    for (const QList<QVariant> &picture : pictures)
        EXPECT_EQ(picture[2].toULongLong(), next);
    EXPECT_FALSE(rendering.isRunning());
}

TEST_F(kxProgressiveRenderingTest, KeepsTheSceneThatItWasGiven)
{
    kxProgressiveRendering rendering;
    rendering.setScene({kxScenegraph::getRoot()}, true);
    const quint32 id = wall.getFieldContainerId();

    kxScenegraph::newDocument();

    EXPECT_EQ(rendering.nodeAt(camera.get(), {40, 30}, {20, 15}), id);
    rendering.clearScene();
    EXPECT_EQ(rendering.nodeAt(camera.get(), {40, 30}, {20, 15}), 0U);
}

TEST_F(kxProgressiveRenderingTest, FindsTheNodeInFrontOrBehindWhatIsCutOut)
{
    kxProgressiveRendering rendering;
    const osg::NodePtr screen = addWall(1.0F);
    const auto material = osg::UBRDFMaterialPtr::dcast(osg::GeometryPtr::dcast(screen->getCore())->getMaterial());
    rendering.setScene({kxScenegraph::getRoot()}, true);
    EXPECT_EQ(rendering.nodeAt(camera.get(), {40, 30}, {20, 15}), screen.getFieldContainerId());

    {
        const osg::CPEditor edit(material, osg::UBRDFMaterial::DiffuseColorFieldMask);
        material->setDiffuseColor({1.0F, 1.0F, 1.0F, 0.0F});
    }
    rendering.setScene({kxScenegraph::getRoot()}, true);
    EXPECT_EQ(rendering.nodeAt(camera.get(), {40, 30}, {20, 15}), wall.getFieldContainerId());
}

} // namespace
