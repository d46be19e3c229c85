// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Url.h"

#include "core/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>
#include <unordered_map>
#include <vector>

namespace relay {

namespace {

std::array<std::string_view, 256> makeEscapes() {
    std::array<std::string_view, 256> table{};
    static constexpr struct {
        char character;
        std::string_view escape;
    } kEscapes[] = {
        {'~', "%7E"}, {'!', "%21"},  {'#', "%23"}, {'$', "%24"}, {'%', "%25"},  {'^', "%5E"}, {'&', "%26"},
        {'(', "%28"}, {')', "%29"},  {'=', "%3D"}, {'{', "%7B"}, {'}', "%7D"},  {'|', "%7C"}, {'[', "%5B"},
        {']', "%5D"}, {'\\', "%5C"}, {':', "%3A"}, {'+', "%2B"}, {'\'', "%27"}, {'"', "%27"}, {';', "%3B"},
        {'<', "%3C"}, {'>', "%3E"},  {'?', "%3F"}, {',', "%2C"}, {'/', "%2F"},  {'`', "%60"}, {' ', "+"},
    };
    for (const auto& entry : kEscapes) table[static_cast<unsigned char>(entry.character)] = entry.escape;
    return table;
}

// The character for the two hex digits of an escape, or '\0' when the escape is unknown.
char unescaped(char high, char low) {
    static constexpr std::string_view kKnown = "~.-!#$%^&,()+`={}|[/]\\_:';<>?";
    const int code = hexDigit(high) * 16 + hexDigit(low);
    if (hexDigit(high) < 0 || hexDigit(low) < 0 || code == 0) return '\0';
    const char character = static_cast<char>(code);
    return kKnown.find(character) == npos ? '\0' : character;
}

// Decodes in rounds: each takes the first percent sign with the two characters after it and replaces all
// occurrences of these three at once. On a plain string that would be quadratic for a text such as
// "%252525...", so the characters form a linked list, and the places of each escape are kept in a list.
class Unescaper final {
  public:
    explicit Unescaper(std::string_view text)
        : m_text(text), m_next(text.size() + 1), m_previous(text.size() + 1) {
        std::iota(m_next.begin(), m_next.end(), Place{1});
        std::iota(m_previous.begin(), m_previous.end(), static_cast<Place>(-1));
        for (Place at = 0; at < m_text.size(); ++at) note(at);
    }

    std::string run() {
        Place at = static_cast<Place>(m_text.find('%'));
        const Place end = static_cast<Place>(m_text.size());
        m_front = 0;
        while (at != end) {
            if (m_text[at] != '%') {
                at = m_next[at];
            } else if (!complete(at)) {
                // An incomplete escape at the end is removed.
                cut(at, end);
                at = end;
            } else {
                at = replaceEscape(at);
            }
        }
        std::string result;
        for (Place i = m_front; i != end; i = m_next[i]) result += m_text[i];
        return result;
    }

  private:
    using Place = std::uint32_t;

    bool complete(Place at) const {
        const Place end = static_cast<Place>(m_text.size());
        return m_next[at] != end && m_next[m_next[at]] != end;
    }
    std::uint16_t escapeAt(Place at) const {
        const auto low = [](char c) {
            return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
        };
        const Place first = m_next[at];
        return static_cast<std::uint16_t>(low(m_text[first]) << 8 | low(m_text[m_next[first]]));
    }
    void note(Place at) {
        if (m_text[at] == '%' && complete(at)) m_places[escapeAt(at)].push_back(at);
    }
    // Unlinks the characters from `begin` up to `end`.
    void cut(Place begin, Place end) {
        const Place before = m_previous[begin];
        if (begin == m_front)
            m_front = end;
        else
            m_next[before] = end;
        m_previous[end] = before;
        for (Place i = begin; i != end;) {
            const Place following = m_next[i];
            m_text[i] = '\0';
            m_next[i] = i;  // marks the place as removed
            i = following;
        }
    }
    bool gone(Place at) const { return m_next[at] == at; }

