// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QComboBox;

namespace relay {

// Fills a drive list. Where there are no drive letters, it has the user's own folders, the root and mounted
// media; each item's data is its path.
void fillDrives(QComboBox& drives);

}  // namespace relay
