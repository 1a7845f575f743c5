// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ColorButton.h"

#include "Kernel/kxModalQuestion.h"

#include <QColorDialog>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

double toScreenValue(double linear)
{
    const double light = std::clamp(linear, 0.0, 1.0);
    return light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1.0 / 2.4) - 0.055;
}

} // namespace

ColorButton::ColorButton(QWidget *parent) : QPushButton(parent)
{
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    connect(this, &QPushButton::clicked, this, &ColorButton::ask);
}

ColorButton::~ColorButton() = default;

QColor ColorButton::toScreen(double red, double green, double blue)
{
    return QColor::fromRgbF(toScreenValue(red), toScreenValue(green), toScreenValue(blue));
}

double ColorButton::toLinear(double screen)
{
    return screen <= 0.04045 ? screen / 12.92 : std::pow((screen + 0.055) / 1.055, 2.4);
}

void ColorButton::showColor(const QColor &color)
{
    _color = color;
    QPixmap swatch(2 * iconSize().width(), iconSize().height());
    swatch.fill(color);
    QPainter painter(&swatch);
    painter.setPen(palette().color(QPalette::ButtonText));
    painter.drawRect(swatch.rect().adjusted(0, 0, -1, -1));
    painter.end();
    setIconSize(iconSize());
    setIcon(swatch);
    setText(color.name());
}

void ColorButton::showSeveral(const QColor &first)
{
    _color = first;
    setIcon({});
    setText(tr("several"));
}

void ColorButton::ask()
{
    QColorDialog dialog(_color, window());
    dialog.setOption(QColorDialog::DontUseNativeDialog);
    dialog.setWindowTitle(accessibleName()); // what it is the colour of
    if (kxModalQuestion::exec(dialog) == QDialog::Accepted)
        Q_EMIT colorEdited(dialog.currentColor());
}
