// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxGeometryAssetItem.h"
#include "Kernel/kxController.h"
#include "Kernel/kxControllerNotifier.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "Kernel/kxSelectionManager.h"
#include "NodeFixture.h"
#include "Rendering/kxImageRenderWidget.h"
#include "Rendering/kxOSGWidget.h"
#include "SceneChangeListener.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "SceneGraph/USphereEnvironmentMaterial.h"

#include <QTranslator>

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// A main view that says when it is looked through and when its refinement is stopped.
class TellingView final : public kxOSGWidget
{
public:
    osg::UberCameraPtr getUberCamera() const override
    {
        if (whenLookedThrough)
            whenLookedThrough();
        const bool isBlind = sight == Nothing || (sight == UntilItRenders && !isIsolateViewOverlayVisible());
        return isBlind ? osg::UberCameraPtr() : kxOSGWidget::getUberCamera();
    }

    /// Without a camera nothing is rendered, which takes no time. The last look is that of the renderer.
    enum Sight { Everything, UntilItRenders, Nothing };

    Sight sight = UntilItRenders;
    std::function<void()> whenLookedThrough;
    std::function<void()> whenStopped;

private:
    void cancelRefinement() override
    {
        if (whenStopped)
            whenStopped();
    }
};

class kxGeometryAssetItemPreviewTest : public NodeFixture
{
protected:
    ~kxGeometryAssetItemPreviewTest() override
    {
        kxImageRenderWidget::setAlpha(false);
        kxImageRenderWidget::setAlphaColor(0.0F, 0.0F, 0.0F);
        kxSelectionManager::clear();
    }

    static osg::NodePtr root() { return kxScenegraph::getRoot(); }
    static osg::NodePtr addChair(const osg::Vec3d &place = {1.0, 2.0, 3.0})
    {
        const osg::NodePtr chair = addPlaced(root(), "Chair", place);
        addSquare(chair, "Seat");
        return chair;
    }
    /// A sphere that is the current choice of the default environment.
    static osg::USphereEnvironmentMaterialPtr addSphere()
    {
        const auto sphere = osg::USphereEnvironmentMaterial::create();
        const auto choices = kxDefaultEnvironment::getSwitch();
        const osg::CPEditor edit(choices, osg::AllFieldMask);
        choices->addMaterial(sphere);
        choices->setChoice(1);
        return sphere;
    }
    osg::FCRef<osg::Image> render(const osg::NodePtr &node)
    {
        return osg::FCRef<osg::Image>::adopt(item.renderPreview(node));
    }
    /// One pixel of what renderings without a setting of their own show, beside all nodes.
    static osg::Vec4f emptyPixel()
    {
        kxImageRenderWidget widget(nullptr, 1, 1, 0, false, 1, true, true, 1, false);
        return widget.render(nullptr, 0, false, true).at(0)->pixel(0, 0);
    }

    TellingView view;
    kxGeometryAssetItem item;
};

} // namespace

TEST_F(kxGeometryAssetItemPreviewTest, ShowsTheFramedNodeAloneWhileItRenders)
{
    const osg::NodePtr chair = addChair();
    const osg::NodePtr other = addChair({9.0, 9.0, 9.0});
    const auto sphere = addSphere();
    kxSelectionManager::selectNodes({other, chair});
    const osg::FCRef<osg::UberCamera> framed(osg::deepClone(view.getUberCamera(), {}));
    {
        const osg::CPEditor edit(framed.get(), osg::AllFieldMask);
        framed->zoomTo(chair->getWorldVolume(), true, {0.0, 0.0, 0.0});
    }
    std::vector<osg::NodePtr> roots;
    std::vector<osg::NodePtr> selected;
    bool isSphereVisible = true;
    bool isOverlayVisible = true;
    std::optional<std::string> difference;
    view.whenLookedThrough = [&] {
        roots = view.getRenderRoots();
        selected = kxScenegraph::getSelectedNodes();
        isSphereVisible = sphere->getIsVisible();
        isOverlayVisible = view.isIsolateViewOverlayVisible();
        difference = osg::findDifference(view.kxOSGWidget::getUberCamera(), framed.get());
    };

    render(chair);

    EXPECT_THAT(roots, ElementsAre(chair));
    EXPECT_THAT(selected, IsEmpty());
    EXPECT_FALSE(isSphereVisible);
    EXPECT_FALSE(isOverlayVisible);
    EXPECT_EQ(difference, std::nullopt);
}

TEST_F(kxGeometryAssetItemPreviewTest, RendersOnBlackThatIsTransparent)
{
    view.sight = TellingView::Everything;
    kxImageRenderWidget::setAlphaColor(1.0F, 0.0F, 0.0F);

    const auto picture = render(addChair());

    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->getWidth(), 512U);
    EXPECT_EQ(picture->getHeight(), 384U);
    EXPECT_EQ(picture->pixel(0, 0), (osg::Vec4f{0.0F, 0.0F, 0.0F, 0.0F}));
    EXPECT_EQ(emptyPixel()[3], 1.0F) << "the environment is drawn again";
    kxImageRenderWidget::setAlpha(true);
    EXPECT_EQ(emptyPixel(), (osg::Vec4f{0.0F, 0.0F, 0.0F, 0.0F}));
}

