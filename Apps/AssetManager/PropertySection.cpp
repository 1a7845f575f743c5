// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/PropertySection.h"
#include "AssetManager/EditorSilence.h"

#include "AssetManager/FieldEditor.h"
#include "AssetManager/FieldLabels.h"
#include "AssetManager/NumberBox.h"
#include "SceneGraph/FieldContainerFactory.h"

#include <QFormLayout>
#include <QLabel>

#include <algorithm>

PropertySection::PropertySection(SceneActions &actions, const QString &title,
                                 const std::vector<std::uint32_t> &containerIds, QWidget *parent)
    : QGroupBox(title, parent), _ids(containerIds)
{
    auto *form = new QFormLayout(this);
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    const int margin = fontMetrics().height() / 2;
    form->setContentsMargins(margin, margin, margin, margin);
    const osg::FieldContainerPtr first = osg::FieldContainerFactory::the().getContainer(_ids.front());
    for (const osg::FieldInfo &field : first->getType().fields()) {
        FieldEditor *editor = FieldEditor::make(actions, _ids, field.name, this);
        if (!editor)
            continue;
        _editors.push_back(editor);
        const QString label = FieldLabels::label(field.name);
        if (editor->findChildren<NumberBox *>().size() > 1) {
            // Below its label, whatever its length: else some would stand beside and some below.
            form->addRow(new QLabel(label, this));
            form->addRow(editor);
        } else {
            form->addRow(label, editor);
        }
    }
}

PropertySection::~PropertySection()
{
    EditorSilence::keepIn(*this);
}

bool PropertySection::shows(std::uint32_t containerId) const
{
    return std::find(_ids.begin(), _ids.end(), containerId) != _ids.end();
}

void PropertySection::refresh()
{
    for (FieldEditor *editor : _editors)
        editor->refresh();
}
