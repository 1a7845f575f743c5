// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/Node.h"

#include <set>
#include <string>

/// The keys by which nodes are referred to by what does not hold them: constraints, light-link sets, synchronisations.
/// Main thread only.
class KX_KERNEL_EXPORT kxNodeKeys
{
public:
    kxNodeKeys() = delete;

    /// "" for null and for a node without a key.
    static std::string get(const osg::NodePtr &node);
    /// The node's key, made when it has none; "" for null.
    static std::string make(const osg::NodePtr &node);
    /// The first node at or below \a root with the key; null when there is none.
    static osg::NodePtr find(const osg::NodePtr &root, const std::string &key);
    /// The keys at and below \a root.
    static std::set<std::string> below(const osg::NodePtr &root);

    /// Gives every keyed node at and below \a root a key of its own, and what there refers to the old ones the new: a
    /// second copy of the same file would otherwise be taken for the first. References to other keys stay.
    static void renew(const osg::NodePtr &root);
};
