// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldContainer.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/Material.h"
#include "SceneGraph/Matrix.h"
#include "SceneGraph/Node.h"

#include <pybind11/pybind11.h>

#include <vector>

namespace kxPython {

/// A container in the hands of a script, which keeps it alive.
struct ContainerObject
{
    osg::FCRef<osg::FieldContainer> container;
};
struct NodeObject : ContainerObject
{
    osg::NodePtr node() const { return osg::NodePtr::dcast(container.get()); }
};
struct MaterialObject : ContainerObject
{
    osg::MaterialPtr material() const { return osg::MaterialPtr::dcast(container.get()); }
};
struct ImageObject : ContainerObject
{
    osg::ImagePtr image() const { return osg::ImagePtr::dcast(container.get()); }
};

/// The Python object of the class that fits; None for null.
pybind11::object wrap(const osg::FieldContainerPtr &container);
pybind11::list wrapAll(const std::vector<osg::NodePtr> &nodes);
/// Null for None; throws TypeError for what is no container.
osg::FieldContainerPtr unwrap(const pybind11::handle &object);
/// The nodes of a list or of a single node, without None.
std::vector<osg::NodePtr> nodesOf(const pybind11::handle &object);

/// Four rows of four numbers, and back.
pybind11::object matrixToPython(const osg::Matrix &matrix);
osg::Matrix matrixFromPython(const pybind11::handle &value);

/// UTF-8, from text or anything that is a path.
std::string pathOf(const pybind11::handle &path);

void bindContainers(pybind11::module_ &module);
void bindImages(pybind11::module_ &module);
void bindScene(pybind11::module_ &module);
void bindLibrary(pybind11::module_ &module);
void bindServices(pybind11::module_ &module);

} // namespace kxPython
