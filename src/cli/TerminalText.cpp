// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/TerminalText.h"

#include "core/ScreenText.h"
#include "core/Text.h"

#include <array>
#include <cstdint>

namespace relay {

namespace {

struct Character final {
    char32_t code;
    std::size_t bytes;
};

// The first character of valid UTF-8.
Character firstCharacter(std::string_view text) {
    const auto byte = [&](std::size_t i) {
        return static_cast<unsigned char>(i < text.size() ? text[i] : 0);
    };
    const char32_t lead = byte(0);
    if (lead < 0xC0) return {lead, 1};
    std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t code = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) code = (code << 6) | (byte(i) & 0x3Fu);
    return {code, std::min(length, text.size())};
}

bool isUnsafe(char32_t code) {
    const bool control = code < 0x20 || (code >= 0x7F && code <= 0x9F) || code == 0x2028 || code == 0x2029;
    const bool direction = code == 0x200E || code == 0x200F || code == 0x061C ||
                           (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
    return control || direction;
}

struct Range final {
    char32_t first;
    char32_t last;
};

template <std::size_t N>
bool isIn(const std::array<Range, N>& ranges, char32_t code) {
    for (const Range& range : ranges) {
        if (code >= range.first && code <= range.last) return true;
    }
    return false;
}

std::size_t columnsOf(char32_t code) {
    static constexpr std::array<Range, 5> kNone{
        {{0x300, 0x36F}, {0x200B, 0x200D}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFEFF, 0xFEFF}}};
    static constexpr std::array<Range, 8> kDouble{{{0x1100, 0x115F},
                                                   {0x2E80, 0xA4CF},
                                                   {0xAC00, 0xD7A3},
                                                   {0xF900, 0xFAFF},
                                                   {0xFE30, 0xFE6F},
                                                   {0xFF00, 0xFF60},
                                                   {0x1F300, 0x1FAFF},
                                                   {0x20000, 0x3FFFD}}};
    if (isIn(kNone, code)) return 0;
    return isIn(kDouble, code) ? 2 : 1;
}

void appendEscaped(std::string& out, std::string_view bytes) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        out += "\\x";
        out += kDigits[byte >> 4];
        out += kDigits[byte & 15];
    }
}

std::string escaped(std::string_view bytes, bool keepLines) {
    const std::string text = toPrintableUtf8(bytes);
    std::string out;
    out.reserve(text.size());
    for (std::string_view rest = text; !rest.empty();) {
        const Character character = firstCharacter(rest);
        const std::string_view piece = rest.substr(0, character.bytes);
        rest.remove_prefix(character.bytes);
        if (keepLines && character.code == '\n') {
            out += '\n';
        } else if (isUnsafe(character.code)) {
            appendEscaped(out, piece);
        } else {
            out += piece;
        }
    }
    return out;
}

}  // namespace

std::string terminalText(std::string_view bytes) {
    return escaped(bytes, false);
}

std::string terminalLines(std::string_view bytes) {
    return escaped(replaceAll(replaceAll(bytes, "\r\n", "\n"), "\r", "\n"), true);
}

std::size_t terminalWidth(std::string_view text) {
    std::size_t columns = 0;
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        columns += columnsOf(character.code);
        text.remove_prefix(character.bytes);
    }
    return columns;
}

std::string_view cutToWidth(std::string_view text, std::size_t columns) {
    std::size_t taken = 0;
    std::size_t used = 0;
    while (taken < text.size()) {
        const Character character = firstCharacter(text.substr(taken));
        used += columnsOf(character.code);
        if (used > columns) break;
        taken += character.bytes;
    }
    return text.substr(0, taken);
}

}  // namespace relay
