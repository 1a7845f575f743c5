// SPDX-License-Identifier: Apache-2.0
#include "EditWatch.h"

#include "SceneGraph/EditAudit.h"
#include "SceneGraph/FieldContainer.h"

#include <utility>

EditWatch::EditWatch()
{
    osg::EditAudit::setObserver(
        [this](const osg::FieldContainer &container, osg::FieldMask fields) { note(container, fields); });
}

EditWatch::~EditWatch()
{
    osg::EditAudit::setObserver({});
}

void EditWatch::note(const osg::FieldContainer &container, osg::FieldMask fields)
{
    std::string text = container.getType().getCName();
    if (fields == osg::AllFieldMask)
        text += " all";
    else
        for (const osg::FieldInfo &field : container.getType().fields())
            if ((fields & field.mask) != 0)
                text += std::string(" ") + field.name;
    _edits.push_back({container.getFieldContainerId(), text});
}

std::vector<std::string> EditWatch::take()
{
    std::vector<std::string> taken;
    for (Edit &edit : _edits)
        taken.push_back(std::move(edit.text));
    _edits.clear();
    return taken;
}

std::vector<std::string> EditWatch::editsOf(std::uint32_t id) const
{
    std::vector<std::string> found;
    for (const Edit &edit : _edits)
        if (edit.id == id)
            found.push_back(edit.text);
    return found;
}
