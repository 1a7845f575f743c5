// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/TagAttachment.h"

#include <algorithm>

namespace osg {

OSG_CONTAINER_SOURCE(TagAttachment)

std::string TagAttachment::getTagString() const
{
    std::string text;
    for (const std::string &tag : getMaterials())
        text.append(text.empty() ? "" : ", ").append(tag);
    return text;
}

void TagAttachment::addMaterialTag(const std::string &tag)
{
    if (!hasMaterialTag(tag))
        editMaterials().push_back(tag);
}

bool TagAttachment::hasMaterialTag(const std::string &tag) const
{
    return std::find(getMaterials().begin(), getMaterials().end(), tag) != getMaterials().end();
}

} // namespace osg
