// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Text.h"

#include "core/Failure.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace relay {

namespace {

constexpr std::array<unsigned char, 256> makeLowerTable() {
    std::array<unsigned char, 256> table{};
    for (unsigned i = 0; i < table.size(); ++i)
        table[i] = static_cast<unsigned char>(i >= 'A' && i <= 'Z' ? i + ('a' - 'A') : i);
    return table;
}
constexpr auto kLower = makeLowerTable();

constexpr unsigned char lower(char c) noexcept {
    return kLower[static_cast<unsigned char>(c)];
}

struct Codes final {
    char32_t first;
    char32_t last;
};
constexpr Codes kControls[] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0x061C, 0x061C}, {0x200E, 0x200F},
                               {0x2028, 0x202E}, {0x2066, 0x206F}, {0xFFF9, 0xFFFB}};

// What a closed tag appends to the plain text.
std::string_view breakOfTag(std::string_view tag) {
    static constexpr std::string_view kParagraphTags[] = {"P", "/H1", "/H2", "/H3", "/H4", "/H5", "DL"};
    for (const std::string_view name : kParagraphTags)
        if (equalsNoCase(tag, name)) return "\r\n\r\n";
    if (equalsNoCase(tag, "BR")) return "\r\n";
    if (equalsNoCase(tag, "HR")) return "\r\n--------------------------------------------------\r\n";
    return {};
}

char unusedCharacter(std::string_view text) {
    std::bitset<256> used;
    for (const char c : text) used.set(static_cast<unsigned char>(c));
    for (unsigned code = 255; code > 0; --code)
        if (!used[code]) return static_cast<char>(code);
    return '\0';
}

// Turns every marker into a line break and drops the blanks at the start of each line. Continuing after each
// break, not from the front, keeps this linear.
std::string breakAtMarkers(std::string_view text, char marker) {
    std::string result;
    result.reserve(text.size() + text.size() / 16);
    std::size_t at = text.find(marker);
    while (at != npos) {
        result.append(text.substr(0, at)).append("\r\n");
        text = trim(text.substr(at + 1));
        at = text.find(marker);
    }
    return result.append(text);
}

}  // namespace

bool containsNoCase(std::string_view hay, std::string_view needle) noexcept {
    return findNoCase(hay, needle) != npos;
}

std::size_t rfindNoCase(std::string_view hay, std::string_view needle) noexcept {
    if (needle.size() > hay.size()) return npos;
    for (std::size_t at = hay.size() - needle.size() + 1; at-- > 0;)
        if (equalsNoCase(hay.substr(at, needle.size()), needle)) return at;
    return npos;
}

bool equalsNoCase(std::string_view a, std::string_view b) noexcept {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (lower(a[i]) != lower(b[i])) return false;
    return true;
}

bool startsWithNoCase(std::string_view text, std::string_view start) noexcept {
    return text.size() >= start.size() && equalsNoCase(text.substr(0, start.size()), start);
}

bool endsWithNoCase(std::string_view text, std::string_view end) noexcept {
    return text.size() >= end.size() && equalsNoCase(text.substr(text.size() - end.size()), end);
}

