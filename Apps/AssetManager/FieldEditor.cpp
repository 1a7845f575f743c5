// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/FieldEditor.h"
#include "AssetManager/ColorButton.h"
#include "AssetManager/EditorSilence.h"
#include "AssetManager/FieldLabels.h"
#include "AssetManager/FieldNumbers.h"
#include "AssetManager/NumberBox.h"
#include "AssetManager/SceneActions.h"
#include "AssetManager/UndoOutside.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/NameAttachment.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>

#include <algorithm>
#include <array>

using osg::FieldValue;

namespace {

constexpr int BoxGap = 3; // pixels

bool areEqual(const std::vector<FieldValue> &values)
{
    return std::all_of(values.begin(), values.end(), [&values](const FieldValue &value) { return value == values[0]; });
}

QColor colorOf(const FieldValue &value)
{
    const osg::Vec4f &color = *value.get<osg::Vec4f>();
    return ColorButton::toScreen(color[0], color[1], color[2]);
}

QString nameOf(const FieldValue::Reference &reference)
{
    if (!reference.container)
        return FieldEditor::tr("none");
    const std::string name = osg::getName(osg::AttachmentContainerPtr::dcast(reference.container.get()));
    return QString::fromStdString(name.empty() ? reference.container->getType().getCName() : name);
}

} // namespace

FieldEditor *FieldEditor::make(SceneActions &actions, const std::vector<std::uint32_t> &containerIds,
                               const std::string &field, QWidget *parent)
{
    auto editor = std::make_unique<FieldEditor>(actions, containerIds, field, parent);
    if (editor->values().empty() || !editor->build())
        return nullptr;
    editor->refresh();
    return editor.release();
}

