// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string>
#include <string_view>

// The only door between the program's bytes and the screen's characters. Bytes are read as UTF-8; a byte that
// is no valid UTF-8 becomes one lone surrogate U+DC80 to U+DCFF and comes back as that byte.
namespace relay {

QString toScreen(std::string_view bytes);
std::string fromScreen(QStringView text);
// For places that take valid UTF-8 only (JSON): a byte that is no valid UTF-8 appears as \xNN.
std::string toPrintableUtf8(std::string_view bytes);

}  // namespace relay
