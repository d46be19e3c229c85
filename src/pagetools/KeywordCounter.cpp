// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/KeywordCounter.h"

#include "core/Text.h"

namespace relay {

namespace {

constexpr std::uint32_t kStart = 0;

std::uint8_t folded(std::uint8_t byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<std::uint8_t>(byte | 0x20) : byte;
}

}  // namespace

KeywordCounter::KeywordCounter(const std::vector<std::string_view>& keywords) {
    std::array<bool, 256> used{};
    std::size_t length = 1;
    for (const std::string_view keyword : keywords) {
        length += keyword.size();
        for (const char c : keyword) used[folded(static_cast<std::uint8_t>(c))] = true;
    }
    // A text that has all 256 bytes but the capitals still leaves 0 for "unused".
    for (std::size_t byte = 0; byte < used.size(); ++byte)
        if (used[byte]) m_letter[byte] = static_cast<std::uint8_t>(m_letters++);
    for (std::size_t capital = 'A'; capital <= 'Z'; ++capital) m_letter[capital] = m_letter[capital | 0x20];
    m_next.reserve(length * m_letters);
    m_next.resize(m_letters, kStart);
    m_length.push_back(0);
    for (const std::string_view keyword : keywords) m_keywords.push_back(stateOf(keyword));
    link();
    for (std::size_t i = 0; i < keywords.size(); ++i)
        if (m_keywords[i] != kStart && m_length[m_keywords[i]] == 0)
            m_searched.emplace(m_keywords[i], keywords[i]);
}

KeywordCounter::State KeywordCounter::stateOf(std::string_view keyword) {
    State state = kStart;
    for (const char c : keyword) {
        const std::uint8_t letter = m_letter[static_cast<std::uint8_t>(c)];
        if (next(state, letter) == kStart) {
            next(state, letter) = static_cast<State>(m_length.size());
            m_next.resize(m_next.size() + m_letters, kStart);
            m_length.push_back(0);
        }
        state = next(state, letter);
    }
    if (state != kStart) m_length[state] = static_cast<std::uint32_t>(keyword.size());
    return state;
}

// Breadth first: the state of the longest proper suffix is complete when a state is reached.
void KeywordCounter::link() {
    m_shorter.assign(m_length.size(), kStart);
    m_shorterStill.assign(m_length.size(), kStart);
    std::vector<State> suffix(m_length.size(), kStart);
    // How many keywords end where the state does: each costs time at every byte of a text made of them.
    std::vector<std::uint8_t> ends(m_length.size(), 0);
    constexpr std::uint8_t kMostEnds = 8;
    std::vector<State> queue;
    for (std::size_t letter = 0; letter < m_letters; ++letter)
        if (m_next[letter] != kStart) queue.push_back(m_next[letter]);
    for (std::size_t at = 0; at < queue.size(); ++at) {
        const State state = queue[at];
        m_shorterStill[state] = m_shorter[suffix[state]];
        if (ends[m_shorterStill[state]] == kMostEnds) m_length[state] = 0;
        if (m_length[state] > 0) ends[state] = static_cast<std::uint8_t>(ends[m_shorterStill[state]] + 1);
        m_shorter[state] = m_length[state] > 0 ? state : m_shorterStill[state];
        for (std::size_t i = 0; i < m_letters; ++i) {
            const auto letter = static_cast<std::uint8_t>(i);
            const State child = next(state, letter);
            const State other = next(suffix[state], letter);
            if (child == kStart) {
                next(state, letter) = other;
            } else {
                suffix[child] = other;
                queue.push_back(child);
            }
        }
    }
}

std::vector<std::int64_t> KeywordCounter::count(std::string_view text) const {
    std::vector<std::int64_t> found(m_length.size(), 0);
    std::vector<std::size_t> free(m_length.size(), 0);  // where the next occurrence may begin
    State state = kStart;
    for (std::size_t at = 0; at < text.size(); ++at) {
        state = m_next[state * m_letters + m_letter[static_cast<std::uint8_t>(text[at])]];
        for (State end = m_shorter[state]; end != kStart; end = m_shorterStill[end]) {
            const std::size_t first = at + 1 - m_length[end];
            if (first < free[end]) continue;
            ++found[end];
            free[end] = at + 1;
        }
    }
    for (const auto& [end, keyword] : m_searched)
        for (std::size_t at = findNoCase(text, keyword); at != npos;
             at = findNoCase(text, keyword, at + keyword.size()))
            ++found[end];
    std::vector<std::int64_t> counts;
    counts.reserve(m_keywords.size());
    for (const State keyword : m_keywords) counts.push_back(found[keyword]);
    return counts;
}

}  // namespace relay
