// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/ResultLinks.h"

#include "core/Text.h"

#include <algorithm>
#include <iterator>

namespace relay {

namespace {

constexpr std::string_view kAnchor = "<a href=";
constexpr std::string_view kAnchorEnd = "</A>";
// Links with these words are no results.
constexpr std::string_view kNoResults[] = {"this site only", "Text-only version", "more this site", ">Next",
                                           "Previous<"};

std::string withoutLineBreaks(std::string_view html) {
    std::string flat;
    flat.reserve(html.size());
    while (!html.empty()) {
        std::string_view line = html.substr(0, html.find('\n'));
        html.remove_prefix(std::min(line.size() + 1, html.size()));
        for (std::size_t at = line.find('\r'); at != npos; at = line.find('\r')) {
            flat.append(line.substr(0, at));
            line.remove_prefix(at + 1);
        }
        if (!line.empty()) flat.append(line);
    }
    return flat;
}

}  // namespace

void ResultLinks::read(std::string_view html) {
    m_list = html;
    if (html.find('\n') != npos || html.find('\r') != npos) {
        m_flat = withoutLineBreaks(html);
        m_list = m_flat;
    }
    cutList();
}

void ResultLinks::cutList() {
    // Nothing is found in an empty text, not even an empty marker.
    const std::size_t start = m_list.empty() ? npos : findNoCase(m_list, m_engine.ResultStartString);
    m_hasStart = start != npos;
    if (!m_hasStart) return;
    m_list.remove_prefix(start + m_engine.ResultStartString.size());
    const std::size_t end = findNoCase(m_list, m_engine.ResultEndString);
    if (end != npos) m_list = left(m_list, end + 1);  // the first character of the marker stays
}

// As long as the first form occurs anywhere in the rest, the second one is not looked at.
std::size_t ResultLinks::findOpener() {
    const std::size_t first = m_noOpener1 ? npos : findNoCase(m_list, m_engine.linkOpener1());
    m_noOpener1 = first == npos;
    return m_noOpener1 ? findNoCase(m_list, m_engine.linkOpener2()) : first;
}

std::optional<std::string_view> ResultLinks::next() {
    for (;;) {
        const std::size_t start = findOpener();
        if (start == npos) return std::nullopt;
        m_hasLink = true;
        const std::size_t end = findNoCase(m_list, kAnchorEnd, start);
        if (end == npos) {
            m_list = {};
            return std::nullopt;
        }
        const std::string_view link = m_list.substr(start, end + kAnchorEnd.size() - start);
        m_list.remove_prefix(end + 1);
        if (isResult(link)) return repaired(link);
    }
}

bool ResultLinks::isResult(std::string_view link) const {
    // An empty EngineKey is in every link.
    if (containsNoCase(link, m_engine.EngineKey)) return false;
    const auto holds = [link](std::string_view word) { return containsNoCase(link, word); };
    if (std::any_of(std::begin(kNoResults), std::end(kNoResults), holds)) return false;
    const auto filters = [&](const std::string& filter) { return !filter.empty() && holds(filter); };
    return !filters(m_engine.FilterKeyword1) && !filters(m_engine.FilterKeyword2);
}

std::string_view ResultLinks::repaired(std::string_view link) {
    if (!containsNoCase(link, "http://")) {
        if (startsWithNoCase(link, kAnchor)) link.remove_prefix(kAnchor.size());
        const bool quoted = link.starts_with("\"/");
        if (quoted || link.starts_with('/')) {
            if (quoted) link.remove_prefix(1);
            if (m_engine.EngineURL.ends_with('/')) link.remove_prefix(1);
            m_link.assign(kAnchor).append(quoted ? "\"" : "").append(m_engine.EngineURL).append(link);
            link = m_link;
        }
    }
    if (!startsWithNoCase(link, "<a ")) link = m_link = "<a " + std::string(link);
    return link;
}

}  // namespace relay
