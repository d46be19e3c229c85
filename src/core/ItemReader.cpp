// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ItemReader.h"

#include <algorithm>

namespace relay {

bool ItemReader::next(std::string_view& item) noexcept {
    m_closedByComma = false;
    const std::size_t start = std::min(m_text.find_first_not_of(' ', m_position), m_text.size());
    if (m_position >= m_text.size()) return false;
    std::size_t end = 0;
    if (start < m_text.size() && m_text[start] == '"') {
        m_itemOffset = start + 1;
        const std::size_t quote = std::min(m_text.find('"', m_itemOffset), m_text.size());
        item = m_text.substr(m_itemOffset, quote - m_itemOffset);
        end = quote;
    } else {
        m_itemOffset = start;
        end = start;
    }
    const char* const text = m_text.data();
    const std::size_t size = m_text.size();
    std::size_t delimiter = end;
    while (delimiter < size && text[delimiter] != ',' && text[delimiter] != '\r' && text[delimiter] != '\n')
        ++delimiter;
    if (m_itemOffset == start) item = m_text.substr(start, delimiter - start);
    m_position = delimiter;
    if (delimiter == size) return true;
    m_closedByComma = text[delimiter] == ',';
    const bool pair = text[delimiter] == '\r' && delimiter + 1 < size && text[delimiter + 1] == '\n';
    m_position = delimiter + (pair ? 2 : 1);
    return true;
}

std::size_t ItemReader::line() noexcept {
    for (; m_countedTo < m_itemOffset; ++m_countedTo) {
        const char c = m_text[m_countedTo];
        const bool pair = c == '\r' && m_countedTo + 1 < m_text.size() && m_text[m_countedTo + 1] == '\n';
        if (c == '\n' || (c == '\r' && !pair)) ++m_line;
    }
    return m_line;
}

}  // namespace relay
