// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/Appearance.h"

#include "widgets/IconTheme.h"

#include <QApplication>
#include <QProxyStyle>
#include <QStyleFactory>

#include <initializer_list>
#include <utility>

namespace relay {

namespace {
using Colours = std::initializer_list<std::pair<QPalette::ColorRole, QColor>>;

// Shows no icons on the buttons of boxes and dialogs.
class PlainButtonStyle final : public QProxyStyle {
  public:
    using QProxyStyle::QProxyStyle;

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override {
        if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
        return QProxyStyle::styleHint(hint, option, widget, returned);
    }
};

QPalette paletteOf(const Colours& colours, const QColor& disabledText) {
    QPalette palette;
    for (const auto& [role, colour] : colours) palette.setColor(role, colour);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::HighlightedText, QPalette::PlaceholderText})
        palette.setColor(QPalette::Disabled, role, disabledText);
    return palette;
}
}  // namespace

QPalette lightPalette() {
    QPalette palette = paletteOf({{QPalette::Window, QColor(0xf3, 0xf4, 0xf6)},
                                  {QPalette::WindowText, QColor(0x1d, 0x21, 0x27)},
                                  {QPalette::Base, QColor(0xff, 0xff, 0xff)},
                                  {QPalette::AlternateBase, QColor(0xf6, 0xf8, 0xfa)},
                                  {QPalette::Text, QColor(0x1d, 0x21, 0x27)},
                                  {QPalette::PlaceholderText, QColor(0x6b, 0x72, 0x7c)},
                                  {QPalette::Button, QColor(0xf3, 0xf4, 0xf6)},
                                  {QPalette::ButtonText, QColor(0x1d, 0x21, 0x27)},
                                  {QPalette::BrightText, QColor(0xff, 0xff, 0xff)},
                                  {QPalette::ToolTipBase, QColor(0xff, 0xff, 0xff)},
                                  {QPalette::ToolTipText, QColor(0x1d, 0x21, 0x27)},
                                  {QPalette::Highlight, QColor(0x1f, 0x6f, 0xc6)},
                                  {QPalette::HighlightedText, QColor(0xff, 0xff, 0xff)},
                                  {QPalette::Link, QColor(0x1a, 0x5f, 0xb0)},
                                  {QPalette::LinkVisited, QColor(0x1a, 0x5f, 0xb0)},
                                  {QPalette::Light, QColor(0xff, 0xff, 0xff)},
                                  {QPalette::Midlight, QColor(0xe6, 0xe9, 0xed)},
                                  {QPalette::Mid, QColor(0xb8, 0xbe, 0xc6)},
                                  {QPalette::Dark, QColor(0x9a, 0xa1, 0xab)},
                                  {QPalette::Shadow, QColor(0x70, 0x76, 0x80)}},
                                 QColor(0x94, 0x9a, 0xa3));
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(0xf3, 0xf4, 0xf6));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0xb8, 0xbe, 0xc6));
    return palette;
}

QPalette darkPalette() {
    QPalette palette = paletteOf({{QPalette::Window, QColor(0x33, 0x37, 0x3d)},
                                  {QPalette::WindowText, QColor(0xe6, 0xe8, 0xeb)},
                                  {QPalette::Base, QColor(0x1d, 0x1f, 0x23)},
                                  {QPalette::AlternateBase, QColor(0x24, 0x27, 0x2b)},
                                  {QPalette::Text, QColor(0xe6, 0xe8, 0xeb)},
                                  {QPalette::PlaceholderText, QColor(0x8c, 0x93, 0x9d)},
                                  {QPalette::Button, QColor(0x3d, 0x42, 0x49)},
                                  {QPalette::ButtonText, QColor(0xe6, 0xe8, 0xeb)},
                                  {QPalette::BrightText, QColor(0xff, 0xff, 0xff)},
                                  {QPalette::ToolTipBase, QColor(0x35, 0x39, 0x40)},
                                  {QPalette::ToolTipText, QColor(0xe6, 0xe8, 0xeb)},
                                  {QPalette::Highlight, QColor(0x2b, 0x6c, 0xb8)},
                                  {QPalette::HighlightedText, QColor(0xff, 0xff, 0xff)},
                                  {QPalette::Link, QColor(0x7a, 0xb8, 0xf5)},
                                  {QPalette::LinkVisited, QColor(0x7a, 0xb8, 0xf5)},
                                  {QPalette::Light, QColor(0x5a, 0x60, 0x69)},
                                  {QPalette::Midlight, QColor(0x48, 0x4d, 0x55)},
                                  {QPalette::Mid, QColor(0x17, 0x19, 0x1c)},
                                  {QPalette::Dark, QColor(0x14, 0x16, 0x18)},
                                  {QPalette::Shadow, QColor(0x0c, 0x0d, 0x0e)}},
                                 QColor(0x84, 0x8a, 0x93));
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(0x2b, 0x2e, 0x33));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x4a, 0x4f, 0x57));
    return palette;
}

void applyAppearance(QApplication& application, const QString& wish) {
    QApplication::setStyle(new PlainButtonStyle(QStyleFactory::create(QStringLiteral("Fusion"))));
    if (wish == QStringLiteral("dark")) application.setPalette(darkPalette());
    if (wish == QStringLiteral("light")) application.setPalette(lightPalette());
    QApplication::setWindowIcon(programIcon());
    QApplication::setDesktopFileName(QStringLiteral("korvel-relay"));
}

}  // namespace relay
