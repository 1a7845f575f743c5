// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxNodeKeys.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/KeyAttachment.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/NodeWalk.h"
#include "SceneGraph/SynchronizationAttachment.h"

#include <QUuid>

#include <algorithm>
#include <map>
#include <vector>

namespace {

using Renamed = std::map<std::string, std::string>;

std::string newKey()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString();
}

std::vector<std::string> renamedKeys(const osg::MField<std::string> &keys, const Renamed &renamed)
{
    std::vector<std::string> result(keys.begin(), keys.end());
    for (std::string &key : result)
        if (const auto found = renamed.find(key); found != renamed.end())
            key = found->second;
    return result;
}

void renamePool(const osg::MaterialPool &pool, const Renamed &renamed)
{
    for (const osg::ConstraintPtr &constraint : pool.getConstraints()) {
        if (!constraint)
            continue;
        const osg::CPEditor edit(constraint, osg::Constraint::EndsFieldMask);
        constraint->editEnds() = renamedKeys(constraint->getEnds(), renamed);
    }
    for (const osg::LightLinkSetPtr &set : pool.getLightLinkSets()) {
        if (!set)
            continue;
        const osg::CPEditor edit(set, osg::LightLinkSet::LightsFieldMask | osg::LightLinkSet::MembersFieldMask);
        set->editLights() = renamedKeys(set->getLights(), renamed);
        set->editMembers() = renamedKeys(set->getMembers(), renamed);
    }
}

} // namespace

std::string kxNodeKeys::get(const osg::NodePtr &node)
{
    const auto attachment = osg::findAttachment<osg::KeyAttachment>(node);
    return attachment ? attachment->getKey() : std::string();
}

std::string kxNodeKeys::make(const osg::NodePtr &node)
{
    if (!node || !get(node).empty())
        return get(node);
    const osg::KeyAttachmentPtr attachment = osg::KeyAttachment::create();
    {
        const osg::CPEditor edit(attachment, osg::KeyAttachment::KeyFieldMask);
        attachment->setKey(newKey());
    }
    const osg::CPEditor edit(node, osg::AttachmentContainer::AttachmentsFieldMask);
    node->addAttachment(attachment);
    return attachment->getKey();
}

osg::NodePtr kxNodeKeys::find(const osg::NodePtr &root, const std::string &key)
{
    osg::NodePtr found;
    osg::forEachNode(root, [&](const osg::NodePtr &node) {
        if (!found && !key.empty() && get(node) == key)
            found = node;
    });
    return found;
}

std::set<std::string> kxNodeKeys::below(const osg::NodePtr &root)
{
    std::set<std::string> keys;
    osg::forEachNode(root, [&keys](const osg::NodePtr &node) {
        if (const std::string key = get(node); !key.empty())
            keys.insert(key);
    });
    return keys;
}

void kxNodeKeys::renew(const osg::NodePtr &root)
{
    Renamed renamed;
    osg::forEachNode(root, [&renamed](const osg::NodePtr &node) {
        const auto attachment = osg::findAttachment<osg::KeyAttachment>(node);
        if (!attachment)
            return;
        const std::string key = newKey();
        renamed.emplace(attachment->getKey(), key);
        const osg::CPEditor edit(attachment, osg::KeyAttachment::KeyFieldMask);
        attachment->setKey(key);
    });
    osg::forEachNode(root, [&renamed](const osg::NodePtr &node) {
        if (const auto record = osg::findAttachment<osg::SynchronizationAttachment>(node)) {
            const osg::CPEditor edit(record, osg::SynchronizationAttachment::PartnersFieldMask);
            record->editPartners() = renamedKeys(record->getPartners(), renamed);
        }
        if (const auto pool = osg::MaterialPoolPtr::dcast(node->getCore()))
            renamePool(*pool, renamed);
    });
}
