// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/CategoryPage.h"

#include "core/Text.h"

#include <algorithm>

namespace relay {

namespace {

constexpr std::string_view kAnchor = "<a href=";
constexpr std::size_t kStep = 4;  // the search for the next anchor goes on this far into the last
constexpr std::size_t kMostRows = 100'000;
// An anchor that is never closed has all those behind it as its text.
constexpr std::size_t kMostText = std::size_t{32} * 1024 * 1024;

// Where a text occurs next. Asked for places in ascending order, it goes through the page once.
class Finder final {
  public:
    Finder(std::string_view hay, std::string_view needle) : m_hay(hay), m_needle(needle) {}

    std::size_t next(std::size_t from) {
        if (m_place != npos && (m_place < from || !m_asked)) m_place = findNoCase(m_hay, m_needle, from);
        m_asked = true;
        return m_place;
    }
    bool isIn(std::size_t from, std::size_t end) {
        const std::size_t place = next(from);
        return place != npos && place + m_needle.size() <= end;
    }

  private:
    std::string_view m_hay;
    std::string_view m_needle;
    std::size_t m_place = 0;
    bool m_asked = false;
};

std::string_view withoutQuotes(std::string_view text) {
    if (text.starts_with('"')) text.remove_prefix(1);
    if (text.ends_with('"')) text.remove_suffix(1);
    return text;
}

bool isRefused(std::string_view label, bool refusesAdultSites) {
    return refusesAdultSites && containsNoCase(label, "Adult");
}

}  // namespace

CategoryMenu readCategoryMenu(std::string_view categoryData, bool refusesAdultSites) {
    CategoryMenu menu;
    while (!categoryData.empty()) {
        const std::string_view piece = categoryData.substr(0, categoryData.find('>'));
        categoryData.remove_prefix(std::min(piece.size() + 1, categoryData.size()));
        const std::size_t equals = piece.find('=');
        if (equals == npos) continue;
        const std::string_view key = piece.substr(0, equals);
        std::string value(piece.substr(equals + 1));
        if (equalsNoCase(key, "URL")) {
            menu.url = std::move(value);
        } else if (!isRefused(key, refusesAdultSites)) {
            if (!value.starts_with('/')) value.insert(0, 1, '/');
            menu.rows.push_back({std::string(key), std::move(value)});
        }
    }
    return menu;
}

CategoryPage readCategoryPage(std::string_view html, const CategoryPageWish& wish) {
    const bool isDmoz = equalsNoCase(wish.engine, "dmoz");
    const std::string yahooAddress = wish.hosts.yahooAdd + "/fast/add?";
    constexpr std::string_view kAddLink = ">add URL";
    Finder anchors(html, kAnchor);
    Finder closes(html, "</a>");
    Finder tagEnds(html, ">");
    Finder yahooAdds(html, yahooAddress);
    Finder dmozAdds(html, kAddLink);
    Finder engines(html, wish.engine);
    Finder absolutes(html, "http");

    CategoryPage page;
    std::string_view yahooLink;
    std::string_view dmozLink;
    std::size_t read = 0;
    for (std::size_t place = anchors.next(0); place != npos; place = anchors.next(place + kStep)) {
        const std::size_t start = place + kAnchor.size();
        const std::size_t end = closes.next(start);
        if (end == npos || read > kMostText || page.rows.size() >= kMostRows) break;
        const std::string_view link = html.substr(start, end - start);
        if (yahooAdds.isIn(start, end)) yahooLink = link;
        if (isDmoz && dmozAdds.isIn(start, end)) dmozLink = html.substr(start, dmozAdds.next(start) - start);
        if (engines.isIn(start, end) || absolutes.isIn(start, end) || !tagEnds.isIn(start, end)) continue;
        const std::size_t close = tagEnds.next(start);
        const std::string_view target = withoutQuotes(html.substr(start, close - start));
        read += link.size();
        if (isDmoz && !containsNoCase(target, wish.currentPath)) continue;
        std::string label = StripHTML(html.substr(close + 1, end - close - 1));
        if (!label.empty() && !isRefused(label, wish.refusesAdultSites))
            page.rows.push_back({std::move(label), std::string(target)});
    }
    if (yahooLink.data() != nullptr) page.spaceID = getSpaceID(yahooLink);
    if (dmozLink.data() != nullptr) {
        dmozLink = withoutQuotes(dmozLink);
        page.nextUrl = wish.hosts.dmoz;
        if (!dmozLink.starts_with('/')) page.nextUrl += '/';
        page.nextUrl += dmozLink;
    }
    return page;
}

std::string getSpaceID(std::string_view link) {
    if (const std::size_t question = link.find('?'); question != npos) link.remove_prefix(question + 1);
    link = link.substr(0, link.find('>'));
    if (link.ends_with('"')) link.remove_suffix(1);
    return std::string(link);
}

std::optional<std::string> getDmozID(std::string_view html) {
    constexpr std::string_view kValue = "value=";
    const std::size_t index = findNoCase(html, "name=index");
    const std::size_t value = index == npos ? npos : findNoCase(html, kValue, index);
    if (value == npos) return std::nullopt;
    const std::string_view rest = html.substr(value + kValue.size());
    const std::size_t close = rest.find('>');
    if (close == npos) return std::nullopt;
    std::string_view id = rest.substr(0, close);
    if (id.ends_with('"')) id.remove_suffix(1);
    return std::string(id);
}

std::string getString(std::string_view url, UrlPart part) {
    if (url.ends_with('/')) url.remove_suffix(1);
    const std::size_t slash = url.rfind('/');
    if (slash == npos) return {};
    return std::string(part == UrlPart::Up ? url.substr(0, slash) : url.substr(slash + 1));
}

}  // namespace relay
