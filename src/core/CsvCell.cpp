// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CsvCell.h"

namespace relay {

void appendCsvCell(std::string& table, std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        table += text;
        return;
    }
    table += '"';
    for (const char c : text) {
        if (c == '"') table += '"';
        table += c;
    }
    table += '"';
}

}  // namespace relay