    // Returns the place where the search for the next round starts.
    Place replaceEscape(Place first) {
        const std::uint16_t escape = escapeAt(first);
        std::vector<Place> places = std::move(m_places[escape]);
        m_places.erase(escape);
        std::erase_if(places, [&](Place at) {
            return gone(at) || m_text[at] != '%' || !complete(at) || escapeAt(at) != escape;
        });
        std::sort(places.begin(), places.end());
        places.erase(std::unique(places.begin(), places.end()), places.end());
        const char with = unescaped(m_text[m_next[first]], m_text[m_next[m_next[first]]]);
        // The text before the first percent sign is never removed.
        const bool atFront = first == m_front;
        const Place before = m_previous[first];
        for (const Place at : places) {
            if (gone(at)) continue;  // overlapped by the place before it
            const Place behind = m_next[m_next[m_next[at]]];
            const Place start = with == '\0' ? at : m_next[at];
            if (with != '\0') m_text[at] = with;
            cut(start, behind);
            const Place survivor = with == '\0' ? behind : at;
            noteAround(survivor);
        }
        return atFront ? m_front : m_next[before];
    }
    // Notes the escapes that the change at `at` may have created: there and at the two characters before.
    void noteAround(Place at) {
        if (at != m_text.size()) note(at);
        for (int step = 0; step < 2 && at != m_front; ++step) {
            at = m_previous[at];
            note(at);
        }
    }

    std::string m_text;
    std::vector<Place> m_next;
    std::vector<Place> m_previous;
    std::unordered_map<std::uint16_t, std::vector<Place>> m_places;
    Place m_front = 0;
};

std::string_view behind(std::string_view text, std::string_view mark) {
    const std::size_t at = text.find(mark);
    return at == npos ? text : text.substr(at + mark.size());
}

}  // namespace

std::string EncodeURLValue(std::string_view text) {
    static const std::array<std::string_view, 256> kTable = makeEscapes();
    std::string result;
    result.reserve(text.size() + text.size() / 2);
    for (const char c : text) {
        const std::string_view escape = kTable[static_cast<unsigned char>(c)];
        if (escape.empty())
            result += c;
        else
            result.append(escape);
    }
    return result;
}

std::string EncodeString(std::string_view text) {
    return text.find('%') == npos ? std::string(text) : Unescaper(text).run();
}

std::string GetURLHost(std::string_view url) {
    url = behind(url, "//");
    return std::string(url.substr(0, url.find('/')));
}

std::string GetURLPath(std::string_view url) {
    url = behind(url, "//");
    const std::size_t slash = url.find('/');
    return slash == npos ? std::string() : std::string(url.substr(slash + 1));
}

std::string GetURLDirectory(std::string_view url) {
    std::string text(url.substr(0, url.find('?')));
    // The dot makes the last segment look like a file, so that it is dropped below.
    if (text.size() < url.size()) text += '.';
    std::string_view rest = behind(text, "//");
    const std::size_t slash = rest.rfind('/');
    if (slash == npos) return std::string(rest);
    const bool file = rest.find('.', slash) != npos;
    std::string result(file ? rest.substr(0, slash + 1) : rest);
    if (result.back() == '/') result.pop_back();
    return result;
}

std::string URLToFileName(std::string_view url) {
    std::string name(behind(url, "://"));
    for (char& c : name)
        if (c == '/' || c == '?' || c == ':' || c == '*' || c == '\\') c = '_';
    const std::size_t extension = findNoCase(name, ".htm");
    if (extension != npos && extension >= 1) name.resize(extension);
    if (!name.empty() && name.back() == '-') name.pop_back();
    return name;
}

std::string withScheme(std::string_view address) {
    return (address.find("://") == npos ? "http://" : "") + std::string(address);
}

std::optional<std::string> localPath(
    std::string_view text, TypedIn where,
    const std::function<std::optional<std::string>(const char*)>& environment) {
    if (where == TypedIn::CommandLine) {
        if (startsWithNoCase(text, "http://") || startsWithNoCase(text, "https://")) return std::nullopt;
        return std::string(text);
    }
    if (text.starts_with('/')) return std::string(text);
    if (!text.starts_with("~/")) return std::nullopt;
    return environment("HOME").value_or("~") + std::string(text.substr(1));
}

}  // namespace relay
