// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace relay {

// Bytes of unknown origin as text that is safe on a terminal: valid UTF-8, one line. Bytes that are not
// UTF-8, control characters, and characters that change the text direction appear as \xNN.
std::string terminalText(std::string_view bytes);
// The same for messages: line breaks of any kind become LF.
std::string terminalLines(std::string_view bytes);
// The width in columns of a text made by terminalText.
std::size_t terminalWidth(std::string_view text);
// The longest prefix of at most `columns` columns.
std::string_view cutToWidth(std::string_view text, std::size_t columns);

}  // namespace relay
