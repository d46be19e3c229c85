// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ScreenText.h"

#include <QChar>

namespace relay {

namespace {

constexpr char16_t kByteEscape = 0xDC00;

struct Character final {
    char32_t code = 0;
    std::size_t length = 0;  // in bytes; 0 when the text does not begin with valid UTF-8
};

// Refuses overlong forms, surrogates and codes over U+10FFFF.
Character decode(std::string_view text) {
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

void appendUtf8(std::string& out, char32_t code) {
    const auto continuation = [&](int shift) { out += static_cast<char>(0x80 | (code >> shift & 0x3F)); };
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | code >> 6);
        continuation(0);
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | code >> 12);
        continuation(6);
        continuation(0);
    } else {
        out += static_cast<char>(0xF0 | code >> 18);
        continuation(12);
        continuation(6);
        continuation(0);
    }
}

}  // namespace

QString toScreen(std::string_view bytes) {
    QString text;
    text.reserve(static_cast<qsizetype>(bytes.size()));
    while (!bytes.empty()) {
        const Character character = decode(bytes);
        if (character.length == 0) {
            text += QChar(static_cast<char16_t>(kByteEscape | static_cast<unsigned char>(bytes.front())));
        } else if (character.code >= 0x10000) {
            text += QChar(QChar::highSurrogate(character.code));
            text += QChar(QChar::lowSurrogate(character.code));
        } else {
            text += QChar(static_cast<char16_t>(character.code));
        }
        bytes.remove_prefix(character.length == 0 ? 1 : character.length);
    }
    return text;
}

std::string fromScreen(QStringView text) {
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(text.size()));
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        const bool pair = QChar::isHighSurrogate(unit) && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (pair) {
            appendUtf8(bytes, QChar::surrogateToUcs4(unit, text[++i].unicode()));
        } else if (unit >= kByteEscape + 0x80 && unit <= kByteEscape + 0xFF) {
            bytes += static_cast<char>(unit & 0xFF);
        } else {
            appendUtf8(bytes, QChar::isSurrogate(unit) ? char32_t{QChar::ReplacementCharacter} : unit);
        }
    }
    return bytes;
}

std::string toPrintableUtf8(std::string_view bytes) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const std::size_t length = decode(bytes).length;
        if (length == 0) {
            const unsigned byte = static_cast<unsigned char>(bytes.front());
            text.append("\\x").append({kDigits[byte >> 4], kDigits[byte & 15]});
        } else {
            text.append(bytes.substr(0, length));
        }
        bytes.remove_prefix(length == 0 ? 1 : length);
    }
    return text;
}

}  // namespace relay
