// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxActions.h"

#include "Kernel/kxNodeUtils.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/JsonAttachment.h"
#include "SceneGraph/NodeWalk.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>

namespace {

struct Kept
{
    std::string trigger;
    std::string command;
    std::uint32_t target = 0;
    std::string value;

    bool operator==(const Kept &other) const = default;
};

using Actions = std::map<std::uint32_t, std::vector<Kept>>;

/// By the node's id.
Actions &actions()
{
    static Actions all;
    return all;
}

std::uint32_t idOf(const osg::NodePtr &node)
{
    return node ? node.getFieldContainerId() : 0;
}

/// Nothing for a node that is elsewhere.
std::optional<QString> placeBelow(const osg::NodePtr &root, osg::NodePtr node)
{
    QStringList numbers;
    while (node && node != root) {
        const osg::NodePtr parent = node->getParent();
        if (parent)
            numbers.prepend(QString::number(parent->findChild(node)));
        node = parent;
    }
    return node ? std::optional<QString>(numbers.join(QLatin1Char('/'))) : std::nullopt;
}

/// Null where there is none.
osg::NodePtr nodeAt(osg::NodePtr node, const QString &place)
{
    const QStringList numbers = place.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString &number : numbers) {
        bool isNumber = false;
        const std::size_t index = number.toUInt(&isNumber);
        node = node && isNumber && index < node->getNChildren() ? node->getChild(index) : osg::NodePtr();
    }
    return node;
}

std::optional<QJsonObject> describe(const osg::NodePtr &root, const osg::NodePtr &node, const Kept &kept)
{
    QJsonObject object{{"node", *placeBelow(root, node)},
                       {"trigger", QString::fromStdString(kept.trigger)},
                       {"command", QString::fromStdString(kept.command)},
                       {"value", QString::fromStdString(kept.value)}};
    if (kept.target == 0)
        return object;
    const std::optional<QString> target = placeBelow(root, kxNodeUtils::getNodeFromId(kept.target));
    if (!target)
        return std::nullopt;
    object["target"] = *target;
    return object;
}

QJsonArray describeAll(const osg::NodePtr &root)
{
    QJsonArray all;
    osg::forEachNode(root, [&](const osg::NodePtr &node) {
        const auto found = actions().find(idOf(node));
        if (found == actions().end())
            return;
        for (const Kept &kept : found->second)
            if (const auto description = describe(root, node, kept))
                all.append(*description);
    });
    return all;
}

QJsonObject objectOf(const std::string &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(text));
    if (document.isObject())
        return document.object();
    return text.empty() ? QJsonObject() : QJsonObject{{"text", QString::fromStdString(text)}};
}

void setText(const osg::JsonAttachmentPtr &attachment, const QJsonObject &object)
{
    const osg::CPEditor edit(attachment, osg::JsonAttachment::TextFieldMask);
    attachment->setText(QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString());
}

bool holdsActions(const osg::NodePtr &node)
{
    const auto attachment = osg::findAttachment<osg::JsonAttachment>(node);
    return attachment && objectOf(attachment->getText()).contains("actions");
}

/// Expects that there is something to say, or something to take away.
void write(const osg::NodePtr &node)
{
    const QJsonArray all = describeAll(node);
    osg::JsonAttachmentPtr attachment = osg::findAttachment<osg::JsonAttachment>(node);
    QJsonObject object = attachment ? objectOf(attachment->getText()) : QJsonObject();
    if (all.isEmpty())
        object.remove("actions");
    else
        object["actions"] = all;
    if (!attachment) {
        attachment = osg::JsonAttachment::create();
        const osg::CPEditor edit(node, osg::AttachmentContainer::AttachmentsFieldMask);
        node->addAttachment(attachment);
    }
    setText(attachment, object);
}

void forgetDestroyedNodes()
{
    std::erase_if(actions(), [](const auto &entry) { return !kxNodeUtils::getNodeFromId(entry.first); });
}

void read(const osg::NodePtr &root, const QJsonObject &description)
{
    if (!description["node"].isString())
        return;
    const osg::NodePtr node = nodeAt(root, description["node"].toString());
    const bool hasTarget = description.contains("target");
    const osg::NodePtr target = hasTarget ? nodeAt(root, description["target"].toString()) : osg::NodePtr();
    if (node && (target || !hasTarget))
        kxActions::add(node, {description["trigger"].toString().toStdString(),
                              description["command"].toString().toStdString(), target,
                              description["value"].toString().toStdString()});
}

} // namespace

void kxActions::add(const osg::NodePtr &node, const Action &action)
{
    if (!node)
        return;
    forgetDestroyedNodes();
    std::vector<Kept> &all = actions()[idOf(node)];
    const Kept kept{action.trigger, action.command, idOf(action.target), action.value};
    if (std::find(all.begin(), all.end(), kept) == all.end())
        all.push_back(kept);
}

std::vector<kxActions::Action> kxActions::of(const osg::NodePtr &node)
{
    std::vector<Action> result;
    if (const auto found = actions().find(idOf(node)); found != actions().end())
        for (const Kept &kept : found->second)
            result.push_back({kept.trigger, kept.command, kxNodeUtils::getNodeFromId(kept.target), kept.value});
    return result;
}

void kxActions::removeAll(const osg::NodePtr &node)
{
    actions().erase(idOf(node));
}

void kxActions::attachTo(const osg::NodePtr &node)
{
    std::vector<osg::NodePtr> outdated; // the node, and what was written with a part alone
    osg::forEachNode(node, [&](const osg::NodePtr &current) {
        if (holdsActions(current) || (current == node && !describeAll(node).isEmpty()))
            outdated.push_back(current);
    });
    for (const osg::NodePtr &current : outdated)
        write(current);
}

void kxActions::readFrom(const osg::NodePtr &node)
{
    osg::forEachNode(node, [](const osg::NodePtr &current) {
        const osg::JsonAttachmentPtr attachment = osg::findAttachment<osg::JsonAttachment>(current);
        if (!attachment)
            return;
        const QJsonArray all = objectOf(attachment->getText())["actions"].toArray();
        for (const QJsonValue entry : all)
            read(current, entry.toObject());
    });
}
