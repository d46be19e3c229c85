// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// Counts many keywords in a text, without regard to case, in one walk over it: the time does not depend on
// the number of keywords. Only keywords that end with many others, as "aaaaaaaaaa" does, are searched for one
// by one. Memory is about a kilobyte per letter of the keywords at most.
class KeywordCounter final {
  public:
    explicit KeywordCounter(const std::vector<std::string_view>& keywords);

    // For each keyword, in the order given, how often it occurs; also inside longer words. Occurrences of the
    // same keyword that overlap count once. An empty keyword occurs nowhere.
    std::vector<std::int64_t> count(std::string_view text) const;

  private:
    using State = std::uint32_t;

    State& next(State state, std::uint8_t letter) { return m_next[state * m_letters + letter]; }
    State stateOf(std::string_view keyword);
    void link();

    std::array<std::uint8_t, 256> m_letter{};  // the letter that stands for a byte; 0 for all unused ones
    std::size_t m_letters = 1;
    std::vector<State> m_next;                // by state and letter
    std::vector<std::uint32_t> m_length;      // of the keyword that ends at a state; 0 where none ends
    std::vector<State> m_shorter;             // the state itself or the longest suffix that ends a keyword
    std::vector<State> m_shorterStill;        // the same without the state itself
    std::vector<State> m_keywords;            // by keyword: the state where it ends
    std::map<State, std::string> m_searched;  // by that state: keywords that the walk passes over
};

}  // namespace relay
