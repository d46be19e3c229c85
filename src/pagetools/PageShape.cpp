// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/PageShape.h"

#include "core/Keys.h"
#include "core/Text.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <unordered_set>

namespace relay {

namespace {

constexpr int kDeepest = 2000;
constexpr std::size_t kMostAttributes = 2000;  // in one tag

using Names = std::unordered_set<std::string_view, KeyHash, KeyEqual>;

// Elements that have no content, or that the next of their kind closes.
bool closesItself(std::string_view name) {
    static const Names kNames = {
        "p",     "li",     "dt",    "dd",    "tr",    "td",       "th",      "option", "area",
        "base",  "br",     "col",   "embed", "hr",    "img",      "input",   "link",   "meta",
        "param", "source", "track", "wbr",   "frame", "thead",    "tbody",   "tfoot",  "optgroup",
        "body",  "html",   "head",  "rt",    "rp",    "basefont", "bgsound", "image",  "colgroup"};
    return kNames.contains(name);
}

// Elements that end a drawing or a formula around them.
bool leavesForeign(std::string_view name) {
    static const Names kNames = {
        "b",     "big",   "blockquote", "body",   "br",   "center", "code",  "dd", "div",  "dl",   "dt",
        "em",    "embed", "h1",         "h2",     "h3",   "h4",     "h5",    "h6", "head", "hr",   "i",
        "img",   "li",    "listing",    "menu",   "meta", "nobr",   "ol",    "p",  "pre",  "ruby", "s",
        "small", "span",  "strong",     "strike", "sub",  "sup",    "table", "tt", "u",    "ul",   "var"};
    return kNames.contains(name);
}

bool isLetter(char c) {
    return (static_cast<unsigned char>(c) | 0x20) >= 'a' && (static_cast<unsigned char>(c) | 0x20) <= 'z';
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '/';
}

class ShapeReader final {
  public:
    explicit ShapeReader(std::string_view html) : m_html(html) {}

    std::string problem() {
        for (m_at = m_html.find('<'); m_at != npos; m_at = m_html.find('<', m_at)) {
            const bool closing = m_html.substr(m_at + 1, 1) == "/";
            const std::size_t first = m_at + (closing ? 2 : 1);
            if (first >= m_html.size()) break;
            if (m_html.substr(first, 3) == "!--") {
                const std::size_t end = m_html.find("-->", first);
                m_at = end == npos ? m_html.size() : end;
                continue;
            }
            if (!isLetter(m_html[first])) {
                m_at = first;
                continue;
            }
            std::size_t end = first;
            while (end < m_html.size() && m_html[end] != '>' && !isBlank(m_html[end])) ++end;
            const std::string_view name = m_html.substr(first, end - first);
            passAttributes(end);
            if (m_attributes > kMostAttributes) return "The page has a tag with thousands of attributes";
            if (closing)
                close(name);
            else
                open(name);
            if (m_depth > kDeepest) return "The page's elements are nested too deep";
        }
        return {};
    }

  private:
    // Counts the attributes and moves behind the tag's end.
    void passAttributes(std::size_t from) {
        m_attributes = 0;
        m_slashed = false;
        bool between = true;
        m_at = from;
        while (m_at < m_html.size() && m_html[m_at] != '>') {
            const char c = m_html[m_at];
            m_slashed = c == '/';
            if (isBlank(c)) {
                between = true;
            } else if (c == '=') {
                passValue();
                between = true;
                continue;
            } else if (between) {
                ++m_attributes;
                between = false;
            }
            ++m_at;
        }
    }
    void passValue() {
        m_slashed = false;
        do ++m_at;
        while (m_at < m_html.size() && m_html[m_at] != '/' && isBlank(m_html[m_at]));
        if (m_at >= m_html.size()) return;
        const char quote = m_html[m_at];
        if (quote == '"' || quote == '\'') {
            const std::size_t end = m_html.find(quote, m_at + 1);
            m_at = end == npos ? m_html.size() : end + 1;
            return;
        }
        while (m_at < m_html.size() && m_html[m_at] != '>' && (m_html[m_at] == '/' || !isBlank(m_html[m_at])))
            ++m_at;
    }

    void open(std::string_view name) {
        if (equalsNoCase(name, "svg") || equalsNoCase(name, "math")) {
            ++m_foreign;
        } else if (m_foreign > 0 && leavesForeign(name)) {
            m_foreign = 0;
        }
        if (m_foreign > 0 ? m_slashed : closesItself(name)) return;
        ++m_open[name];
        ++m_depth;
        for (const std::string_view raw : {"script", "style", "textarea", "title", "xmp"})
            if (m_foreign == 0 && equalsNoCase(name, raw)) passRawText(raw);
    }
    void passRawText(std::string_view name) {
        const std::size_t end = findNoCase(m_html, std::string("</").append(name), m_at);
        m_at = end == npos ? m_html.size() : end;
    }
    void close(std::string_view name) {
        if (m_foreign > 0 && (equalsNoCase(name, "svg") || equalsNoCase(name, "math"))) --m_foreign;
        const auto known = m_open.find(name);
        if (known == m_open.end() || known->second == 0) return;
        --known->second;
        --m_depth;
    }

    std::string_view m_html;
    std::size_t m_at = 0;
    std::size_t m_attributes = 0;
    bool m_slashed = false;                                               // the tag ends in "/>"
    std::unordered_map<std::string_view, int, KeyHash, KeyEqual> m_open;  // by name
    int m_depth = 0;
    int m_foreign = 0;
};

}  // namespace

std::string pageShapeProblem(std::string_view html) {
    return ShapeReader(html).problem();
}

}  // namespace relay
