// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxNodeSaving.h"

#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxCreateGroupedNodes.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxSceneplateAssetItem.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxSceneplateUtils.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/Environment.h"

#include <memory>

namespace {

/// Answers the questions of saving while it lives, and notes what they were about.
class Answerer
{
public:
    explicit Answerer(const kxNodeSaving::Answers &answers)
    {
        _before = kxModalQuestion::setAnswerer([this, answers](const kxModalQuestion::Question &question) {
            const bool isRootQuestion = question.buttons.testFlag(QMessageBox::Yes);
            const bool isAgreed = isRootQuestion ? answers.makesAssetRoot : answers.makesReferencesOrdinary;
            if (isAgreed)
                _remarks.emplace_back(isRootQuestion ? "put below a new node by which it can be placed"
                                                     : "references to other files became ordinary nodes");
            else
                _obstacle = isRootQuestion ? "it is no node that can be placed and has children"
                                           : "it holds references to other files, which assets cannot hold";
            return isAgreed ? (isRootQuestion ? QMessageBox::Yes : QMessageBox::Ok) : QMessageBox::Cancel;
        });
    }
    ~Answerer() { kxModalQuestion::setAnswerer(_before); }
    Answerer(const Answerer &) = delete;
    Answerer &operator=(const Answerer &) = delete;

    const std::vector<std::string> &remarks() const { return _remarks; }
    /// What was refused; "" where nothing was.
    const std::string &obstacle() const { return _obstacle; }

private:
    kxModalQuestion::Answerer _before;
    std::vector<std::string> _remarks;
    std::string _obstacle;
};

/// Another name for a node while it lives.
class TemporaryName
{
public:
    TemporaryName(const osg::NodePtr &node, const std::string &name)
        : _nodeId(node.getFieldContainerId()), _before(kxNodeUtils::getName(node))
    {
        if (!name.empty())
            kxNodeUtils::setName(node, name, false, nullptr);
    }
    ~TemporaryName()
    {
        const osg::NodePtr node = kxNodeUtils::getNodeFromId(_nodeId);
        if (node && kxNodeUtils::getName(node) != _before)
            kxNodeUtils::setName(node, _before, false, nullptr);
    }
    TemporaryName(const TemporaryName &) = delete;
    TemporaryName &operator=(const TemporaryName &) = delete;

private:
    std::uint32_t _nodeId;
    std::string _before;
};

std::unique_ptr<kxAssetItem> makeItem(kxAssetCategoryType category)
{
    if (category == Environment)
        return std::make_unique<kxEnvironmentNodeAssetItem>();
    if (category == Sceneplate)
        return std::make_unique<kxSceneplateAssetItem>();
    return std::make_unique<kxGeometryAssetItem>();
}

} // namespace

kxAssetCategoryType kxNodeSaving::categoryOf(const osg::NodePtr &node)
{
    if (!node)
        return Undefined;
    if (isOfType(node->getCore(), osg::Environment::getClassType()))
        return Environment;
    for (osg::NodePtr above = node; above; above = above->getParent())
        if (above == kxSceneplateUtils::getSceneplateRoot())
            return Sceneplate;
    return Geometry;
}

osg::Result<kxNodeSaving::Saved> kxNodeSaving::saveItem(const osg::NodePtr &node, const std::string &uuid,
                                                        const QUrl &folder) const
{
    const std::unique_ptr<kxAssetItem> item = makeItem(categoryOf(node));
    item->initFrom(node, uuid, !uuid.empty());
    const Saved saved{item->uuid(), item->name(), {}};
    const Answerer answerer(_answers);
    if (item->save(folder))
        return Saved{saved.uuid, saved.name, answerer.remarks()};
    const std::string reason = answerer.obstacle().empty()
                                   ? "it cannot be written to '" + folder.toLocalFile().toStdString() + "'"
                                   : answerer.obstacle();
    return osg::Failure{"'" + saved.name + "' was not saved: " + reason};
}

osg::Result<kxNodeSaving::Saved> kxNodeSaving::save(const osg::NodePtr &node, const std::string &name,
                                                    const QUrl &folder) const
{
    if (!node)
        return osg::Failure{"there is no node to save"};
    const TemporaryName named(node, name);
    return saveItem(node, {}, folder);
}

osg::Result<kxNodeSaving::Saved> kxNodeSaving::update(const osg::NodePtr &node) const
{
    const osg::AssetAttachmentPtr attachment =
        node ? osg::AssetAttachment::getAssetAttachment(node) : osg::AssetAttachmentPtr();
    if (!attachment)
        return osg::Failure{"'" + kxNodeUtils::getName(node) + "' came from no asset"};
    kxAssetItem *stored = kxAssetItemFactory::the().findItem(attachment->getUuid());
    if (!stored)
        return osg::Failure{"'" + kxNodeUtils::getName(node) + "' came from an asset that is not in the library"};
    const TemporaryName named(node, stored->name()); // people may have given the asset another name
    return saveItem(node, attachment->getUuid(), stored->parentDirectoryUrl());
}

osg::Result<kxNodeSaving::Saved> kxNodeSaving::saveGroup(const std::vector<osg::NodePtr> &nodes,
                                                         const std::string &name, const QUrl &folder) const
{
    if (nodes.empty())
        return osg::Failure{"there is no node to save"};
    const kxAssetCategoryType category = categoryOf(nodes.front());
    for (const osg::NodePtr &node : nodes)
        if (categoryOf(node) != category || category == Environment)
            return osg::Failure{"'" + kxNodeUtils::getName(node) + "' cannot be saved together with the others"};
    kxCreateGroupedNodes group(category);
    if (!group.prepare({nodes.begin(), nodes.end()}))
        return osg::Failure{"'" + name + "' was not saved: its nodes have no place in common"};
    kxNodeUtils::setName(group.getRoot(), name, false, nullptr);
    return saveItem(group.getRoot(), {}, folder);
}
