// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QGroupBox>

#include <vector>

class FieldEditor;
class QFormLayout;
class SceneActions;

/// The fields of containers of one type, edited together.
class PropertySection final : public QGroupBox
{
    Q_OBJECT

public:
    /// Expects living containers of the same type; at least one.
    PropertySection(SceneActions &actions, const QString &title, const std::vector<std::uint32_t> &containerIds,
                    QWidget *parent);
    ~PropertySection() override;

    /// Whether there is anything to edit.
    bool isEmpty() const { return _editors.empty(); }
    bool shows(std::uint32_t containerId) const;
    void refresh();

private:
    std::vector<std::uint32_t> _ids;
    std::vector<FieldEditor *> _editors;
};
