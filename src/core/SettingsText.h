// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

// The spelling of names and values in the settings file. Names are letters, digits, "_", "-" and "."; a
// separator is written as a backslash and any other character as %XX or %UXXXX. Values stand in quotes where
// they need them, with backslash escapes; what is no UTF-8 text without a NUL is written as @ByteArray(...).
namespace relay {

std::string settingsName(std::string_view name);
// The name that is meant, also where a person wrote it with fewer escapes.
std::string nameFromSettings(std::string_view written);

// What stands behind the equals sign.
std::string settingsValue(std::string_view value);
// A value with commas outside quotes is a list: its parts come joined by ", ".
std::string valueFromSettings(std::string_view written);

}  // namespace relay
