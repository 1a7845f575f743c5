// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/Appearance.h"

#include <QApplication>
#include <QMainWindow>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOption>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr double HintOpacity = 0.6;
constexpr int TabSpace = 16; // pixels on both sides of a name together

/// The arrow of a selected row is as bright as the row's text, and the tabs of panels leave room for their names.
class PanelStyle : public QProxyStyle
{
public:
    using QProxyStyle::QProxyStyle;

    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override
    {
        const int usual = QProxyStyle::pixelMetric(metric, option, widget);
        if (metric != PM_TabBarTabHSpace || !widget || !qobject_cast<const QMainWindow *>(widget->parentWidget()))
            return usual;
        return std::min(usual, TabSpace);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override
    {
        const auto *row = qstyleoption_cast<const QStyleOptionViewItem *>(option);
        if (element != PE_IndicatorBranch || !row || (row->state & State_Selected) == 0) {
            QProxyStyle::drawPrimitive(element, option, painter, widget);
            return;
        }
        QStyleOptionViewItem selected(*row);
        selected.palette.setColor(QPalette::WindowText, row->palette.color(QPalette::HighlightedText));
        QProxyStyle::drawPrimitive(element, &selected, painter, widget);
    }
};

/// Other styles draw with colours of the desktop.
class PlainStyle final : public PanelStyle
{
public:
    PlainStyle() : PanelStyle(QStringLiteral("fusion")) {}

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returned) const override
    {
        // The icons that there are without a desktop are drawn for light windows only.
        return hint == SH_DialogButtonBox_ButtonsHaveIcons ? 0 : QProxyStyle::styleHint(hint, option, widget, returned);
    }
};

struct Colors
{
    QRgb window, base, alternate, button, text, disabled, hint, highlight, link, light, midlight, mid, dark, shadow;
};

constexpr Colors LightColors{0xFFF0F0F0, 0xFFFFFFFF, 0xFFF5F5F5, 0xFFF0F0F0, 0xFF1A1A1A, 0xFF9A9A9A, 0xFF676767,
                             0xFF2C6FB7, 0xFF1F5FA8, 0xFFFFFFFF, 0xFFDADADA, 0xFFB8B8B8, 0xFF9F9F9F, 0xFF6A6A6A};
constexpr Colors DarkColors{0xFF2D2D30, 0xFF1E1E20, 0xFF262629, 0xFF3A3A3D, 0xFFE6E6E6, 0xFF7C7C7F, 0xFF9C9CA0,
                            0xFF3D7EC6, 0xFF6FB1F5, 0xFF55555A, 0xFF46464A, 0xFF3F3F43, 0xFF19191B, 0xFF0F0F10};

QPalette paletteOf(const Colors &colors)
{
    QPalette palette;
    const auto set = [&palette](QRgb color, std::initializer_list<QPalette::ColorRole> roles) {
        for (const QPalette::ColorRole role : roles)
            palette.setColor(role, QColor(color));
    };
    set(colors.window, {QPalette::Window});
    set(colors.base, {QPalette::Base});
    set(colors.alternate, {QPalette::AlternateBase, QPalette::ToolTipBase});
    set(colors.button, {QPalette::Button});
    set(colors.text, {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText});
    set(colors.hint, {QPalette::PlaceholderText});
    set(colors.highlight, {QPalette::Highlight});
    set(0xFFFFFFFF, {QPalette::HighlightedText, QPalette::BrightText});
    set(colors.link, {QPalette::Link, QPalette::LinkVisited});
    set(colors.light, {QPalette::Light});
    set(colors.midlight, {QPalette::Midlight});
    set(colors.mid, {QPalette::Mid});
    set(colors.dark, {QPalette::Dark});
    set(colors.shadow, {QPalette::Shadow});
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(colors.disabled));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(colors.mid));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, QColor(colors.disabled));
    return palette;
}

/// Qt derives the colour of hints from that of texts, but with a brush that paints nothing: labels in it would be empty.
void makeHintsVisible()
{
    QPalette palette = QApplication::palette();
    QColor color = palette.color(QPalette::Text);
    color.setAlphaF(HintOpacity);
    if (palette.brush(QPalette::PlaceholderText) == QBrush(color))
        return;
    palette.setColor(QPalette::PlaceholderText, color);
    QApplication::setPalette(palette); // what was not set before goes on following the desktop
}

} // namespace

QStringList Appearance::names()
{
    return {QStringLiteral("light"), QStringLiteral("dark")};
}

Appearance::Kind Appearance::byName(const QString &name)
{
    if (name == QLatin1String("light"))
        return Kind::Light;
    return name == QLatin1String("dark") ? Kind::Dark : Kind::Desktop;
}

void Appearance::apply(Kind kind)
{
    if (kind == Kind::Desktop) {
        QApplication::setStyle(new PanelStyle);
        makeHintsVisible();
        QObject::connect(qApp, &QGuiApplication::paletteChanged, qApp, makeHintsVisible);
        return;
    }
    QApplication::setStyle(new PlainStyle);
    QApplication::setPalette(kind == Kind::Dark ? dark() : light());
    QToolTip::setPalette(QApplication::palette());
}

QPalette Appearance::light()
{
    return paletteOf(LightColors);
}

QPalette Appearance::dark()
{
    return paletteOf(DarkColors);
}
