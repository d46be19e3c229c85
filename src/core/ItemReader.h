// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string_view>

namespace relay {

// Walks the items of a catalogue's text. An item ends at a line end (CR, LF or both) or at a comma; blanks in
// front of it are dropped. An item that begins with a double quote runs to the next double quote, commas and
// line ends included; the quotes are dropped, and so is anything between the closing quote and the next
// delimiter. The views point into the text given, which must outlive them.
class ItemReader final {
  public:
    explicit ItemReader(std::string_view text) noexcept : m_text(text) {}

    // False at the end of the text. Empty items are handed out too.
    bool next(std::string_view& item) noexcept;
    // The next item that is neither empty nor a comment, which begins with "#".
    bool nextEntry(std::string_view& item) noexcept;
    // Of the item last handed out: the offset of its first byte, its 1-based line, and whether a comma (and
    // not a line end or the end of the text) closed it.
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
