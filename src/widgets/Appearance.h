// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPalette>
#include <QString>

class QApplication;

namespace relay {

// The program's own palettes, for desktops that hand down none.
QPalette lightPalette();
QPalette darkPalette();
bool isDark(const QPalette& palette);

// What has to change in a palette that the desktop hands down: a placeholder text that is missing, or too
// pale for its field, and selections that hardly differ from the rows around them.
QPalette legiblePart(const QPalette& handed);

// The program's style and icon. `fixed` is "light" or "dark" to have a palette of ours for good, whatever is
// chosen later; empty: chooseColours decides.
void applyAppearance(QApplication& application, const QString& fixed);
// "light" or "dark" takes a palette of ours. Anything else follows the desktop: the palette it hands down,
// or, where it hands none, that one of ours that its portal asks for, also when that changes later.
void chooseColours(const QString& wish);

}  // namespace relay
