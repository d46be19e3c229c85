// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPalette>
#include <QString>

class QApplication;

namespace relay {

// The program's own palettes, for desktops that hand down none.
QPalette lightPalette();
QPalette darkPalette();

// Qt's Fusion style on the desktop's palette. `wish` is "light" or "dark" to have a palette of ours instead,
// or anything else to follow the desktop.
void applyAppearance(QApplication& application, const QString& wish);

}  // namespace relay
