// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/PlainStyle.h"

#include "widgets/Contrast.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

namespace relay {

namespace {
constexpr int kRingWidth = 2;
constexpr double kFieldRadius = 2;
constexpr double kRoundLine = 1.6;   // a thinner one fades between the pixels
constexpr int kGroupTitleRoom = 24;  // beside the title of a group box

QColor colourOf(const QStyleOption& option, QPalette::ColorRole role) {
    return option.palette.color(role);
}

// The background of tab pages, computed as in Fusion.
QColor pageColour(const QStyleOption& option) {
    const QColor button = colourOf(option, QPalette::Button);
    const int grey = qGray(button.rgb());
    return button.lighter(100 + std::max(1, (180 - grey) / 6)).lighter(104);
}

// For the frames of fields and boxes.
QColor lineColour(const QStyleOption& option) {
    const QColor base = colourOf(option, QPalette::Base);
    const QColor window = colourOf(option, QPalette::Window);
    const QColor faint = over(QColor(127, 127, 127, 110), window);
    if (!option.state.testFlag(QStyle::State_Enabled)) return faint;
    return contrasting(faint, colourOf(option, QPalette::Text), {base, window, pageColour(option)});
}

// For the focus ring, drawn on `ground`.
QColor ringColour(const QStyleOption& option, const QColor& ground) {
    return contrasting(colourOf(option, QPalette::Highlight), colourOf(option, QPalette::Text),
                       {ground, colourOf(option, QPalette::Window), pageColour(option)});
}

// A line of whole pixels just inside the rectangle.
void drawInside(QPainter& painter, const QRectF& rect, const QColor& colour, int width, double radius) {
    const qreal half = width / 2.0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), radius, radius);
    painter.restore();
}

// The frame of a field or a list: a thin line, or the focus ring.
void drawFieldFrame(QPainter& painter, const QStyleOption& option) {
    const bool focused =
        option.state.testFlag(QStyle::State_HasFocus) && option.state.testFlag(QStyle::State_Enabled);
    const QColor colour = focused ? ringColour(option, colourOf(option, QPalette::Base)) : lineColour(option);
    drawInside(painter, option.rect, colour, focused ? kRingWidth : 1, kFieldRadius);
}

void fillField(QPainter& painter, const QStyleOption& option) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(option.palette.brush(QPalette::Base));
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), kFieldRadius, kFieldRadius);
    painter.restore();
}

void drawFocusRing(QPainter& painter, const QStyleOption& option) {
    if (!option.state.testFlag(QStyle::State_KeyboardFocusChange)) return;
    const auto* const ring = qstyleoption_cast<const QStyleOptionFocusRect*>(&option);
    const QColor given = ring == nullptr ? QColor() : ring->backgroundColor;
    const QColor ground = given.isValid() ? given : colourOf(option, QPalette::Window);
    const bool onSelection = contrast(ground, colourOf(option, QPalette::Highlight)) < 1.2;
    drawInside(painter, option.rect,
               onSelection ? colourOf(option, QPalette::HighlightedText) : ringColour(option, ground), 1,
               kFieldRadius);
}

void drawRadioLine(QPainter& painter, const QStyleOption& option) {
    const QRect& rect = option.rect;
    const qreal radius = (rect.width() + (rect.width() + 1) % 2) / 2.0 - 1;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(lineColour(option), kRoundLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QPointF(rect.center() + QPoint(1, 1)), radius, radius);
    painter.restore();
}
}  // namespace

PlainStyle::PlainStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void PlainStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (qobject_cast<QAbstractScrollArea*>(widget) != nullptr) widget->installEventFilter(this);
}

void PlainStyle::unpolish(QWidget* widget) {
    widget->removeEventFilter(this);
    QProxyStyle::unpolish(widget);
}

// When the focus changes, lists and text boxes repaint their content, but not their frames.
bool PlainStyle::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        static_cast<QWidget*>(object)->update();
    return QProxyStyle::eventFilter(object, event);
}

int PlainStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* returned) const {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

int PlainStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    // Room for the ring.
    if (metric == PM_DefaultFrameWidth && qobject_cast<const QAbstractScrollArea*>(widget) != nullptr)
        return kRingWidth;
    return QProxyStyle::pixelMetric(metric, option, widget);
}

void PlainStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    switch (element) {
        case PE_FrameFocusRect:
            drawFocusRing(*painter, *option);
            return;
        case PE_FrameLineEdit:
            fillField(*painter, *option);
            drawFieldFrame(*painter, *option);
            return;
        case PE_Frame:
            if (qobject_cast<const QAbstractScrollArea*>(widget) == nullptr) break;
            fillField(*painter, *option);
            drawFieldFrame(*painter, *option);
            return;
        default:
            break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element == PE_IndicatorCheckBox)
        drawInside(*painter, option->rect, lineColour(*option), 1, 1);
    else if (element == PE_IndicatorRadioButton)
        drawRadioLine(*painter, *option);
    else if (element == PE_PanelButtonCommand && option->state.testFlag(State_HasFocus) &&
             option->state.testFlag(State_KeyboardFocusChange))
        drawInside(*painter, option->rect, ringColour(*option, colourOf(*option, QPalette::Button)),
                   kRingWidth, kFieldRadius);
}

void PlainStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                    QPainter* painter, const QWidget* widget) const {
    const auto* const group = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
    if (control != CC_GroupBox || group == nullptr) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    QStyleOptionGroupBox shortened(*group);
    shortened.text = option->fontMetrics.elidedText(
        group->text, Qt::ElideRight, group->rect.width() - kGroupTitleRoom, Qt::TextShowMnemonic);
    QProxyStyle::drawComplexControl(control, &shortened, painter, widget);
}

}  // namespace relay
