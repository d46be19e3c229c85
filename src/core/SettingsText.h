// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

// How names and values are written in the settings file. Names are letters, digits, "_", "-" and "."; a
// separator is written as a backslash, any other character as %XX or %UXXXX. Values are quoted where
// necessary, with backslash escapes; a value that is not UTF-8 or has a NUL is written as @ByteArray(...).
namespace relay {

std::string settingsName(std::string_view name);
// Also reads a name that a person wrote with fewer escapes.
std::string nameFromSettings(std::string_view written);

// The text after the equals sign.
std::string settingsValue(std::string_view value);
// A value with commas outside quotes is a list; its parts are joined with ", ".
std::string valueFromSettings(std::string_view written);

}  // namespace relay
