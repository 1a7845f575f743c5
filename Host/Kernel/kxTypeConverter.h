// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "Kernel/kxdObject.h"

#include <QStringList>

#include <string>
#include <vector>

/// Turns objects of the scene into those that scripts and services hand around, and back. Main thread only.
class KX_KERNEL_EXPORT kxTypeConverter
{
public:
    kxTypeConverter() = delete;

    /// Null for null.
    static kxdNodePtr convertNode(const osg::NodePtr &node);
    /// Null for null, and when the node was destroyed.
    static osg::NodePtr convertNode(const kxdNodePtr &node);
    /// Nulls and destroyed nodes are left out.
    static std::vector<osg::NodePtr> convertToKxNodes(const std::vector<kxdNodePtr> &nodes);
    /// As UTF-8.
    static std::vector<std::string> convertStringList(const QStringList &texts);
};
