// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CsvCell.h"

#include "core/Text.h"

namespace relay {

void appendCsvCell(std::string& table, std::string_view text) {
    const bool formula = !text.empty() && std::string_view("=+-@\t\r").find(text.front()) != npos;
    const std::string_view guard = formula ? "'" : "";
    if (text.find_first_of(",\"\r\n") == npos) {
        table.append(guard).append(text);
        return;
    }
    table.append("\"").append(guard);
    for (const char c : text) {
        if (c == '"') table += '"';
        table += c;
    }
    table += '"';
}

}  // namespace relay