FieldEditor::FieldEditor(SceneActions &actions, std::vector<std::uint32_t> containerIds, std::string field,
                         QWidget *parent)
    : QWidget(parent), _actions(actions), _ids(std::move(containerIds)), _field(std::move(field)),
      _isAngle(FieldLabels::isAngle(_field))
{
    setObjectName(QString::fromStdString(_field));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

FieldEditor::~FieldEditor()
{
    EditorSilence::keepIn(*this);
}

bool FieldEditor::build()
{
    const FieldValue value = values().front();
    const osg::FieldContainerPtr first = osg::FieldContainerFactory::the().getContainer(_ids.front());
    const QStringList choices = FieldLabels::choices(first->getType(), _field);
    const std::size_t numbers = FieldNumbers::of(value, _isAngle).size();
    if (!choices.isEmpty())
        addChoices(choices);
    else if (value.get<osg::Vec4f>())
        addColor();
    else if (value.get<bool>())
        addFlag();
    else if (value.get<std::string>())
        addText();
    else if (value.get<FieldValue::Reference>() &&
             !(areEqual(values()) && !value.get<FieldValue::Reference>()->container))
        addReference();
    else if (numbers == 0)
        return false;
    for (std::size_t i = 0; choices.isEmpty() && !value.get<osg::Vec4f>() && i < numbers; i += 3)
        addNumbers(i, std::min<std::size_t>(3, numbers - i));
    return true;
}

void FieldEditor::refresh()
{
    const std::vector<FieldValue> now = values();
    if (!now.empty())
        for (const auto &view : _views)
            view(now);
}

void FieldEditor::addNumbers(std::size_t first, std::size_t count)
{
    static constexpr std::array Axes{"X", "Y", "Z"};
    const bool isPlacement = values().front().get<osg::Matrix>() != nullptr;
    const bool isDegrees = _isAngle || values().front().get<osg::Quaternion>() || (isPlacement && first == 3);
    QHBoxLayout *boxes = row();
    boxes->setSpacing(BoxGap);
    for (std::size_t i = first; i < first + count; ++i) {
        auto *box = new NumberBox(this);
        QString name = FieldLabels::label(_field);
        if (isPlacement)
            name = first == 0 ? tr("Translation") : first == 3 ? tr("Rotation") : tr("Scale");
        if (count > 1)
            name += QChar(' ') + QString(Axes[i - first]);
        box->setObjectName("number" + QString::number(i));
        box->setAccessibleName(name);
        box->setToolTip(name);
        if (isDegrees)
            box->setSuffix(QStringLiteral("°"));
        boxes->addWidget(box);
        connect(box, &NumberBox::numberEdited, this, [this, box, i](double number) {
            edit([&](const FieldValue &value) { return FieldNumbers::with(value, i, number, _isAngle); },
                 box->gesture());
        });
        _views.emplace_back([this, box, i](const std::vector<FieldValue> &now) {
            const double number = FieldNumbers::of(now.front(), _isAngle)[i];
            const bool isSame = std::all_of(now.begin(), now.end(), [&](const FieldValue &value) {
                return FieldNumbers::of(value, _isAngle)[i] == number;
            });
            isSame ? box->showNumber(number) : box->showSeveral(number);
        });
    }
}

void FieldEditor::addColor()
{
    QHBoxLayout *parts = row();
    auto *button = new ColorButton(this);
    button->setObjectName("color");
    button->setAccessibleName(FieldLabels::label(_field));
    parts->addWidget(button, 1);
    connect(button, &ColorButton::colorEdited, this, [this](const QColor &color) {
        edit(
            [&](const FieldValue &value) {
                const float alpha = (*value.get<osg::Vec4f>())[3];
                return FieldValue(osg::Vec4f{{static_cast<float>(ColorButton::toLinear(color.redF())),
                                              static_cast<float>(ColorButton::toLinear(color.greenF())),
                                              static_cast<float>(ColorButton::toLinear(color.blueF())), alpha}});
            },
            0);
    });
    _views.emplace_back([button](const std::vector<FieldValue> &now) {
        const QColor first = colorOf(now.front());
        const bool isSame =
            std::all_of(now.begin(), now.end(), [&first](const FieldValue &value) { return colorOf(value) == first; });
        isSame ? button->showColor(first) : button->showSeveral(first);
    });
    auto *alpha = new NumberBox(this);
    alpha->setObjectName("number3");
    alpha->setAccessibleName(tr("%1, strength").arg(FieldLabels::label(_field)));
    alpha->setToolTip(alpha->accessibleName());
    parts->addWidget(alpha);
    connect(alpha, &NumberBox::numberEdited, this, [this, alpha](double number) {
        edit([number](const FieldValue &value) { return FieldNumbers::with(value, 3, number, false); },
             alpha->gesture());
    });
    _views.emplace_back([alpha](const std::vector<FieldValue> &now) {
        const float first = (*now.front().get<osg::Vec4f>())[3];
        const bool isSame = std::all_of(now.begin(), now.end(), [first](const FieldValue &value) {
            return (*value.get<osg::Vec4f>())[3] == first;
        });
        isSame ? alpha->showNumber(first) : alpha->showSeveral(first);
    });
}

void FieldEditor::addFlag()
{
    auto *box = new QCheckBox(this);
    box->setObjectName("flag");
    box->setAccessibleName(FieldLabels::label(_field));
    row()->addWidget(box);
    connect(box, &QCheckBox::clicked, this, [this, box] {
        const bool isOn = box->checkState() != Qt::Unchecked;
        edit([isOn](const FieldValue &) { return FieldValue(isOn); }, 0);
    });
    _views.emplace_back([box](const std::vector<FieldValue> &now) {
        const bool isSame = areEqual(now);
        box->setTristate(!isSame);
        box->setCheckState(!isSame ? Qt::PartiallyChecked : *now.front().get<bool>() ? Qt::Checked : Qt::Unchecked);
    });
}

void FieldEditor::addText()
{
    auto *line = new QLineEdit(this);
    line->setObjectName("text");
    line->setAccessibleName(FieldLabels::label(_field));
    new UndoOutside(*line);
    row()->addWidget(line);
    connect(line, &QLineEdit::editingFinished, this, [this, line] {
        if (!line->isModified())
            return;
        line->setModified(false);
        const std::string text = line->text().toStdString();
        edit([&text](const FieldValue &) { return FieldValue(text); }, 0);
    });
    _views.emplace_back([line](const std::vector<FieldValue> &now) {
        const bool isSame = areEqual(now);
        line->setPlaceholderText(isSame ? QString() : tr("several"));
        line->setText(isSame ? QString::fromStdString(*now.front().get<std::string>()) : QString());
    });
}

void FieldEditor::addChoices(const QStringList &choices)
{
    auto *box = new QComboBox(this);
    box->setObjectName("choice");
    box->setAccessibleName(FieldLabels::label(_field));
    box->setPlaceholderText(tr("several"));
    box->addItems(choices);
    row()->addWidget(box);
    connect(box, qOverload<int>(&QComboBox::activated), this, [this](int choice) {
        edit([choice](const FieldValue &value) { return FieldNumbers::with(value, 0, choice, false); }, 0);
    });
    _views.emplace_back([box](const std::vector<FieldValue> &now) {
        box->setCurrentIndex(areEqual(now) ? static_cast<int>(FieldNumbers::of(now.front(), false)[0]) : -1);
    });
}

void FieldEditor::addReference()
{
    auto *label = new QLabel(this);
    label->setObjectName("reference");
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    row()->addWidget(label);
    _views.emplace_back([label](const std::vector<FieldValue> &now) {
        label->setText(areEqual(now) ? nameOf(*now.front().get<FieldValue::Reference>()) : tr("several"));
    });
}

QHBoxLayout *FieldEditor::row()
{
    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    static_cast<QVBoxLayout *>(layout())->addLayout(row);
    return row;
}

std::vector<FieldValue> FieldEditor::values() const
{
    std::vector<FieldValue> values;
    for (const std::uint32_t id : _ids) {
        const osg::FieldContainerPtr container = osg::FieldContainerFactory::the().getContainer(id);
        if (const osg::FieldInfo *field = container ? container->getType().findField(_field) : nullptr)
            values.push_back(FieldValue::of(*container, *field));
    }
    return values;
}

void FieldEditor::edit(const Change &change, int gesture)
{
    std::vector<SceneActions::FieldChange> changes;
    for (const std::uint32_t id : _ids) {
        const osg::FieldContainerPtr container = osg::FieldContainerFactory::the().getContainer(id);
        if (const osg::FieldInfo *field = container ? container->getType().findField(_field) : nullptr)
            changes.push_back({id, _field, change(FieldValue::of(*container, *field))});
    }
    _actions.setFields(changes, tr("Change %1").arg(FieldLabels::label(_field)), gesture);
    refresh();
}
