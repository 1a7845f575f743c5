// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxSelectionManager.h"

#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "SceneGraph/FieldContainerFactory.h"

#include <algorithm>
#include <cstdint>

namespace {

/// By id, because nodes may be destroyed while they are selected.
std::vector<std::uint32_t> &selection()
{
    static std::vector<std::uint32_t> ids;
    return ids;
}

void replaceSelection(std::vector<std::uint32_t> ids)
{
    if (ids == selection())
        return;
    selection() = std::move(ids);
    emit kxScenegraph::notifier().selectionChanged();
}

} // namespace

void kxSelectionManager::selectNodes(const std::vector<osg::NodePtr> &nodes, bool select)
{
    std::vector<std::uint32_t> ids = selection();
    for (const osg::NodePtr &node : nodes) {
        const auto found = std::find(ids.begin(), ids.end(), node.getFieldContainerId());
        if (!select && found != ids.end())
            ids.erase(found);
        else if (select && node && found == ids.end())
            ids.push_back(node.getFieldContainerId());
    }
    replaceSelection(std::move(ids));
}

void kxSelectionManager::clear()
{
    replaceSelection({});
}

std::vector<osg::NodePtr> kxSelectionManager::getSelectedNodes()
{
    std::vector<osg::NodePtr> nodes;
    for (const std::uint32_t id : selection()) {
        if (const auto node = osg::NodePtr::dcast(osg::FieldContainerFactory::the().getContainer(id)))
            nodes.push_back(node);
    }
    return nodes;
}

bool kxSelectionManager::isSelected(const osg::NodePtr &node)
{
    return node && std::find(selection().begin(), selection().end(), node.getFieldContainerId()) != selection().end();
}
