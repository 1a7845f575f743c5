// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/NumberBox.h"

#include "AssetManager/UndoOutside.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionSpinBox>
#include <QWheelEvent>

namespace {

constexpr int TextMargin = 4; // pixels

int nextGesture()
{
    static int last = 0;
    return ++last;
}

} // namespace

NumberBox::NumberBox(QWidget *parent) : QDoubleSpinBox(parent), _gesture(nextGesture())
{
    setRange(-1e12, 1e12);
    setDecimals(6);
    setStepType(AdaptiveDecimalStepType);
    setKeyboardTracking(false);
    new UndoOutside(*lineEdit(), *this);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(this, qOverload<double>(&QDoubleSpinBox::valueChanged), this, &NumberBox::commit);
    // Where the objects differ, one of them may have just what was entered for all.
    connect(lineEdit(), &QLineEdit::textEdited, this,
            [this](const QString &text) { _isTyped = text != tr("several"); });
    connect(this, &QDoubleSpinBox::editingFinished, this, [this] {
        if (_isSeveral && _isTyped)
            commit();
    });
}

NumberBox::~NumberBox() = default;

void NumberBox::showNumber(double number)
{
    const QSignalBlocker blocker(this);
    _isSeveral = false;
    setValue(number);
    lineEdit()->setText(textFromValue(value()) + suffix());
    showBeginning();
}

void NumberBox::showSeveral(double first)
{
    const QSignalBlocker blocker(this);
    _isSeveral = true;
    _isTyped = false;
    setValue(first);
    lineEdit()->setText(textFromValue(first) + suffix());
    showBeginning();
}

/// Of a number that is too long for the box the last digits matter least.
void NumberBox::showBeginning()
{
    if (!hasFocus())
        lineEdit()->setCursorPosition(0);
}

/// The same for all, whatever is shown: boxes below each other stand in columns.
QSize NumberBox::sizeHint() const
{
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    const QSize text(fontMetrics().horizontalAdvance(QStringLiteral("-00.0")) + 2 * TextMargin,
                     lineEdit()->sizeHint().height());
    return style()->sizeFromContents(QStyle::CT_SpinBox, &option, text, this);
}

QSize NumberBox::minimumSizeHint() const
{
    return sizeHint();
}

QString NumberBox::textFromValue(double value) const
{
    if (_isSeveral)
        return tr("several");
    QLocale locale = this->locale();
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(value, 'g', 7);
}

double NumberBox::valueFromText(const QString &text) const
{
    QString number = text;
    if (number.endsWith(suffix()))
        number.chop(suffix().size());
    bool isNumber = false;
    const double parsed = locale().toDouble(number.trimmed(), &isNumber);
    return isNumber ? parsed : value();
}

QValidator::State NumberBox::validate(QString &text, int &position) const
{
    if (text.startsWith(tr("several")))
        return QValidator::Acceptable;
    return QDoubleSpinBox::validate(text, position);
}

void NumberBox::stepBy(int steps)
{
    _isSeveral = false;
    QDoubleSpinBox::stepBy(steps);
}

void NumberBox::focusInEvent(QFocusEvent *event)
{
    _gesture = nextGesture();
    QDoubleSpinBox::focusInEvent(event);
}

void NumberBox::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QDoubleSpinBox::wheelEvent(event);
    else
        event->ignore();
}

void NumberBox::commit()
{
    _isSeveral = false;
    _isTyped = false;
    Q_EMIT numberEdited(value());
}
