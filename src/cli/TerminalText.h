// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace relay {

// Bytes of unknown origin as text that is safe on a terminal: valid UTF-8, one line. Bytes that are no UTF-8,
// control characters, and characters that turn the direction of writing appear as \xNN.
std::string terminalText(std::string_view bytes);
// The same for messages: line breaks of any kind stay, as LF.
std::string terminalLines(std::string_view bytes);
// Columns that a text made by terminalText takes on a terminal.
std::size_t terminalWidth(std::string_view text);
// The longest beginning of the text that takes at most `columns`.
std::string_view cutToWidth(std::string_view text, std::size_t columns);

}  // namespace relay
