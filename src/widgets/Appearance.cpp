// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/Appearance.h"

#include "widgets/Contrast.h"
#include "widgets/DesktopColours.h"
#include "widgets/IconTheme.h"
#include "widgets/PlainStyle.h"

#include <QApplication>
#include <QEvent>
#include <QScopedValueRollback>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <utility>

namespace relay {

namespace {
using Colours = std::initializer_list<std::pair<QPalette::ColorRole, QColor>>;

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
    QPalette palette = paletteOf({{QPalette::Window, QColor(0x2a, 0x2d, 0x32)},
                                  {QPalette::WindowText, QColor(0xe6, 0xe8, 0xeb)},
                                  {QPalette::Base, QColor(0x1d, 0x1f, 0x23)},
                                  {QPalette::AlternateBase, QColor(0x24, 0x27, 0x2b)},
                                  {QPalette::Text, QColor(0xe6, 0xe8, 0xeb)},
                                  {QPalette::PlaceholderText, QColor(0x8c, 0x93, 0x9d)},
                                  {QPalette::Button, QColor(0x30, 0x34, 0x3a)},
                                  {QPalette::ButtonText, QColor(0xe6, 0xe8, 0xeb)},
                                  {QPalette::BrightText, QColor(0xff, 0xff, 0xff)},
                                  {QPalette::ToolTipBase, QColor(0x35, 0x39, 0x40)},
                                  {QPalette::ToolTipText, QColor(0xe6, 0xe8, 0xeb)},
                                  {QPalette::Highlight, QColor(0x35, 0x77, 0xc4)},
                                  {QPalette::HighlightedText, QColor(0xff, 0xff, 0xff)},
                                  {QPalette::Link, QColor(0x7a, 0xb8, 0xf5)},
                                  {QPalette::LinkVisited, QColor(0x7a, 0xb8, 0xf5)},
                                  {QPalette::Light, QColor(0x5a, 0x60, 0x69)},
                                  {QPalette::Midlight, QColor(0x48, 0x4d, 0x55)},
                                  {QPalette::Mid, QColor(0x17, 0x19, 0x1c)},
                                  {QPalette::Dark, QColor(0x14, 0x16, 0x18)},
                                  {QPalette::Shadow, QColor(0x0c, 0x0d, 0x0e)}},
                                 QColor(0x84, 0x8a, 0x93));
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(0x24, 0x27, 0x2b));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x4a, 0x4f, 0x57));
    return palette;
}

QPalette legiblePart(const QPalette& provided) {
    QPalette part;
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        const auto colour = [&](QPalette::ColorRole role) { return provided.color(group, role); };
        const QColor base = colour(QPalette::Base);
        const QColor text = colour(QPalette::Text);
        const QColor placeholder = over(colour(QPalette::PlaceholderText), base);
        if (contrast(placeholder, base) < kTextContrast)
            part.setColor(group, QPalette::PlaceholderText, contrasting(base, text, {base}, kTextContrast));
        const QColor selection = colour(QPalette::Highlight);
        if (contrast(selection, base) < kShapeContrast)
            part.setColor(group, QPalette::Highlight, contrasting(selection, text, {base}));
    }
    return part;
}

bool isLegible(const QPalette& palette) {
    constexpr std::pair<QPalette::ColorRole, QPalette::ColorRole> kTexts[] = {
        {QPalette::WindowText, QPalette::Window},
        {QPalette::Text, QPalette::Base},
        {QPalette::ButtonText, QPalette::Button}};
    return std::all_of(std::begin(kTexts), std::end(kTexts), [&palette](const auto& pair) {
        return contrast(palette.color(pair.first), palette.color(pair.second)) >= kShapeContrast;
    });
}

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

namespace {
// Sets the application's palette and follows the desktop's changes.
class ColourKeeper final : public QObject {
  public:
    ColourKeeper(QApplication& application, QString fixed)
        : QObject(&application), m_application(application), m_fixed(std::move(fixed)) {
        connect(&m_desktop, &DesktopColours::changed, this, &ColourKeeper::apply);
        application.installEventFilter(this);
    }

    void choose(const QString& wish) {
        m_wish = wish;
        apply();
    }

  protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (m_following && object == &m_application && event->type() == QEvent::ApplicationPaletteChange)
            apply();
        return QObject::eventFilter(object, event);
    }

  private:
    void apply() {
        if (m_applying) return;
        const QScopedValueRollback<bool> applying(m_applying, true);
        const QString& wish = m_fixed.isEmpty() ? m_wish : m_fixed;
        m_following = false;
        if (wish == QStringLiteral("dark"))
            QApplication::setPalette(darkPalette());
        else if (wish == QStringLiteral("light"))
            QApplication::setPalette(lightPalette());
        else
            followDesktop();
    }

    void followDesktop() {
        m_following = true;
        QApplication::setPalette(QPalette());
        const QPalette provided = QApplication::palette();
        // The style's own palette means that the desktop provides none. It is dark on a dark desktop.
        if (provided != QApplication::style()->standardPalette() && isLegible(provided)) {
            QApplication::setPalette(legiblePart(provided));
            return;
        }
        m_desktop.ask();
        const bool dark = m_desktop.scheme() == DesktopColours::Scheme::NoPreference
                              ? isDark(provided)
                              : m_desktop.scheme() == DesktopColours::Scheme::Dark;
        QApplication::setPalette(dark ? darkPalette() : lightPalette());
    }

    QApplication& m_application;
    const QString m_fixed;
    QString m_wish;
    DesktopColours m_desktop;
    bool m_following = false;
    bool m_applying = false;
};
}  // namespace

void applyAppearance(QApplication& application, const QString& fixed) {
    QApplication::setStyle(new PlainStyle);
    auto* const colours = new ColourKeeper(application, fixed);
    if (!fixed.isEmpty()) colours->choose({});
    QApplication::setWindowIcon(programIcon());
    QApplication::setDesktopFileName(QStringLiteral("korvel-relay"));
}

void chooseColours(const QString& wish) {
    for (QObject* const part : qApp->children())
        if (auto* const colours = dynamic_cast<ColourKeeper*>(part); colours != nullptr)
            colours->choose(wish);
}

}  // namespace relay
