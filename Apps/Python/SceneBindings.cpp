// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxNodePath.h"
#include "AssetSession/kxSceneOpener.h"
#include "Import/kxSceneImporter.h"
#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "Kernel/kxSelectionManager.h"
#include "Python/Containers.h"
#include "Python/LibraryCall.h"
#include "Rendering/kxSceneRenderer.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/Switch.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"

#include <pybind11/stl.h>

#include <array>
#include <optional>

namespace py = pybind11;

namespace kxPython {

namespace {

/// The one document of the program; it has no state of its own.
struct Scene
{};

using Point = std::array<double, 3>;

std::vector<osg::NodePtr> childrenOf(const osg::NodePtr &node)
{
    std::vector<osg::NodePtr> children;
    for (std::size_t i = 0; node && i < node->getNChildren(); ++i)
        children.push_back(node->getChild(i));
    return children;
}

/// What a path may begin with: the scene's nodes, and its plates.
std::vector<osg::NodePtr> topmostNodes()
{
    std::vector<osg::NodePtr> nodes = childrenOf(kxScenegraph::getRoot());
    const std::vector<osg::NodePtr> plates = childrenOf(kxSceneplateUtils::getSceneplateRoot());
    nodes.insert(nodes.end(), plates.begin(), plates.end());
    return nodes;
}

py::list openScene(const Scene & /*scene*/, const py::object &path)
{
    const std::string file = pathOf(path);
    const LibraryCall call;
    return wrapAll(call.take(kxSceneOpener::open(QString::fromStdString(file))).allNodes());
}

/// The environments that light surfaces belong to the scene, and not to what is written.
bool isEnvironmentOfSurface(const osg::FieldContainer &owner, const osg::FieldInfo &field)
{
    return &owner.getType() == &osg::UBRDFMaterial::getClassType() &&
           field.mask == osg::UBRDFMaterial::EnvironmentFieldMask;
}

void saveScene(const Scene & /*scene*/, const py::object &path, const py::object &objects)
{
    std::vector<osg::FieldContainerPtr> roots;
    if (py::isinstance<ContainerObject>(objects))
        roots.push_back(unwrap(objects));
    else
        for (const py::handle object : objects.cast<py::iterable>())
            roots.push_back(unwrap(object));
    std::erase(roots, nullptr);
    osg::SceneWriteOptions options;
    options.leavesOut = isEnvironmentOfSurface;
    LibraryCall::check(osg::writeSceneFile(pathOf(path), roots, options));
}

py::object nodeAt(const Scene & /*scene*/, const std::string &path)
{
    const osg::Result<osg::NodePtr> node = kxNodePath::find(path, topmostNodes());
    if (!node)
        throw Error(node.reason());
    return wrap(node.value());
}

std::string pathOfNode(const Scene & /*scene*/, const NodeObject &object)
{
    return kxNodePath::of(object.node(), topmostNodes());
}

void select(const Scene & /*scene*/, const py::object &nodes)
{
    kxSelectionManager::clear();
    kxSelectionManager::selectNodes(nodesOf(nodes), true);
}

py::list environments(const Scene & /*scene*/)
{
    py::list all;
    if (const auto choices = kxDefaultEnvironment::getSwitch())
        for (const osg::MaterialPtr &material : choices->getMaterials())
            all.append(wrap(material));
    return all;
}

py::object environment(const Scene & /*scene*/)
{
    const auto choices = kxDefaultEnvironment::getSwitch();
    return wrap(choices ? choices->getCurrentMaterial() : osg::MaterialPtr());
}

/// One of those there are becomes current; another one joins them.
void setEnvironment(const Scene & /*scene*/, const MaterialObject &object)
{
    const auto choices = kxDefaultEnvironment::getSwitch();
    const osg::NodePtr places = kxScenegraph::environmentGeometrySwitch();
    if (!choices || !places)
        throw Error("the scene has no environments to switch between");
    const auto &materials = choices->getMaterials();
    for (std::size_t i = 0; i < materials.size(); ++i) {
        if (materials[i] != object.material())
            continue;
        {
            const osg::CPEditor edit(choices, osg::SwitchMaterial::ChoiceFieldMask);
            choices->setChoice(static_cast<std::int32_t>(i));
        }
        if (const auto place = osg::SwitchPtr::dcast(places->getCore())) {
            const osg::CPEditor edit(place, osg::Switch::ChoiceFieldMask);
            place->setChoice(static_cast<std::int32_t>(i));
        }
        return;
    }
    if (!object.container->getType().isDerivedFrom(osg::UEnvironmentMaterial::getClassType()) ||
        !kxController::addToDefaultEnvironment(object.material(), nullptr, true))
        throw py::value_error("'" + kxMaterials::getName(object.material()) + "' is no environment");
}

struct View
{
    std::optional<Point> from;
    std::optional<Point> at;
    std::optional<double> fieldOfView;
};

osg::FCRef<osg::UberCamera> cameraFor(const std::vector<osg::NodePtr> &nodes, const View &view)
{
    osg::Volume box;
    for (const osg::NodePtr &node : nodes)
        box.extend(node->getWorldVolume());
    osg::FCRef<osg::UberCamera> camera(osg::UberCamera::create());
    const osg::CPEditor edit(camera.get(), osg::AllFieldMask);
    // Three quarters from the front and above, where most things show what they are.
    camera->setFrom({1.0, 0.7, 1.6});
    camera->setAt({0.0, 0.0, 0.0});
    if (view.fieldOfView)
        camera->setFieldOfView(*view.fieldOfView);
    camera->zoomTo(box, true, {0.0, 0.0, 0.0});
    if (view.at)
        camera->setAt({*view.at});
    if (view.from)
        camera->setFrom({*view.from});
    return camera;
}

// NOLINTNEXTLINE(readability-function-size): an argument for each keyword
py::object render(const py::object &nodes, int width, int height, int samples, bool isTransparent,
                  const std::optional<Point> &from, const std::optional<Point> &at,
                  const std::optional<double> &fieldOfView, const py::object &progress)
{
    if (width < 1 || height < 1 || samples < 1)
        throw py::value_error("width, height and samples are numbers from 1 on");
    std::vector<osg::NodePtr> roots = nodesOf(nodes);
    std::vector<osg::NodePtr> framed = roots;
    kxSceneRenderer::Settings settings;
    if (nodes.is_none()) {
        roots = {kxScenegraph::getRoot()};
        framed = roots;
        settings.plates = kxSceneplateUtils::getSceneplateRoot();
    }
    settings.width = width;
    settings.height = height;
    settings.samples = samples;
    settings.isBackgroundVisible = !isTransparent;
    Progress told(progress);
    settings.isCancelled = [&told] { return !told([](const py::object &function) { return function(); }); };
    const osg::FCRef<osg::UberCamera> camera = cameraFor(framed, {from, at, fieldOfView});
    osg::FCRef<osg::Image> image;
    {
        const LibraryCall call;
        const py::gil_scoped_release unlocked;
        image = osg::FCRef<osg::Image>::adopt(kxSceneRenderer::render(roots, camera.get(), settings));
    }
    told.rethrow();
    return wrap(image.get());
}

py::object importScene(const py::object &path)
{
    const std::string file = pathOf(path);
    const LibraryCall call;
    const auto read = [&file] {
        const py::gil_scoped_release unlocked;
        return kxSceneImporter().importScene(file);
    };
    return wrap(call.take(read()).root.get());
}

py::list importMaterials(const py::object &path)
{
    const std::string file = pathOf(path);
    const LibraryCall call;
    const auto read = [&file] {
        const py::gil_scoped_release unlocked;
        return kxSceneImporter().importMaterials(file);
    };
    py::list all;
    for (const osg::FCRef<osg::Material> &material : call.take(read()))
        all.append(wrap(material.get()));
    return all;
}

py::object importEnvironment(const py::object &path)
{
    const std::string file = pathOf(path);
    const LibraryCall call;
    return wrap(call.take(kxSceneImporter().importEnvironment(file)).get());
}

} // namespace

void bindScene(py::module_ &module)
{
    py::class_<Scene>(module, "Scene", "The scene document. There is one: kx.scene.")
        .def_property_readonly("root", [](const Scene &) { return wrap(kxScenegraph::getRoot()); })
        .def_property_readonly(
            "plates", [](const Scene &) { return wrap(kxSceneplateUtils::getSceneplateRoot()); },
            "What holds the sceneplates.")
        .def_property(
            "selection", [](const Scene &) { return wrapAll(kxSelectionManager::getSelectedNodes()); }, &select)
        .def_property_readonly("environments", &environments, "What can be switched between.")
        .def_property("environment", &environment, &setEnvironment,
                      "What lights the scene. Setting one that is not among the environments adds it to them.")
        .def_property(
            "modified", [](const Scene &) { return kxController::isModified(); },
            [](const Scene &, bool modified) { kxController::setModified(modified); })
        .def(
            "new", [](const Scene &) { kxScenegraph::newDocument(); }, "Begins an empty scene.")
        .def("open", &openScene, py::arg("path"), "Adds what a scene file holds; its topmost nodes.")
        .def("save", &saveScene, py::arg("path"), py::arg("objects"),
             "Writes nodes and materials, with all that they refer to, into a scene file.")
        .def("node", &nodeAt, py::arg("path"), "The node at a path such as 'Room/Chair#2'.")
        .def("path", &pathOfNode, py::arg("node"))
        .def(
            "add",
            [](const Scene &, const NodeObject &object) {
                const osg::NodePtr root = kxScenegraph::getRoot();
                const osg::CPEditor edit(root, osg::Node::ChildrenFieldMask);
                root->addChild(object.node());
            },
            py::arg("node"), "Hangs a node below the root.")
        .def("__repr__", [](const Scene &) { return "<kx.Scene>"; });
    module.attr("scene") = py::cast(Scene());
    module.def("render", &render, py::arg("nodes") = py::none(), py::kw_only(), py::arg("width") = 640,
               py::arg("height") = 480, py::arg("samples") = 32, py::arg("transparent") = false,
               py::arg("eye") = py::none(), py::arg("target") = py::none(), py::arg("field_of_view") = py::none(),
               py::arg("progress") = py::none(),
               "Renders nodes, or the whole scene with its plates. The camera frames them where eye and target do not "
               "say otherwise. progress() is called now and then; when it answers False the result is None.");
    module.def("import_scene", &importScene, py::arg("path"), "A model of another program as a node.");
    module.def("import_materials", &importMaterials, py::arg("path"), "The materials of a model.");
    module.def("import_environment", &importEnvironment, py::arg("path"), "A panorama as an environment.");
}

} // namespace kxPython
