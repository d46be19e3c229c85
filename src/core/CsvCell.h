// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace relay {

// Appends the text as one cell of a table of comma separated values: in quotes if it needs them, and behind
// an apostrophe if a spreadsheet would take it for a formula.
void appendCsvCell(std::string& table, std::string_view text);

}  // namespace relay
