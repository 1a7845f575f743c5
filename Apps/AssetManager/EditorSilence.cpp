// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/EditorSilence.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLineEdit>

namespace {

template <class Editor> void silence(QWidget &widget)
{
    for (QObject *editor : widget.findChildren<Editor *>())
        editor->blockSignals(true);
}

} // namespace

void EditorSilence::keepIn(QWidget &widget)
{
    silence<QLineEdit>(widget);
    silence<QAbstractSpinBox>(widget);
    silence<QComboBox>(widget);
}
