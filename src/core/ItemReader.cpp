// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ItemReader.h"

#include <algorithm>
#include <bit>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace relay {

namespace {

// The first comma or line break, or `end`. Reads sixteen bytes at a time where the processor can.
const char* findDelimiter(const char* from, const char* end) noexcept {
#ifdef __SSE2__
    const auto equals = [](__m128i bytes, char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); };
    for (; end - from >= 16; from += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
        const __m128i hits =
            _mm_or_si128(equals(bytes, ','), _mm_or_si128(equals(bytes, '\r'), equals(bytes, '\n')));
        const auto mask = static_cast<unsigned>(_mm_movemask_epi8(hits));
        if (mask != 0) return from + std::countr_zero(mask);
    }
#endif
    while (from < end && *from != ',' && *from != '\r' && *from != '\n') ++from;
    return from;
}

}  // namespace

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
    const auto delimiter = static_cast<std::size_t>(findDelimiter(text + end, text + size) - text);
    if (m_itemOffset == start) item = m_text.substr(start, delimiter - start);
    m_position = delimiter;
    if (delimiter == size) return true;
    m_closedByComma = text[delimiter] == ',';
    const bool pair = text[delimiter] == '\r' && delimiter + 1 < size && text[delimiter + 1] == '\n';
    m_position = delimiter + (pair ? 2 : 1);
    return true;
}

bool ItemReader::nextEntry(std::string_view& item) noexcept {
    while (next(item))
        if (!item.empty() && item.front() != '#') return true;
    return false;
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
