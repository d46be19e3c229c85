// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// Rows of text in aligned columns, for people. Cells may have any bytes; they are written through
// terminalText.
class Table final {
  public:
    // An empty list of titles: no heading line.
    explicit Table(std::vector<std::string> titles);

    void add(const std::vector<std::string_view>& cells);
    bool empty() const noexcept { return m_rows.empty(); }
    // `bold`: writes the heading in bold, with terminal sequences.
    void write(std::ostream& out, bool bold) const;

  private:
    using Cells = std::vector<std::string>;
    void measure(const Cells& cells);
    void writeRow(std::ostream& out, const Cells& cells) const;

    Cells m_titles;
    std::vector<Cells> m_rows;
    std::vector<std::size_t> m_widths;
};

}  // namespace relay