int compareNoCase(std::string_view a, std::string_view b) noexcept {
    const std::size_t common = a.size() < b.size() ? a.size() : b.size();
    for (std::size_t i = 0; i < common; ++i) {
        const int difference = int{lower(a[i])} - int{lower(b[i])};
        if (difference != 0) return difference;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

std::string toUpper(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - ('a' - 'A'));
    return result;
}

std::string toLower(std::string_view text) {
    std::string result(text);
    for (char& c : result) c = static_cast<char>(lower(c));
    return result;
}

std::string_view trim(std::string_view text) noexcept {
    return trimLeft(trimRight(text));
}

std::string_view trimLeft(std::string_view text) noexcept {
    const std::size_t start = text.find_first_not_of(' ');
    return start == npos ? text.substr(text.size()) : text.substr(start);
}

std::string_view trimRight(std::string_view text) noexcept {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

namespace {

template <typename Find>
std::string replaced(std::string_view text, std::string_view what, std::string_view with, Find&& find) {
    if (what.empty()) return std::string(text);
    std::string result;
    result.reserve(text.size());
    std::size_t from = 0;
    for (std::size_t at = find(from); at != npos; at = find(from)) {
        result.append(text.substr(from, at - from)).append(with);
        from = at + what.size();
    }
    return result.append(text.substr(from));
}

}  // namespace

std::string replaceAll(std::string_view text, std::string_view what, std::string_view with) {
    return replaced(text, what, with, [&](std::size_t from) { return text.find(what, from); });
}

std::string replaceAllNoCase(std::string_view text, std::string_view what, std::string_view with) {
    return replaced(text, what, with, [&](std::size_t from) { return findNoCase(text, what, from); });
}

std::string_view firstLine(std::string_view text) noexcept {
    return text.substr(0, text.find_first_of("\r\n"));
}

double leadingNumber(std::string_view text) noexcept {
    text = trimLeft(text);
    const bool negative = !text.empty() && text.front() == '-';
    if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
    // from_chars would also accept "inf", "nan" and a second sign.
    if (text.empty() || (text.front() != '.' && (text.front() < '0' || text.front() > '9'))) return 0;
    double value = 0;
    const std::errc error =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed).ec;
    if (error == std::errc::result_out_of_range && text.front() != '0' && text.front() != '.')
        value = std::numeric_limits<double>::infinity();
    return negative ? -value : value;
}

int leadingInteger(std::string_view text) noexcept {
    constexpr double kLowest = std::numeric_limits<int>::min();
    constexpr double kHighest = std::numeric_limits<int>::max();
    const double value = std::nearbyint(leadingNumber(text));
    if (value <= kLowest) return std::numeric_limits<int>::min();
    if (value >= kHighest) return std::numeric_limits<int>::max();
    return static_cast<int>(value);
}

std::int16_t toInt16(double value) {
    const double rounded = std::nearbyint(value);
    if (!(rounded >= std::numeric_limits<std::int16_t>::min() &&
          rounded <= std::numeric_limits<std::int16_t>::max()))
        throw Failure("Overflow", 6);
    return static_cast<std::int16_t>(rounded);
}

std::string_view left(std::string_view text, std::size_t n) noexcept {
    return text.substr(0, n);
}

std::string GetToken(std::string_view text, char delimiter, int n) {
    for (int token = 1; token < n; ++token) {
        const std::size_t at = text.find(delimiter);
        if (at == npos) return {};
        text.remove_prefix(at + 1);
    }
    return std::string(text.substr(0, text.find(delimiter)));
}

std::string CleanLineBreaks(std::string_view text) {
    std::string line(text);
    cleanLineBreaks(line);
    return line;
}

// One blank for each line break, then one for two blanks, then none for three: a run of n is left with half
// of n, rounded up, modulo 3. Only the places where that changes something are looked for, as most blanks
// stand alone.
void cleanLineBreaks(std::string& text) {
    const std::string_view all = text;
    std::size_t pair = 0;
    std::size_t cr = 0;
    std::size_t lf = 0;
    std::size_t kept = 0;  // bytes of the result
    std::size_t at = 0;    // the first byte that is not in it
    const auto next = [&](std::size_t& place, std::string_view what) {
        if (place != npos && (place < at || at == 0))
            place = what.size() == 1 ? all.find(what[0], at) : findNoCase(all, what, at);
    };
    const auto keep = [&](std::size_t end) {
        if (kept != at) std::memmove(text.data() + kept, text.data() + at, end - at);
        kept += end - at;
        at = end;
    };
    for (;;) {
        next(pair, "  ");
        next(cr, "\r");
        next(lf, "\n");
        std::size_t run = std::min({pair, cr, lf});
        if (run == npos) break;
        if (run > at && all[run - 1] == ' ') --run;
        keep(run);
        std::size_t blanks = 0;
        for (; at < all.size() && (all[at] == ' ' || all[at] == '\r' || all[at] == '\n'); ++at)
            if (all[at] != '\n' || at == run || all[at - 1] != '\r') ++blanks;
        for (std::size_t left = (blanks + 1) / 2 % 3; left > 0; --left) text[kept++] = ' ';
    }
    keep(all.size());
    text.resize(kept);
}

void SplitAtPipe(std::string& text, std::string& rest) {
    const std::size_t at = text.find('|');
    rest = at == npos ? std::string() : text.substr(at + 1);
    if (at != npos) text.resize(at);
}

std::string StripHTML(std::string_view html) {
    std::string result;
    for (std::size_t open = html.find('<'); open != npos; open = html.find('<')) {
        result.append(html.substr(0, open));
        html.remove_prefix(open + 1);
        const std::size_t close = html.find('>');
        if (close == npos) break;
        const std::string_view tag = html.substr(0, close);
        result.append(breakOfTag(tag.substr(0, tag.find(' '))));
        html.remove_prefix(close + 1);
    }
    const char marker = unusedCharacter(result);
    std::erase(result, '\r');
    for (char& c : result)
        if (c == '\n') c = marker;
    return breakAtMarkers(result, marker);
}

std::string CutAtNull(std::string_view text) {
    return std::string(text.substr(0, text.find('\0')));
}

Utf8Character firstUtf8Character(std::string_view text) noexcept {
    if (text.empty()) return {};
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(0);
    if (lead < 0x80) return {lead, 1};
    const std::size_t length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
    if (length == 0 || text.size() < length) return {};
    char32_t code = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0u) != 0x80) return {};
        code = code << 6 | (byte(i) & 0x3Fu);
    }
    const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    if (overlong || (code >= 0xD800 && code < 0xE000) || code > 0x10FFFF) return {};
    return {code, length};
}

