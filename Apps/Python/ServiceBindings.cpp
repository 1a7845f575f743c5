// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxAssetsService.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxTypeConverter.h"
#include "Python/Containers.h"
#include "Python/LibraryCall.h"

#include <pybind11/stl.h>

#include <optional>
#include <vector>

namespace py = pybind11;

namespace kxPython {

namespace {

/// The library's service; it has no state of its own.
struct Assets
{};

/// A script's function that is called when the assets of the scene changed, until it is disconnected.
class Connection
{
public:
    explicit Connection(QMetaObject::Connection connection) : _connection(std::move(connection)) {}
    void disconnect() { QObject::disconnect(_connection); }

private:
    QMetaObject::Connection _connection;
};

/// Those that scripts made; the functions must go before the interpreter does.
std::vector<QMetaObject::Connection> &connections()
{
    static std::vector<QMetaObject::Connection> all;
    return all;
}

void disconnectAll()
{
    for (const QMetaObject::Connection &connection : connections())
        QObject::disconnect(connection);
    connections().clear();
}

kxAssetsService &service()
{
    auto *found = kxKernelServiceFactory::the().getService<kxAssetsService>();
    if (!found)
        throw Error("the library of assets is not loaded");
    return *found;
}

std::vector<kxdNodePtr> scriptNodes(const py::object &objects)
{
    std::vector<kxdNodePtr> nodes;
    for (const osg::NodePtr &node : nodesOf(objects))
        nodes.push_back(kxTypeConverter::convertNode(node));
    return nodes;
}

std::vector<std::string> select(const Assets & /*assets*/, const py::object &nodes)
{
    const std::vector<kxdNodePtr> all = scriptNodes(nodes);
    const LibraryCall call;
    return kxTypeConverter::convertStringList(service().selectAssets(all));
}

py::list find(const Assets & /*assets*/, const py::object &nodes, const std::optional<NodeObject> &root)
{
    py::list found;
    const osg::NodePtr top = root ? root->node() : kxScenegraph::getRoot();
    for (const kxdNodePtr &node : service().findAssetNodes(scriptNodes(nodes), kxTypeConverter::convertNode(top)))
        found.append(wrap(kxTypeConverter::convertNode(node)));
    return found;
}

void loadSceneplates(const Assets & /*assets*/, const std::vector<std::string> &uuids,
                     const std::optional<NodeObject> &parent)
{
    QStringList texts;
    for (const std::string &uuid : uuids)
        texts.append(QString::fromStdString(uuid));
    const LibraryCall call;
    service().loadSceneplateAssets(texts, kxTypeConverter::convertNode(parent ? parent->node() : osg::NodePtr()));
}

/// What the function throws is printed, and stops nobody: it is called in the middle of the library's work.
Connection onChanged(const Assets & /*assets*/, const py::function &function)
{
    std::erase_if(connections(), [](const QMetaObject::Connection &connection) { return !connection; });
    connections().push_back(QObject::connect(&service(), &kxAssetsService::assetsChanged, &service(), [function] {
        const py::gil_scoped_acquire lock;
        try {
            function();
        } catch (py::error_already_set &error) {
            error.discard_as_unraisable(function);
        }
    }));
    return Connection(connections().back());
}

template <void (kxAssetsService::*operation)(const std::vector<kxdNodePtr> &)>
void onNodes(const Assets & /*assets*/, const py::object &nodes)
{
    const std::vector<kxdNodePtr> all = scriptNodes(nodes);
    const LibraryCall call;
    (service().*operation)(all);
}

} // namespace

void bindServices(py::module_ &module)
{
    py::class_<Connection>(module, "Connection", "A function that is called when something changes.")
        .def("disconnect", &Connection::disconnect);
    py::class_<Assets>(module, "Assets", "What can be done with the assets that are in use in the scene: kx.assets.")
        .def("remove_references", &onNodes<&kxAssetsService::removeAssetReference>, py::arg("nodes"),
             "Makes the nodes ordinary ones, which belong to no asset.")
        .def("select", &select, py::arg("nodes"),
             "Selects the assets of the nodes in the library; one text for each that cannot be found.")
        .def("overwrite", &onNodes<&kxAssetsService::overwriteAssets>, py::arg("nodes"),
             "Saves the nodes over the assets that they came from.")
        .def("find", &find, py::arg("nodes"), py::arg("root") = py::none(),
             "All nodes at and below the root, or in the scene, that came from the same assets.")
        .def("mark_edited", &onNodes<&kxAssetsService::markAssetsEdited>, py::arg("nodes"),
             "Notes that the nodes differ from what is stored.")
        .def("query_changes", &onNodes<&kxAssetsService::queryAssetChanges>, py::arg("nodes"),
             "Has the asset manager show which of the nodes differ from what is stored.")
        .def("load_sceneplates", &loadSceneplates, py::arg("uuids"), py::arg("parent") = py::none(),
             "Loads sceneplates below a node, or at the top.")
        .def("on_changed", &onChanged, py::arg("function"),
             "Calls the function whenever references to assets changed. The answer's disconnect() ends that.")
        .def("__repr__", [](const Assets &) { return "<kx.Assets>"; });
    module.attr("assets") = py::cast(Assets());
    py::module_::import("atexit").attr("register")(py::cpp_function(&disconnectAll));
}

} // namespace kxPython
