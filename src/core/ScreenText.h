// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string>
#include <string_view>

// The only conversion between the program's bytes and the screen's characters. Bytes are read as UTF-8; a
// byte that is not valid UTF-8 becomes one lone surrogate U+DC80 to U+DCFF and is converted back to that
// byte.
namespace relay {

QString toScreen(std::string_view bytes);
std::string fromScreen(QStringView text);
// For formats that take only valid UTF-8 (JSON): other bytes appear as \xNN.
std::string toPrintableUtf8(std::string_view bytes);

}  // namespace relay