TEST_F(kxGeometryAssetItemPreviewTest, PutsTheColorBackThatSomebodySetsMeanwhile)
{
    view.whenLookedThrough = [] { kxImageRenderWidget::setAlphaColor(1.0F, 0.0F, 0.0F); };

    render(addChair());

    view.whenLookedThrough = nullptr;
    kxImageRenderWidget::setAlpha(true);
    EXPECT_EQ(emptyPixel(), (osg::Vec4f{0.0F, 0.0F, 0.0F, 0.0F}));
}

TEST_F(kxGeometryAssetItemPreviewTest, BringsTheViewBackStepByStep)
{
    const osg::NodePtr chair = addChair();
    const osg::NodePtr other = addChair({9.0, 9.0, 9.0});
    const auto sphere = addSphere();
    view.setRenderRoots({other});
    kxSelectionManager::selectNodes({other});
    std::vector<std::string> steps;
    view.whenLookedThrough = [&steps] { steps.clear(); };
    view.whenStopped = [&] {
        steps.emplace_back(view.isIsolateViewOverlayVisible() ? "roots, with overlay" : "roots, without overlay");
    };
    const SceneChangeListener listener([&steps](osg::FieldContainer &container, osg::FieldMask) {
        if (container.getType().isDerivedFrom(osg::UberCamera::getClassType()))
            steps.emplace_back("camera");
        if (container.getType().isDerivedFrom(osg::USphereEnvironmentMaterial::getClassType()))
            steps.emplace_back("environment");
    });
    QObject context;
    QObject::connect(&kxScenegraph::notifier(), &kxScenegraphNotifier::selectionChanged, &context,
                     [&steps] { steps.emplace_back("selection"); });
    QObject::connect(&kxController::notifier(), &kxControllerNotifier::renderUpdateRequested, &context, [&] {
        EXPECT_THAT(view.getRenderRoots(), ElementsAre(other));
        steps.emplace_back("update");
    });

    render(chair);

    EXPECT_THAT(steps, ElementsAre("camera", "environment", "selection", "roots, with overlay", "update"));
    EXPECT_TRUE(sphere->getIsVisible());
    EXPECT_THAT(kxScenegraph::getSelectedNodes(), ElementsAre(other));
}

TEST_F(kxGeometryAssetItemPreviewTest, SwitchesAlphaOffBeforeItTurnsTheCameraBack)
{
    bool hasRendered = false;
    view.whenLookedThrough = [&] { hasRendered = !view.isIsolateViewOverlayVisible(); };
    std::vector<float> alphas;
    const SceneChangeListener listener([&](osg::FieldContainer &container, osg::FieldMask) {
        if (!hasRendered || !container.getType().isDerivedFrom(osg::UberCamera::getClassType()))
            return;
        view.sight = TellingView::Everything;
        alphas.push_back(emptyPixel()[3]);
    });

    render(addChair());

    EXPECT_THAT(alphas, ElementsAre(1.0F)) << "the environment is drawn again by then";
}

TEST_F(kxGeometryAssetItemPreviewTest, LeavesAnEnvironmentThatIsNoVisibleSphere)
{
    const auto sphere = addSphere();
    int changes = 0;
    const SceneChangeListener listener([&changes](osg::FieldContainer &container, osg::FieldMask) {
        if (container.getType().isDerivedFrom(osg::UEnvironmentMaterial::getClassType()))
            ++changes;
    });
    {
        const osg::CPEditor edit(sphere, osg::USphereEnvironmentMaterial::IsVisibleFieldMask);
        sphere->setIsVisible(false);
    }
    changes = 0;

    render(addChair()); // it is hidden already
    {
        const osg::CPEditor edit(kxDefaultEnvironment::getSwitch(), osg::SwitchMaterial::ChoiceFieldMask);
        kxDefaultEnvironment::getSwitch()->setChoice(0);
    }
    render(addChair()); // it is a sky
    {
        const osg::CPEditor edit(kxDefaultEnvironment::getSwitch(), osg::SwitchMaterial::ChoiceFieldMask);
        kxDefaultEnvironment::getSwitch()->setChoice(7);
    }
    render(addChair()); // none is chosen

    EXPECT_EQ(changes, 0);
}

TEST_F(kxGeometryAssetItemPreviewTest, HidesTheSphereOnlyWhereBothSwitchesAre)
{
    const auto sphere = addSphere();
    bool wasVisible = false;
    view.whenLookedThrough = [&] { wasVisible = sphere->getIsVisible(); };
    const osg::NodePtr places = kxScenegraph::environmentGeometrySwitch();
    {
        const osg::CPEditor edit(root(), osg::Node::ChildrenFieldMask);
        root()->addChild(kxScenegraph::getDefaultEnvironmentNode());
        root()->subChild(places);
    }
    ASSERT_TRUE(kxDefaultEnvironment::getSwitch());

    render(addChair());

    EXPECT_TRUE(wasVisible) << "there is no place of the environment";
}

