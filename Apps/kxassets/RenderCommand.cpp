// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxSceneOpener.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "Rendering/kxOSGWidget.h"
#include "Rendering/kxSceneRenderer.h"
#include "SceneGraph/CameraCore.h"
#include "SceneGraph/EditCP.h"
#include "kxassets/Command.h"
#include "kxassets/Interrupt.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>

#include <cmath>
#include <memory>

namespace {

constexpr int MaxSide = 8192;
constexpr int MaxSamples = 65536;

struct Arguments
{
    std::string scene;
    std::string output;
    int width = 1024;
    int height = 768;
    int samples = 64;
    bool isTransparent = false;
};

/// Three quarters from the front and above, where most things show what they are.
void placeCamera(const osg::UberCameraPtr &camera, const std::vector<osg::NodePtr> &nodes)
{
    osg::Volume box;
    for (const osg::NodePtr &node : nodes)
        box.extend(node->getWorldVolume());
    const osg::CPEditor edit(camera, osg::AllFieldMask);
    camera->setFrom({1.0, 0.7, 1.6});
    camera->setAt({0.0, 0.0, 0.0});
    camera->zoomTo(box, true, {0.0, 0.0, 0.0});
}

ExitCode run(const Arguments &arguments, Context &context)
{
    const osg::Result<kxSceneOpener::Contents> scene = kxSceneOpener::open(QString::fromStdString(arguments.scene));
    if (!scene) {
        complain(scene.reason());
        return ExitCode::Failed;
    }
    const kxSceneOpener::Contents &contents = scene.value();
    const kxOSGWidget *view = kxOSGWidget::getMGLW(-1);
    if ((contents.nodes.empty() && contents.environments.empty() && contents.plates.empty()) || !view ||
        !view->getUberCamera()) {
        complain("'" + arguments.scene + "' holds no node to render");
        return ExitCode::Failed;
    }
    placeCamera(view->getUberCamera(), contents.nodes);
    kxSceneRenderer::Settings settings;
    settings.width = arguments.width;
    settings.height = arguments.height;
    settings.samples = arguments.samples;
    settings.isBackgroundVisible = !arguments.isTransparent;
    settings.plates = kxSceneplateUtils::getSceneplateRoot();
    settings.isCancelled = [] { return Interrupt::wasRequested(); };
    const auto image = osg::FCRef<osg::Image>::adopt(
        kxSceneRenderer::render({kxScenegraph::getRoot()}, view->getUberCamera(), settings));
    if (!image)
        return ExitCode::Failed;
    if (!image->write(arguments.output)) {
        complain("'" + arguments.output + "' cannot be written");
        return ExitCode::Failed;
    }
    context.results.line("rendered " + arguments.scene + " into " + arguments.output);
    return ExitCode::Done;
}

} // namespace

Run declareRender(CLI::App &app, Options & /*options*/)
{
    const auto arguments = std::make_shared<Arguments>();
    app.add_option("scene", arguments->scene, "The scene file")->type_name("SCENE.osb")->required();
    app.add_option("-o,--output", arguments->output, "The picture to write; its extension says in which format")
        ->type_name("FILE")
        ->required();
    app.add_option("--width", arguments->width, "Pixels")->check(CLI::Range(1, MaxSide))->capture_default_str();
    app.add_option("--height", arguments->height, "Pixels")->check(CLI::Range(1, MaxSide))->capture_default_str();
    app.add_option("--samples", arguments->samples, "Samples for each pixel: more take longer and show less grain")
        ->check(CLI::Range(1, MaxSamples))
        ->capture_default_str();
    app.add_flag("--transparent", arguments->isTransparent, "Leave the background empty");
    app.footer(
        "The camera frames the models. The last environment of the scene lights it and surrounds it, where no plate "
        "lies\n"
        "under the image.\n\n"
        "Example: kxassets load Chair Table --library ~/Furniture -o room.osb && kxassets render room.osb -o room.png");
    return [arguments](Context &context) { return run(*arguments, context); };
}
