// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace relay {

// Qt's Fusion style with visible lines in every palette: the frames of boxes and fields and the ring around
// the control with the focus have enough contrast with their surroundings. Buttons of boxes and dialogs show
// no icons, and the title of a group box ends in an ellipsis if it does not fit.
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