TEST_F(kxGeometryAssetItemPreviewTest, LeavesASingleEnvironment)
{
    const osg::FCRef<osg::USphereEnvironmentMaterial> sphere(osg::USphereEnvironmentMaterial::create());
    const auto environment = osg::EnvironmentPtr::dcast(kxScenegraph::getDefaultEnvironmentNode()->getCore());
    {
        const osg::CPEditor edit(environment, osg::Environment::MaterialFieldMask);
        environment->setMaterial(sphere);
    }
    bool wasVisible = false;
    view.whenLookedThrough = [&] { wasVisible = sphere->getIsVisible(); };

    render(addChair());

    EXPECT_TRUE(wasVisible) << "there is no switch of environments";
}

TEST_F(kxGeometryAssetItemPreviewTest, RestoresTheViewAlsoWhenNothingWasRendered)
{
    const osg::NodePtr chair = addChair();
    const osg::NodePtr other = addChair({9.0, 9.0, 9.0});
    view.setRenderRoots({other});
    kxSelectionManager::selectNodes({other});
    const osg::FCRef<osg::UberCamera> camera(osg::deepClone(view.getUberCamera(), {}));
    const std::size_t living = osg::FieldContainerFactory::the().livingContainerCount();

    EXPECT_FALSE(render(chair)) << "the camera goes once the node is framed";

    EXPECT_TRUE(view.isIsolateViewOverlayVisible());
    EXPECT_THAT(view.getRenderRoots(), ElementsAre(other));
    EXPECT_THAT(kxScenegraph::getSelectedNodes(), ElementsAre(other));
    EXPECT_EQ(osg::findDifference(view.kxOSGWidget::getUberCamera(), camera.get()), std::nullopt);
    EXPECT_EQ(osg::FieldContainerFactory::the().livingContainerCount(), living);
}

TEST_F(kxGeometryAssetItemPreviewTest, SaysThatTheCameraIsBackAlsoWhereItDidNotMove)
{
    const osg::NodePtr empty = addGroup(root(), "Nothing to frame");
    const std::uint32_t id = view.getUberCamera().getFieldContainerId();
    std::vector<osg::FieldMask> changes;
    const SceneChangeListener listener([&changes, id](osg::FieldContainer &container, osg::FieldMask fields) {
        if (container.getFieldContainerId() == id)
            changes.push_back(fields);
    });

    render(empty);

    EXPECT_THAT(changes, ElementsAre(osg::UberCamera::getCombinedCameraAttributesMask() |
                                     osg::UberCamera::getCombinedViewingAttributesMask()));
}

TEST_F(kxGeometryAssetItemPreviewTest, SaysWhatItDoesInTheLanguageOfTheUser)
{
    struct TextRecorder : QTranslator
    {
        QString translate(const char *context, const char *text, const char *, int) const override
        {
            texts.push_back(std::string(context) + "/" + text);
            return {};
        }
        bool isEmpty() const override { return false; }
        mutable std::vector<std::string> texts;
    } recorder;
    QCoreApplication::installTranslator(&recorder);

    render(addChair());
    QCoreApplication::removeTranslator(&recorder);

    EXPECT_THAT(recorder.texts, Contains("kxGeometryAssetItem/Rendering asset preview image ..."));
}

TEST_F(kxGeometryAssetItemPreviewTest, AsksForOneFinePictureUnderALabelThatNobodyCancels)
{
    std::optional<kxImageRenderWidget::Settings> settings;
    std::optional<kxImageRenderWidget::Request> request;
    QString label;
    bool canBeCancelled = true;
    view.sight = TellingView::Everything;
    view.whenLookedThrough = [&] {
        const kxImageRenderWidget *widget = kxImageRenderWidget::rendering();
        if (!widget)
            return;
        settings = widget->settings();
        request = widget->request();
        label = widget->labelText();
        canBeCancelled = widget->showsCancelButton();
        view.sight = TellingView::Nothing; // the picture itself would take its time
    };

    render(addChair());

    EXPECT_EQ(settings, (kxImageRenderWidget::Settings{nullptr, 512, 384, 0, false, 1, true, true, 1, false}));
    EXPECT_EQ(request, (kxImageRenderWidget::Request{nullptr, 0, false, true}));
    EXPECT_EQ(label, "Rendering asset preview image ...");
    EXPECT_FALSE(canBeCancelled);
    EXPECT_EQ(kxImageRenderWidget::rendering(), nullptr);
}

TEST_F(kxGeometryAssetItemPreviewTest, TouchesNothingWithoutANodeOrACamera)
{
    const osg::NodePtr chair = addChair();
    view.setRenderRoots({chair});
    view.setIsolateViewOverlayVisible(false);
    int stops = 0;
    view.whenStopped = [&stops] { ++stops; };

    EXPECT_FALSE(render(nullptr));
    view.sight = TellingView::Nothing;
    EXPECT_FALSE(render(chair));

    EXPECT_EQ(stops, 0);
    EXPECT_FALSE(view.isIsolateViewOverlayVisible());
}
