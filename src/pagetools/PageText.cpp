// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/PageText.h"

#include <algorithm>

namespace relay {

namespace {
// What the front has at least, if the page is as long: every position and the marker that begins there.
constexpr std::size_t kLeast = kLastPosition + 64;
constexpr std::size_t kFront = 2 * kLeast;
}  // namespace

PageText::PageText(std::string_view html) : m_html(html) {
    refill();
}

void PageText::refill() {
    if (m_front.size() >= kLeast || m_taken == m_html.size()) return;
    const std::string_view more = m_html.substr(m_taken, kFront - m_front.size());
    m_front.append(more);
    m_taken += more.size();
}

bool PageText::isInRest(std::string_view marker) const {
    // A marker may begin in the front's last bytes, which no change reaches.
    const std::size_t from = m_taken - std::min(m_taken, marker.size() - 1);
    auto known = std::find_if(m_known.begin(), m_known.end(),
                              [marker](const Known& entry) { return entry.marker == marker; });
    if (known == m_known.end()) known = m_known.insert(known, {marker, 0, 0});
    if (known->at < from || known->from == 0) *known = {marker, from + 1, findNoCase(m_html, marker, from)};
    return known->at != npos;
}

int PageText::find(std::string_view marker, int from) const {
    const std::size_t at = findNoCase(m_front, marker, static_cast<std::size_t>(from) - 1);
    if (at != npos) return pagePosition(at + 1);
    return m_taken < m_html.size() && isInRest(marker) ? pagePosition(npos) : 0;
}

std::string_view PageText::between(int first, int end) const {
    const std::size_t start = std::min(static_cast<std::size_t>(first) - 1, m_front.size());
    return std::string_view(m_front).substr(start, static_cast<std::size_t>(end - first));
}

void PageText::replace(int first, int end, std::string_view text) {
    const std::size_t start = std::min(static_cast<std::size_t>(first) - 1, m_front.size());
    m_front.replace(start, static_cast<std::size_t>(end - first), text);
    refill();
}

std::string PageText::asLine() const {
    constexpr std::string_view kBreak = "\r\n";
    const std::string_view rest = m_html.substr(m_taken);
    std::string line;
    line.reserve(m_front.size() + rest.size() + kBreak.size());
    return line.append(m_front).append(rest).append(kBreak);
}

}  // namespace relay
