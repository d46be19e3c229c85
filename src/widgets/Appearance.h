// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPalette>
#include <QString>

class QApplication;

namespace relay {

// The program's own palettes, for desktops that provide none.
QPalette lightPalette();
QPalette darkPalette();
bool isDark(const QPalette& palette);

// False if the texts of the palette hardly differ from what they stand on, as in a broken theme.
bool isLegible(const QPalette& palette);

// The changes that make a desktop's palette legible: a placeholder colour that is missing or too pale, and
// selections that hardly differ from the other rows.
QPalette legiblePart(const QPalette& provided);

// Sets the program's style and icon. `fixed` is "light" or "dark" for one of our palettes, whatever is chosen
// later; if it is empty, chooseColours decides.
void applyAppearance(QApplication& application, const QString& fixed);
// "light" or "dark" selects one of our palettes. Any other value follows the desktop: the palette it
// provides if that is legible, or else our palette that its portal asks for, also when that changes later.
void chooseColours(const QString& wish);

}  // namespace relay
