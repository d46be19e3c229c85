// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// The codes of the countries met so far, each followed by a comma. Whether a code occurs anywhere in that
// text takes time by the code's length, and not by the text's: all parts of the text are kept as the paths of
// a graph (a suffix automaton), which grows with each byte.
class CountryFilter final {
  public:
    CountryFilter();

    const std::string& text() const noexcept { return m_text; }
    // A plain search: "S" occurs in "US,".
    bool contains(std::string_view code) const noexcept;
    void add(std::string_view code);

  private:
    using Place = std::uint32_t;

    // All parts of the text that end at the same places.
    struct State final {
        Place length = 0;     // of the longest part
        Place shorter = 0;    // the state of the longest part that ends at more places
        Place firstEdge = 0;  // of a chain; 0 for none
    };
    struct Edge final {
        Place target = 0;
        Place next = 0;  // in the chain; 0 for none
        char byte = 0;
    };

    void append(char byte);
    Place follow(Place state, char byte) const noexcept;  // 0 when no part goes on like that
    Place edgeOf(Place state, char byte) const noexcept;  // 0 when there is none; not for the first state
    void setEdge(Place state, char byte, Place target);
    Place split(Place state, Place from, char byte);

    std::string m_text;
    std::array<Place, 256> m_fromStart{};  // the edges of the first state, which has the most
    std::vector<State> m_states;           // the first one is the empty part
    std::vector<Edge> m_edges;             // the first one is none
    Place m_last = 0;
};

}  // namespace relay
