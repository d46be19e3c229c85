// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string_view>

namespace relay {

// Walks through the items of a catalogue's text. An item ends at a line end (CR, LF or both) or a comma;
// leading blanks are dropped. An item that begins with a double quote runs to the next double quote, commas
// and line ends included; the quotes are dropped, and so is anything between the closing quote and the next
// delimiter. The views point into the given text, which must outlive them.
class ItemReader final {
  public:
    explicit ItemReader(std::string_view text) noexcept : m_text(text) {}

    // False at the end of the text. Returns empty items too.
    bool next(std::string_view& item) noexcept;
    // The next item that is neither empty nor a comment, which begins with "#".
    bool nextEntry(std::string_view& item) noexcept;
    // For the last item: the offset of its first byte, its line (from 1), and whether it ended at a comma
    // rather than at a line end or the end of the text.
    std::size_t offset() const noexcept { return m_itemOffset; }
    std::size_t line() noexcept;
    bool closedByComma() const noexcept { return m_closedByComma; }

  private:
    std::string_view m_text;
    std::size_t m_position = 0;
    std::size_t m_itemOffset = 0;
    std::size_t m_countedTo = 0;
    std::size_t m_line = 1;
    bool m_closedByComma = false;
};

}  // namespace relay
