// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxMaterialTags.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Python/Containers.h"
#include "Python/FieldAccess.h"
#include "Python/LibraryCall.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/AttachmentContainer.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/NodeWalk.h"
#include "SceneGraph/TagAttachment.h"
#include "SceneGraph/Transform.h"
#include "SceneGraph/Transform3D.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <pybind11/stl.h>

#include <algorithm>
#include <array>
#include <optional>

namespace py = pybind11;

namespace kxPython {

namespace {

using Rows = std::array<std::array<double, 4>, 4>;

std::string nameOf(const ContainerObject &object)
{
    const auto container = osg::AttachmentContainerPtr::dcast(object.container.get());
    return container ? osg::getName(container) : std::string();
}

std::string describe(const ContainerObject &object)
{
    const std::string name = nameOf(object);
    return "<kx." + std::string(object.container->getType().getCName()) +
           (name.empty() ? std::string() : ' ' + std::string(py::repr(py::str(name)))) + '>';
}

std::string describeNode(const NodeObject &object)
{
    const osg::NodeCorePtr core = object.node()->getCore();
    return "<kx.Node " + std::string(py::repr(py::str(nameOf(object)))) +
           (core ? ' ' + std::string(core->getType().getCName()) : std::string()) + '>';
}

py::list fieldNames(const ContainerObject &object)
{
    py::list names;
    for (const osg::FieldInfo &field : object.container->getType().fields())
        names.append(field.name);
    return names;
}

bool isKind(const ContainerObject &object, const std::string &name)
{
    for (const osg::TypeBase *type = &object.container->getType(); type; type = type->getParent())
        if (name == type->getCName())
            return true;
    return false;
}

std::optional<std::string> assetOf(const ContainerObject &object)
{
    const osg::AssetAttachmentPtr asset =
        osg::AssetAttachment::getAssetAttachment(osg::AttachmentContainerPtr::dcast(object.container.get()));
    return asset ? std::optional<std::string>(asset->getUuid()) : std::nullopt;
}

py::object create(const std::string &typeName)
{
    const osg::FieldContainerPtr container = osg::FieldContainerFactory::the().createFieldContainer(typeName);
    if (!container)
        throw py::value_error("there is no type '" + typeName + "' that can be made");
    return wrap(container);
}

py::object clone(const ContainerObject &object)
{
    return wrap(osg::deepClone(object.container.get(), {}));
}

std::optional<std::string> difference(const ContainerObject &a, const ContainerObject &b)
{
    return osg::findDifference(a.container.get(), b.container.get());
}

// Nodes

py::object newNode(const std::string &name, const std::optional<ContainerObject> &core)
{
    osg::NodeCorePtr wanted;
    if (core) {
        wanted = osg::NodeCorePtr::dcast(core->container.get());
        if (!wanted)
            throw py::type_error("a node takes a core, such as kx.create('Group')");
    } else {
        wanted = osg::Transform3D::create();
    }
    const osg::NodePtr node = osg::makeNodeFor(wanted);
    osg::setName(node, name);
    return wrap(node);
}

void addChild(const NodeObject &parent, const NodeObject &child, int index)
{
    const osg::NodePtr above = parent.node();
    for (osg::NodePtr node = above; node; node = node->getParent())
        if (node == child.node())
            throw py::value_error("a node cannot hold itself");
    const osg::CPEditor edit(above, osg::Node::ChildrenFieldMask);
    above->insertChild(index < 0 ? static_cast<std::int32_t>(above->getNChildren()) : index, child.node());
}

void removeFromParent(const NodeObject &object)
{
    const osg::NodePtr parent = object.node()->getParent();
    if (!parent)
        return;
    const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
    parent->subChild(object.node());
}

py::list childrenOf(const NodeObject &object)
{
    py::list children;
    for (std::size_t i = 0; i < object.node()->getNChildren(); ++i)
        children.append(wrap(object.node()->getChild(i)));
    return children;
}

/// The node and everything below, parents first.
py::list walk(const NodeObject &object)
{
    py::list all;
    osg::forEachNode(object.node(), [&all](const osg::NodePtr &node) { all.append(wrap(node)); });
    return all;
}

py::object matrixOf(const NodeObject &object)
{
    return matrixToPython(osg::getCoreMatrix(object.node()->getCore()));
}

void setMatrix(const NodeObject &object, const py::object &value)
{
    const osg::Matrix matrix = matrixFromPython(value);
    if (const auto transform = osg::TransformPtr::dcast(object.node()->getCore())) {
        const osg::CPEditor edit(transform, osg::Transform::MatrixFieldMask);
        transform->setMatrix(matrix);
        return;
    }
    const auto parts = osg::Transform3DPtr::dcast(object.node()->getCore());
    if (!parts)
        throw py::value_error("a node without a transform has no placement of its own");
    const osg::Decomposition decomposition = osg::decompose(matrix);
    const osg::CPEditor edit(parts, osg::AllFieldMask);
    parts->setTranslation(decomposition.translation);
    parts->setRotationAsQuaternion(decomposition.rotation);
    parts->setScale(decomposition.scale);
}

py::object materialOf(const NodeObject &object)
{
    const osg::NodeCorePtr core = object.node()->getCore();
    const osg::FieldInfo *field = core ? core->getType().findField("Material") : nullptr;
    return field ? FieldAccess::get(core, *field) : py::none();
}

void assignMaterial(const NodeObject &object, const std::optional<MaterialObject> &material)
{
    if (!kxNodeUtils::setMaterial(object.node(), material ? material->material() : osg::MaterialPtr(), true, true))
        throw py::value_error("this node takes no material");
}

py::object boundsOf(const NodeObject &object)
{
    const osg::Volume volume = object.node()->getWorldVolume();
    if (volume.isEmpty())
        return py::none();
    const auto point = [](const osg::Vec3d &p) { return py::make_tuple(p[0], p[1], p[2]); };
    return py::make_tuple(point(volume.min()), point(volume.max()));
}

py::list materialsBelow(const NodeObject &object)
{
    py::list all;
    for (const osg::MaterialPtr &material : kxMaterials::getMaterials(object.node()))
        all.append(wrap(material));
    return all;
}

// Materials

std::vector<std::string> tagsOf(const MaterialObject &object)
{
    const auto tags = osg::findAttachment<osg::TagAttachment>(object.material());
    return tags ? tags->getMaterials().values() : std::vector<std::string>();
}

void setTags(const MaterialObject &object, const std::vector<std::string> &wanted)
{
    if (const auto tags = osg::findAttachment<osg::TagAttachment>(object.material())) {
        const osg::CPEditor edit(tags, osg::TagAttachment::MaterialsFieldMask);
        tags->editMaterials().clear();
    }
    for (const std::string &tag : wanted)
        kxMaterialTags::addTag(object.material(), tag);
}

py::list partsOf(const MaterialObject &object)
{
    py::list parts;
    for (const osg::MaterialPtr &part : kxMaterials::getSubMaterials(object.material()))
        parts.append(wrap(part));
    return parts;
}

void bindNodes(py::module_ &module)
{
    py::class_<NodeObject, ContainerObject>(
        module, "Node", "A node of the scene. Its core says what it is: a placement, a mesh, a light ...")
        .def(py::init([](const std::string &name, const std::optional<ContainerObject> &core) {
                 return newNode(name, core).cast<NodeObject>();
             }),
             py::arg("name") = "", py::arg("core") = py::none(),
             "A new node that belongs to no scene yet; without a core one that can be placed.")
        .def_property("name", &nameOf,
                      [](const NodeObject &object, const std::string &name) {
                          kxNodeUtils::setName(object.node(), name, true, nullptr);
                      })
        .def_property_readonly("parent", [](const NodeObject &object) { return wrap(object.node()->getParent()); })
        .def_property_readonly("children", &childrenOf)
        .def_property(
            "core", [](const NodeObject &object) { return wrap(object.node()->getCore()); },
            [](const NodeObject &object, const ContainerObject &core) {
                FieldAccess::set(object.container.get(), FieldAccess::find(*object.container, "Core"), py::cast(core));
            },
            "Nodes that share a core are clones of each other.")
        .def_property("matrix", &matrixOf, &setMatrix,
                      "Four rows of four numbers, applied to column vectors; relative to the parent.")
        .def_property_readonly("world_matrix",
                               [](const NodeObject &object) { return matrixToPython(object.node()->getToWorld()); })
        .def_property_readonly("bounds", &boundsOf, "The lower and the upper corner in the world; None without a mesh.")
        .def_property("material", &materialOf, &assignMaterial, "What is assigned to the node itself, or None.")
        .def_property_readonly("materials", &materialsBelow, "What is assigned to the node and to the nodes below it.")
        .def("add", &addChild, py::arg("child"), py::arg("index") = -1,
             "Takes the child from an old parent; the last one by default.")
        .def("remove", &removeFromParent, "Takes the node from its parent.")
        .def("walk", &walk, "The node and all nodes below it, parents first.")
        .def("__len__", [](const NodeObject &object) { return object.node()->getNChildren(); })
        .def("__bool__", [](const NodeObject &) { return true; })
        .def("__iter__", [](const NodeObject &object) { return py::iter(childrenOf(object)); })
        .def("__repr__", &describeNode);
}

void bindMaterials(py::module_ &module)
{
    py::class_<MaterialObject, ContainerObject>(module, "Material", "A material or an environment.")
        .def(py::init([](const std::string &name, const std::string &type) {
                 const py::object made = create(type);
                 if (!py::isinstance<MaterialObject>(made))
                     throw py::value_error("'" + type + "' is no type of material");
                 auto object = made.cast<MaterialObject>();
                 kxMaterials::setName(object.material(), name, false);
                 return object;
             }),
             py::arg("name"), py::arg("type") = "UBRDFMaterial")
        .def_property("name", &nameOf,
                      [](const MaterialObject &object, const std::string &name) {
                          kxMaterials::setName(object.material(), name, true);
                      })
        .def_property("tags", &tagsOf, &setTags)
        .def_property_readonly("parts", &partsOf, "The entries of a switch or multi-pass material.");
}

} // namespace

py::object wrap(const osg::FieldContainerPtr &container)
{
    if (!container)
        return py::none();
    const osg::FCRef<osg::FieldContainer> kept(container);
    if (osg::isOfType(container, osg::Node::getClassType()))
        return py::cast(NodeObject{{kept}});
    if (osg::isOfType(container, osg::Material::getClassType()))
        return py::cast(MaterialObject{{kept}});
    if (osg::isOfType(container, osg::Image::getClassType()))
        return py::cast(ImageObject{{kept}});
    return py::cast(ContainerObject{kept});
}

py::list wrapAll(const std::vector<osg::NodePtr> &nodes)
{
    py::list all;
    for (const osg::NodePtr &node : nodes)
        all.append(wrap(node));
    return all;
}

osg::FieldContainerPtr unwrap(const py::handle &object)
{
    if (object.is_none())
        return nullptr;
    if (!py::isinstance<ContainerObject>(object))
        throw py::type_error(std::string(py::repr(object)) + " is nothing of the scene");
    return object.cast<const ContainerObject &>().container.get();
}

std::vector<osg::NodePtr> nodesOf(const py::handle &object)
{
    std::vector<osg::NodePtr> nodes;
    const auto add = [&nodes](const py::handle &entry) {
        if (entry.is_none())
            return;
        if (!py::isinstance<NodeObject>(entry))
            throw py::type_error(std::string(py::repr(entry)) + " is no node");
        nodes.push_back(entry.cast<const NodeObject &>().node());
    };
    if (py::isinstance<NodeObject>(object) || object.is_none())
        add(object);
    else
        for (const py::handle entry : object.cast<py::iterable>())
            add(entry);
    return nodes;
}

py::object matrixToPython(const osg::Matrix &matrix)
{
    Rows rows{};
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 4; ++column)
            rows[row][column] = matrix.at(row, column);
    return py::cast(rows);
}

