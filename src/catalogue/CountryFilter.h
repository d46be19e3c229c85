// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// The codes of the countries seen so far, each followed by a comma. Finding a code anywhere in that text
// takes time proportional to the code's length, not the text's: a suffix automaton represents all parts of
// the text and grows with each byte.
class CountryFilter final {
  public:
    CountryFilter();

    const std::string& text() const noexcept { return m_text; }
    // A plain search: "S" occurs in "US,".
    bool contains(std::string_view code) const noexcept;
    void add(std::string_view code);

  private:
    using Place = std::uint32_t;

    // All parts of the text with the same end places.
    struct State final {
        Place length = 0;     // of the longest part
        Place shorter = 0;    // the state of the longest part that ends at more places
        Place firstEdge = 0;  // of a linked list; 0 for none
    };
    struct Edge final {
        Place target = 0;
        Place next = 0;  // in the list; 0 for none
        char byte = 0;
    };

    void append(char byte);
    Place follow(Place state, char byte) const noexcept;  // 0 when no part continues with the byte
    Place edgeOf(Place state, char byte) const noexcept;  // 0 when there is none; not for the first state
    void setEdge(Place state, char byte, Place target);
    Place split(Place state, Place from, char byte);

    std::string m_text;
    std::array<Place, 256> m_fromStart{};  // edges of the first state, which has the most
    std::vector<State> m_states;           // the first is the empty part
    std::vector<Edge> m_edges;             // the first is a placeholder
    Place m_last = 0;
};

}  // namespace relay
