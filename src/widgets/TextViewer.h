// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include <string>
#include <string_view>

namespace relay {

// The program and arguments that open a file, made from the bytes of a program's desktop file; empty when
// they name no command.
QStringList openingCommand(std::string_view desktopFile, const QString& file);
// Opens a file in the desktop's program for plain text, whatever the type of the file; false when there is
// none. A browser, which shows a page instead of its source, is thereby avoided.
bool openAsText(const QString& file);

}  // namespace relay
