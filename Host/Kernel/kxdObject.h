// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#if !defined(Q_MOC_RUN) // which cannot read concepts
#include "SceneGraph/Node.h"
#endif

#include <QObject>
#include <QSharedPointer>

#include <cstdint>

/// An object of the scene as scripts and services hand it around: known by its id, which keeps nothing alive.
class KX_KERNEL_EXPORT kxdObject : public QObject
{
    Q_OBJECT

public:
    explicit kxdObject(std::uint32_t id) : _containerId(id) {}
    ~kxdObject() override;

    std::uint32_t getObjectId() const { return _containerId; }

private:
    std::uint32_t _containerId;
};

/// A node.
class KX_KERNEL_EXPORT kxdNode : public kxdObject
{
    Q_OBJECT

public:
    using kxdObject::kxdObject;
    ~kxdNode() override;

    /// Null when it was destroyed.
    osg::NodePtr node() const;
};

/// A node whose content is loaded from another file.
class KX_KERNEL_EXPORT kxdReferenceNode final : public kxdNode
{
    Q_OBJECT

public:
    using kxdNode::kxdNode;
    ~kxdReferenceNode() override;
};

using kxdNodePtr = QSharedPointer<kxdNode>;
using kxdReferenceNodePtr = QSharedPointer<kxdReferenceNode>;
