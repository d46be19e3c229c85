// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace relay {

// Qt's Fusion style, in whatever colours, with lines that can be seen: the frames of boxes and fields, and
// the ring around what has the focus, are made from the palette with enough contrast to what lies around
// them. Buttons of dialogs carry words only, and a heading that does not fit ends in an ellipsis.
class PlainStyle final : public QProxyStyle {
  public:
    PlainStyle();

    using QProxyStyle::polish;
    void polish(QWidget* widget) override;
    using QProxyStyle::unpolish;
    void unpolish(QWidget* widget) override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;
};

}  // namespace relay
