// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Table.h"

#include "cli/TerminalText.h"

#include <algorithm>
#include <ostream>

namespace relay {

Table::Table(std::vector<std::string> titles) : m_titles(std::move(titles)) {
    measure(m_titles);
}

void Table::add(const std::vector<std::string_view>& cells) {
    Cells row;
    row.reserve(cells.size());
    for (const std::string_view cell : cells) row.push_back(terminalText(cell));
    measure(row);
    m_rows.push_back(std::move(row));
}

void Table::measure(const Cells& cells) {
    m_widths.resize(std::max(m_widths.size(), cells.size()));
    for (std::size_t i = 0; i < cells.size(); ++i)
        m_widths[i] = std::max(m_widths[i], terminalWidth(cells[i]));
}

void Table::writeRow(std::ostream& out, const Cells& cells) const {
    std::size_t owed = 0;  // blanks to write before the next non-empty cell
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (!cells[i].empty()) {
            out << std::string(owed, ' ') << cells[i];
            owed = 0;
        }
        owed += m_widths[i] - terminalWidth(cells[i]) + 2;
    }
}

void Table::write(std::ostream& out, bool bold) const {
    if (!m_titles.empty()) {
        if (bold) out << "\033[1m";
        writeRow(out, m_titles);
        if (bold) out << "\033[0m";
        out << '\n';
    }
    for (const Cells& row : m_rows) {
        writeRow(out, row);
        out << '\n';
    }
}

}  // namespace relay
