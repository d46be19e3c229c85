// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ScreenText.h"

#include "core/Text.h"

#include <QChar>

namespace relay {

namespace {

constexpr char16_t kByteEscape = 0xDC00;

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
        const Utf8Character character = firstUtf8Character(bytes);
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
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const std::size_t length = firstUtf8Character(bytes).length;
        if (length == 0)
            appendHex(text.append("\\x"), bytes.front());
        else
            text.append(bytes.substr(0, length));
        bytes.remove_prefix(length == 0 ? 1 : length);
    }
    return text;
}

}  // namespace relay
