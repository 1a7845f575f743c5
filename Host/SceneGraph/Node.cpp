// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Node.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/Switch.h"
#include "SceneGraph/Transform.h"
#include "SceneGraph/Transform3D.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace osg {

OSG_CONTAINER_SOURCE(Node)

Node::~Node()
{
    for (const NodePtr &child : getChildren())
        if (child && child->_parent == this)
            child->_parent = nullptr;
}

Node::NodePtr Node::getParent() const
{
    return NodePtr(_parent);
}

Node::NodePtr Node::getChild(std::size_t index) const
{
    return index < getNChildren() ? getChildren()[index] : NodePtr();
}

std::int32_t Node::findChild(const NodePtr &child) const
{
    if (!child || child->_parent != this)
        return -1;
    const auto &children = getChildren();
    const auto found = std::find(children.begin(), children.end(), child);
    return found != children.end() ? static_cast<std::int32_t>(found - children.begin()) : -1;
}

void Node::addChild(const NodePtr &child)
{
    insertChild(std::numeric_limits<std::int32_t>::max(), child);
}

void Node::insertChild(std::int32_t index, const NodePtr &child)
{
    if (!mayBecomeChild(child))
        return;
    const FCRef<Node> keepsAlive(child);
    child->detach();
    const auto count = static_cast<std::int32_t>(getNChildren());
    editChildren().insert(static_cast<std::size_t>(std::clamp(index, 0, count)), child);
    child->_parent = this;
}

bool Node::replaceChildBy(const NodePtr &old, const NodePtr &replacement)
{
    if (findChild(old) < 0 || old == replacement || !mayBecomeChild(replacement))
        return false;
    const FCRef<Node> keepsAlive(replacement);
    replacement->detach();
    const auto index = static_cast<std::size_t>(findChild(old));
    old->_parent = nullptr;
    replacement->_parent = this;
    editChildren().replace(index, replacement);
    return true;
}

bool Node::subChild(const NodePtr &child)
{
    const std::int32_t index = findChild(child);
    if (index < 0)
        return false;
    child->_parent = nullptr;
    editChildren().erase(static_cast<std::size_t>(index));
    return true;
}

void Node::detach()
{
    if (_parent == nullptr)
        return;
    const NodePtr parent = getParent();
    const CPEditor edit(parent, ChildrenFieldMask);
    parent->subChild(Ptr(this));
}

bool Node::mayBecomeChild(const NodePtr &child) const
{
    if (!child)
        return false;
    // A leaf is nobody's ancestor, so that trees grow downwards at the same cost at every depth.
    if (child->getNChildren() == 0)
        return child.get() != this;
    for (const Node *node = this; node != nullptr; node = node->_parent)
        if (node == child.get())
            return false;
    return true;
}

void Node::changed(FieldMask fields)
{
    if ((fields & ChildrenFieldMask) == 0)
        return;
    // Children may also have been set as a whole, by reading and cloning.
    for (const NodePtr &child : getChildren())
        if (child)
            child->_parent = this;
}

Matrix Node::getToWorld() const
{
    Matrix toWorld;
    for (const Node *node = this; node != nullptr; node = node->_parent)
        toWorld = getCoreMatrix(node->getCore()) * toWorld;
    return toWorld;
}

Volume Node::getWorldVolume() const
{
    struct Visit
    {
        const Node *node;
        Matrix toWorld;
    };
    Volume volume;
    std::vector<Visit> pending{{this, getToWorld()}};
    while (!pending.empty()) {
        const Visit visit = pending.back();
        pending.pop_back();
        if (const GeometryPtr geometry = dcast<GeometryPtr>(visit.node->getCore()))
            volume.extend(geometry->getVolume().transformed(visit.toWorld));
        const SwitchPtr chooser = dcast<SwitchPtr>(visit.node->getCore());
        for (std::size_t i = 0; i < visit.node->getNChildren(); ++i) {
            if (const NodePtr child = visit.node->getChild(i); child && (!chooser || chooser->shows(i)))
                pending.push_back({child.get(), visit.toWorld * getCoreMatrix(child->getCore())});
        }
    }
    return volume;
}

NodePtr makeNodeFor(const NodeCorePtr &core)
{
    const NodePtr node = Node::create();
    const CPEditor edit(node, Node::CoreFieldMask);
    node->setCore(core);
    return node;
}

Matrix getCoreMatrix(const NodeCorePtr &core)
{
    if (const Transform3DPtr transform = dcast<Transform3DPtr>(core))
        return transform->getMatrix();
    if (const TransformPtr transform = dcast<TransformPtr>(core))
        return transform->getMatrix();
    return {};
}

} // namespace osg
