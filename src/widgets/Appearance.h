// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPalette>
#include <QString>

class QApplication;

namespace relay {

// The program's own palettes, for desktops that provide none.
QPalette lightPalette();
QPalette darkPalette();

// Qt's Fusion style with the desktop's palette. `wish` is "light" or "dark" for one of our palettes; any
// other value follows the desktop.
void applyAppearance(QApplication& application, const QString& wish);

}  // namespace relay
