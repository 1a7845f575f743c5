// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/ReferenceGraph.h"

#include "SceneGraph/Geometry.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/Node.h"

#include <algorithm>

namespace osg {

namespace {

template <class T> bool hasRepetition(std::vector<T> values)
{
    std::sort(values.begin(), values.end());
    return std::adjacent_find(values.begin(), values.end()) != values.end();
}

} // namespace

void ReferenceGraph::addChild(std::uint32_t parent, std::uint32_t child)
{
    addReference(parent, child);
    _children.push_back(child);
}

void ReferenceGraph::addAttachment(std::uint32_t owner, std::uint32_t attachment, const FieldContainerType &type)
{
    addReference(owner, attachment);
    _attachments.emplace_back(owner, &type);
}

std::optional<std::string> ReferenceGraph::findFault(std::size_t count) const
{
    if (hasRepetition(_children))
        return "A node has more than one parent";
    if (hasRepetition(_attachments))
        return "A container has two attachments of one type";
    if (!isAcyclic(count))
        return "A container contains itself";
    return std::nullopt;
}

/// Takes away, again and again, what nobody refers to; members of a cycle stay.
bool ReferenceGraph::isAcyclic(std::size_t count) const
{
    std::vector<std::uint32_t> referrers(count, 0);
    std::vector<std::size_t> firstTarget(count + 1, 0);
    for (const auto &[from, to] : _references) {
        ++referrers[to];
        ++firstTarget[from + 1];
    }
    for (std::size_t i = 0; i < count; ++i)
        firstTarget[i + 1] += firstTarget[i];

    std::vector<std::uint32_t> targets(_references.size());
    std::vector<std::size_t> next(firstTarget.begin(), firstTarget.end() - 1);
    for (const auto &[from, to] : _references)
        targets[next[from]++] = to;

    std::vector<std::uint32_t> free;
    for (std::uint32_t i = 0; i < count; ++i)
        if (referrers[i] == 0)
            free.push_back(i);
    std::size_t taken = 0;
    while (!free.empty()) {
        const std::uint32_t container = free.back();
        free.pop_back();
        ++taken;
        for (std::size_t i = firstTarget[container]; i < firstTarget[container + 1]; ++i)
            if (--referrers[targets[i]] == 0)
                free.push_back(targets[i]);
    }
    return taken == count;
}

bool holdsChildren(const FieldContainerType &owner, const FieldInfo &field)
{
    return field.mask == Node::ChildrenFieldMask && owner.isDerivedFrom(Node::getClassType());
}

bool holdsAttachments(const FieldContainerType &owner, const FieldInfo &field)
{
    return field.mask == AttachmentContainer::AttachmentsFieldMask &&
           owner.isDerivedFrom(AttachmentContainer::getClassType());
}

std::optional<std::string> findValueFault(const FieldContainerPtr &container)
{
    if (const ImagePtr image = dcast<ImagePtr>(container); image && !image->isValid())
        return "An image's pixels do not fit its size";
    if (const GeometryPtr geometry = dcast<GeometryPtr>(container); geometry && !geometry->isValid())
        return "A mesh's indices do not fit its vertices";
    return std::nullopt;
}

} // namespace osg
