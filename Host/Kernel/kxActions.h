// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/Node.h"

#include <string>
#include <vector>

/// What happens when somebody does something to a node: "on click, show this". Main thread only.
///
/// Actions belong to nodes and keep nothing alive; those of destroyed nodes are gone. In a file they stand as text in the
/// JSON attachment of the node that was written, which names nodes by their places below it:
///
///     {"actions": [{"node": "0/2", "trigger": "click", "command": "show", "target": "1", "value": "true"}]}
///
/// A place is the numbers of the children on the way, and "" the node itself.
class KX_KERNEL_EXPORT kxActions
{
public:
    struct Action
    {
        std::string trigger; ///< what has to happen, such as "click"
        std::string command; ///< what is done then
        osg::NodePtr target; ///< to what; null for the scene, and when it was destroyed
        std::string value;   ///< the command's own argument

        bool operator==(const Action &other) const = default;
    };

    kxActions() = delete;

    /// Nothing happens for a null node, and for an action that the node has already.
    static void add(const osg::NodePtr &node, const Action &action);
    /// In the order in which they were added.
    static std::vector<Action> of(const osg::NodePtr &node);
    static void removeAll(const osg::NodePtr &node);

    /// Writes the actions at and below the node into its JSON attachment, beside what else its object holds; text that is
    /// no object moves into the member "text". Targets elsewhere are left out, and their actions with them. Without
    /// actions no attachment is made, and one that is there loses its member "actions" only. Attachments below that hold
    /// actions already are brought up to date.
    static void attachTo(const osg::NodePtr &node);
    /// Adds what the JSON attachments at and below the node say, and leaves them. What is no such text, or names places
    /// that do not exist, is passed over.
    static void readFrom(const osg::NodePtr &node);
};
