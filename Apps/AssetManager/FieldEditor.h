// SPDX-License-Identifier: Apache-2.0
#pragma once

#if !defined(Q_MOC_RUN)
#include "SceneGraph/FieldValue.h"
#endif

#include <QWidget>

#include <functional>
#include <vector>

class QHBoxLayout;
class SceneActions;

/// Edits one field of one or of several containers of the same type, by what its declaration says.
///
/// Numbers, angles, vectors and placements have number boxes, colours a button, flags a check box, texts a line; what
/// refers to others is shown. Every edit is a step of the actions.
class FieldEditor final : public QWidget
{
    Q_OBJECT

public:
    /// Null for a field that people have nothing to do with.
    static FieldEditor *make(SceneActions &actions, const std::vector<std::uint32_t> &containerIds,
                             const std::string &field, QWidget *parent);

    FieldEditor(SceneActions &actions, std::vector<std::uint32_t> containerIds, std::string field, QWidget *parent);
    ~FieldEditor() override;

    const std::string &field() const { return _field; }
    /// Shows the values as they are now.
    void refresh();

private:
    using Change = std::function<osg::FieldValue(const osg::FieldValue &)>;

    bool build();
    void addNumbers(std::size_t first, std::size_t count);
    void addColor();
    void addFlag();
    void addText();
    void addChoices(const QStringList &choices);
    void addReference();
    QHBoxLayout *row();
    std::vector<osg::FieldValue> values() const;
    /// Changes the field of each container, whose values may differ in what is not edited.
    void edit(const Change &change, int gesture);

    SceneActions &_actions;
    std::vector<std::uint32_t> _ids;
    std::string _field;
    bool _isAngle;
    std::vector<std::function<void(const std::vector<osg::FieldValue> &)>> _views; ///< show the values
};