osg::Matrix matrixFromPython(const py::handle &value)
{
    const auto rows = value.cast<Rows>();
    osg::Matrix matrix;
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 4; ++column)
            matrix.at(row, column) = rows[row][column];
    return matrix;
}

std::string pathOf(const py::handle &path)
{
    const py::object plain = py::module_::import("os").attr("fsdecode")(path);
    return plain.cast<std::string>();
}

void bindContainers(py::module_ &module)
{
    py::class_<ContainerObject>(
        module, "Container", "Anything of the scene. Its fields are read and set by name: material['Roughness'] = 0.3")
        .def_property_readonly("type",
                               [](const ContainerObject &object) { return object.container->getType().getCName(); })
        .def_property_readonly("id",
                               [](const ContainerObject &object) { return object.container->getFieldContainerId(); })
        .def_property_readonly("fields", &fieldNames)
        .def_property_readonly("asset_uuid", &assetOf, "The UUID of the asset that it came from, or None.")
        .def("is_kind", &isKind, py::arg("type"), "Whether it is of this type or of one derived from it.")
        .def("clone", &clone, "A copy of it and of all that it refers to.")
        .def("difference", &difference, py::arg("other"), "Where the two differ first, or None.")
        .def("__getitem__",
             [](const ContainerObject &object, const std::string &field) {
                 return FieldAccess::get(object.container.get(), FieldAccess::find(*object.container, field));
             })
        .def("__setitem__",
             [](const ContainerObject &object, const std::string &field, const py::object &value) {
                 FieldAccess::set(object.container.get(), FieldAccess::find(*object.container, field), value);
             })
        .def("__contains__",
             [](const ContainerObject &object, const std::string &field) {
                 return object.container->getType().findField(field) != nullptr;
             })
        .def("__eq__",
             [](const ContainerObject &a, const py::object &b) {
                 return py::isinstance<ContainerObject>(b) &&
                        a.container.get() == b.cast<const ContainerObject &>().container.get();
             })
        .def("__hash__", [](const ContainerObject &object) { return object.container->getFieldContainerId(); })
        .def("__repr__", &describe);
    module.def("create", &create, py::arg("type"), "A new container of the type with this name, such as 'Group'.");
    bindNodes(module);
    bindMaterials(module);
}

} // namespace kxPython
