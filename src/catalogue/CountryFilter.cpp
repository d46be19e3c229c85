// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CountryFilter.h"

namespace relay {

CountryFilter::CountryFilter() : m_states(1), m_edges(1) {}

bool CountryFilter::contains(std::string_view code) const noexcept {
    Place state = 0;
    for (const char byte : code) {
        state = follow(state, byte);
        if (state == 0) return false;
    }
    return true;
}

void CountryFilter::add(std::string_view code) {
    const std::size_t start = m_text.size();
    m_text.append(code).push_back(',');
    for (std::size_t place = start; place < m_text.size(); ++place) append(m_text[place]);
}

CountryFilter::Place CountryFilter::edgeOf(Place state, char byte) const noexcept {
    Place edge = m_states[state].firstEdge;
    while (edge != 0 && m_edges[edge].byte != byte) edge = m_edges[edge].next;
    return edge;
}

CountryFilter::Place CountryFilter::follow(Place state, char byte) const noexcept {
    return state == 0 ? m_fromStart[static_cast<unsigned char>(byte)] : m_edges[edgeOf(state, byte)].target;
}

void CountryFilter::setEdge(Place state, char byte, Place target) {
    if (state == 0) {
        m_fromStart[static_cast<unsigned char>(byte)] = target;
    } else if (const Place edge = edgeOf(state, byte); edge != 0) {
        m_edges[edge].target = target;
    } else {
        m_edges.push_back({target, m_states[state].firstEdge, byte});
        m_states[state].firstEdge = static_cast<Place>(m_edges.size() - 1);
    }
}

// The new byte extends every part that ends the text, the longest first.
void CountryFilter::append(char byte) {
    const auto added = static_cast<Place>(m_states.size());
    m_states.push_back({m_states[m_last].length + 1, 0, 0});
    Place state = m_last;
    m_last = added;
    while (follow(state, byte) == 0) {
        setEdge(state, byte, added);
        if (state == 0) return;
        state = m_states[state].shorter;
    }
    const Place known = follow(state, byte);
    const bool longest = m_states[known].length == m_states[state].length + 1;
    const Place shorter = longest ? known : split(known, state, byte);
    m_states[added].shorter = shorter;
}

// The shorter parts of a state now also end at the new place, so they get a state of their own.
CountryFilter::Place CountryFilter::split(Place state, Place from, char byte) {
    const auto shorter = static_cast<Place>(m_states.size());
    m_states.push_back({m_states[from].length + 1, m_states[state].shorter, 0});
    for (Place edge = m_states[state].firstEdge; edge != 0; edge = m_edges[edge].next) {
        const Edge copied = m_edges[edge];
        setEdge(shorter, copied.byte, copied.target);
    }
    m_states[state].shorter = shorter;
    while (follow(from, byte) == state) {
        setEdge(from, byte, shorter);
        if (from == 0) break;
        from = m_states[from].shorter;
    }
    return shorter;
}

}  // namespace relay
