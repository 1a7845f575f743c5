// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QColor>
#include <QPushButton>

/// A linear colour of one or of several objects; a click asks for another.
class ColorButton final : public QPushButton
{
    Q_OBJECT

public:
    explicit ColorButton(QWidget *parent = nullptr);
    ~ColorButton() override;

    /// As people see it, for linear light from 0 to 1; what is beyond is cut off.
    static QColor toScreen(double red, double green, double blue);
    static double toLinear(double screen);

    void showColor(const QColor &color);
    void showSeveral(const QColor &first);

Q_SIGNALS:
    void colorEdited(const QColor &color);

private:
    void ask();

    QColor _color;
};
