// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "Kernel/kxSceneplateTypes.h"
#include "SceneGraph/Node.h"

#include <string>
#include <vector>

/// The sceneplates of the document: a tree of its own beside the scene's. Main thread only.
class KX_KERNEL_EXPORT kxSceneplateUtils
{
public:
    kxSceneplateUtils() = delete;

    /// What holds all sceneplates; null without a document.
    static osg::NodePtr getSceneplateRoot();
    /// 0 for null.
    static kxSceneplateTypes::NodeType getNodeType(const osg::NodePtr &node);

    /// Writes plates, with all below them, to a file: whole or not at all. The path is UTF-8. Nulls are passed over; false
    /// when nothing is left or the file cannot be written, whose reason is logged for debugging only.
    static bool saveNodes(const std::string &path, const std::vector<osg::NodePtr> &nodes);
    /// The nodes of a file; each entry holds the reference that keeps it alive. Empty, with one line in the log that names
    /// the file and the reason, when it cannot be read.
    static std::vector<osg::FCRef<osg::Node>> loadNodes(const std::string &path);
};
