// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/TerminalText.h"

#include "core/ScreenText.h"
#include "core/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace relay {

namespace {

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

}  // namespace

std::string terminalText(std::string_view bytes) {
    return escapeControlCharacters(toPrintableUtf8(bytes));
}

std::string terminalLines(std::string_view bytes) {
    const std::string text = replaceAll(replaceAll(bytes, "\r\n", "\n"), "\r", "\n");
    std::string lines;
    std::string_view rest = text;
    for (std::size_t end = rest.find('\n'); end != npos; end = rest.find('\n')) {
        lines.append(terminalText(rest.substr(0, end))) += '\n';
        rest.remove_prefix(end + 1);
    }
    return lines.append(terminalText(rest));
}

std::size_t terminalWidth(std::string_view text) {
    std::size_t columns = 0;
    while (!text.empty()) {
        const Utf8Character character = firstUtf8Character(text);
        columns += columnsOf(character.code);
        text.remove_prefix(std::max<std::size_t>(character.length, 1));
    }
    return columns;
}

std::string_view cutToWidth(std::string_view text, std::size_t columns) {
    std::size_t taken = 0;
    std::size_t used = 0;
    while (taken < text.size()) {
        const Utf8Character character = firstUtf8Character(text.substr(taken));
        used += columnsOf(character.code);
        if (used > columns) break;
        taken += std::max<std::size_t>(character.length, 1);
    }
    return text.substr(0, taken);
}

}  // namespace relay