std::size_t characterCount(std::string_view text) noexcept {
    std::size_t count = 0;
    for (; !text.empty(); ++count)
        text.remove_prefix(std::max<std::size_t>(firstUtf8Character(text).length, 1));
    return count;
}

bool isControlCharacter(char32_t code) noexcept {
    for (const Codes& range : kControls) {
        if (code <= range.last) return code >= range.first;
    }
    return false;
}

std::size_t findControlCharacter(std::string_view text, std::size_t from) noexcept {
    while (from < text.size()) {
        const Utf8Character character = firstUtf8Character(text.substr(from));
        const bool loose = character.length == 0;
        if (isControlCharacter(loose ? static_cast<unsigned char>(text[from]) : character.code)) return from;
        from += loose ? 1 : character.length;
    }
    return npos;
}

std::string escapeControlCharacters(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = findControlCharacter(text); at != npos; at = findControlCharacter(text)) {
        out.append(text.substr(0, at));
        const std::size_t length = std::max<std::size_t>(firstUtf8Character(text.substr(at)).length, 1);
        for (const char byte : text.substr(at, length)) appendHex(out.append("\\x"), byte);
        text.remove_prefix(at + length);
    }
    return out.append(text);
}

bool isControlByte(char byte) noexcept {
    return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
}

bool hasControlByte(std::string_view text) noexcept {
    return std::any_of(text.begin(), text.end(), isControlByte);
}

int hexDigit(char c) noexcept {
    if (c >= '0' && c <= '9') return c - '0';
    const int letter = c | 0x20;
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

void appendHex(std::string& out, char byte, std::string_view digits) {
    const auto code = static_cast<unsigned char>(byte);
    out += digits[code >> 4];
    out += digits[code & 15];
}

std::uint32_t crc32(std::string_view bytes) noexcept {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320 : 0);
    }
    return ~crc;
}

std::string Base64Encode(std::string_view text) {
    static constexpr std::string_view kAlphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string result;
    result.reserve((text.size() + 2) / 3 * 4);
    // 54 is a multiple of 3, so only the end of the text is padded.
    for (std::size_t at = 0; at < text.size(); at += 3) {
        const auto byte = [&](std::size_t i) {
            return static_cast<unsigned char>(at + i < text.size() ? text[at + i] : ' ');
        };
        const unsigned group = unsigned{byte(0)} << 16 | unsigned{byte(1)} << 8 | byte(2);
        for (int shift = 18; shift >= 0; shift -= 6) result += kAlphabet[group >> shift & 63];
    }
    const std::size_t missing = (3 - text.size() % 3) % 3;
    return result.replace(result.size() - missing, missing, missing, '=');
}

}  // namespace relay
