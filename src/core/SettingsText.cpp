// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SettingsText.h"

#include "core/ScreenText.h"
#include "core/Text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <utility>
#include <vector>

namespace relay {

namespace {

constexpr std::string_view kByteArray = "@ByteArray(";
constexpr std::string_view kLetters = "abfnrtv";
constexpr std::string_view kLetterCodes = "\a\b\f\n\r\t\v";

bool isDigitOf(int base, char c) {
    const int digit = hexDigit(c);
    return digit >= 0 && digit < base;
}

bool standsInNames(char16_t unit) {
    return (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z') || (unit >= '0' && unit <= '9') ||
           unit == '_' || unit == '-' || unit == '.';
}

// True for valid UTF-8 without a NUL.
bool isPlainText(std::string_view bytes) {
    while (!bytes.empty()) {
        const Utf8Character character = firstUtf8Character(bytes);
        if (character.length == 0 || character.code == 0) return false;
        bytes.remove_prefix(character.length);
    }
    return true;
}

// `highest` is the highest code that is not escaped.
std::string escapedValue(std::string_view text, unsigned char highest = 0xFF) {
    std::string out;
    bool needsQuotes = false;
    bool afterNumber = false;  // a hexadecimal digit here would become part of the escape before it
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        const std::size_t letter = c == '\0' ? npos : kLetterCodes.find(c);
        needsQuotes = needsQuotes || c == ';' || c == ',' || c == '=';
        const bool number =
            (afterNumber && isDigitOf(16, c)) || ((code < 0x20 || code > highest) && letter == npos);
        if (c == '\0') {
            out += "\\0";
        } else if (number) {
            out += "\\x" + QByteArray::number(code, 16).toStdString();
        } else if (letter != npos) {
            out.append("\\").append(1, kLetters[letter]);
        } else {
            if (c == '"' || c == '\\') out += '\\';
            out += c;
        }
        afterNumber = number || c == '\0';
    }
    if (!out.empty() && (out.front() == ' ' || out.back() == ' ')) needsQuotes = true;
    return needsQuotes ? '"' + out + '"' : out;
}

// Reads one value as written in the file.
class ValueReader final {
  public:
    explicit ValueReader(std::string_view written) : m_rest(written) {}

    // The parts between the commas; one part if there is no comma. A byte that is not UTF-8 is a lone
    // surrogate.
    std::vector<QString> parts() {
        skipBlanks();
        while (!m_rest.empty() && (m_inQuotes || m_rest.front() != ';')) readPiece();
        closePart();
        return std::move(m_parts);
    }

  private:
    void skipBlanks() {
        m_rest.remove_prefix(std::min(m_rest.find_first_not_of(" \t"), m_rest.size()));
        m_solid = m_part.size();
    }
    void closePart() {
        while (!m_wasQuoted && m_part.size() > m_solid && (m_part.back() == u' ' || m_part.back() == u'\t'))
            m_part.chop(1);
        m_parts.push_back(std::exchange(m_part, {}));
        m_wasQuoted = false;
    }
    char take() {
        const char c = m_rest.front();
        m_rest.remove_prefix(1);
        return c;
    }
    void readPiece() {
        const char c = m_rest.front();
        if (c == '\\') {
            take();
            if (!m_rest.empty()) readEscape();
        } else if (c == '"') {
            take();
            m_wasQuoted = true;
            m_inQuotes = !m_inQuotes;
            if (!m_inQuotes) skipBlanks();
        } else if (c == ',' && !m_inQuotes) {
            take();
            closePart();
            skipBlanks();
        } else {
            const std::size_t end = m_rest.find_first_of(m_inQuotes ? "\\\"" : "\\\",;");
            m_part += toScreen(m_rest.substr(0, end));
            m_rest.remove_prefix(std::min(end, m_rest.size()));
        }
    }
    void readEscape() {
        const char c = m_rest.front();
        const std::size_t letter = kLetters.find(c);
        if (c == 'x' || isDigitOf(8, c)) {
            if (c == 'x') take();
            readNumber(c == 'x' ? 16 : 8);
            return;
        }
        take();
        if (letter != npos)
            m_part += QLatin1Char(kLetterCodes[letter]);
        else if (c == '"' || c == '?' || c == '\'' || c == '\\')
            m_part += QLatin1Char(c);
        m_solid = m_part.size();
    }
    // An escape without a digit is dropped.
    void readNumber(int base) {
        unsigned code = 0;
        const bool isNumber = !m_rest.empty() && isDigitOf(base, m_rest.front());
        while (!m_rest.empty() && isDigitOf(base, m_rest.front())) {
            const int lower = take() | 0x20;
            code = (code * static_cast<unsigned>(base) +
                    static_cast<unsigned>(lower > '9' ? lower - 'a' + 10 : lower & 0xF)) &
                   0xFFFFu;
        }
        if (isNumber) m_part += QChar(static_cast<char16_t>(code));
        m_solid = m_part.size();
    }

    std::string_view m_rest;
    std::vector<QString> m_parts;
    QString m_part;
    qsizetype m_solid = 0;  // trailing blanks before this position belong to the part
    bool m_inQuotes = false;
    bool m_wasQuoted = false;
};

// The bytes that one part stands for.
std::string meaning(const QString& part) {
    std::string text = fromScreen(part);
    if (text.starts_with("@@")) return text.substr(1);
    if (!text.starts_with(kByteArray) || text.back() != ')') return text;
    std::string bytes;
    const auto skipped = static_cast<qsizetype>(kByteArray.size());
    for (const QChar unit : QStringView(part).mid(skipped).chopped(1))
        bytes += static_cast<char>(unit.unicode() & 0xFF);
    return bytes;
}

}  // namespace

std::string settingsName(std::string_view name) {
    std::string out;
    for (const QChar character : toScreen(name)) {
        const char16_t unit = character.unicode();
        if (unit == u'/')
            out += '\\';
        else if (standsInNames(unit))
            out += static_cast<char>(unit);
        else {
            out += unit <= 0xFF ? "%" : "%U";
            if (unit > 0xFF) appendHex(out, static_cast<char>(unit >> 8));
            appendHex(out, static_cast<char>(unit));
        }
    }
    return out;
}

std::string nameFromSettings(std::string_view written) {
    QString out;
    while (!written.empty()) {
        const bool wide = written.starts_with("%U");
        const std::string_view digits =
            written.substr(std::min<std::size_t>(wide ? 2 : 1, written.size())).substr(0, wide ? 4 : 2);
        const bool escape =
            written.front() == '%' && digits.size() == (wide ? 4u : 2u) &&
            std::all_of(digits.begin(), digits.end(), [](char c) { return isDigitOf(16, c); });
        if (escape) {
            std::uint16_t code = 0;
            std::from_chars(digits.data(), digits.data() + digits.size(), code, 16);
            out += QChar(code);
            written.remove_prefix(static_cast<std::size_t>(digits.data() - written.data()) + digits.size());
            continue;
        }
        const std::size_t end = written.find_first_of("%\\", 1);
        if (written.front() == '\\') {
            out += u'/';
            written.remove_prefix(1);
        } else {
            out += toScreen(written.substr(0, end));
            written.remove_prefix(std::min(end, written.size()));
        }
    }
    return fromScreen(out);
}

std::string settingsValue(std::string_view value) {
    if (!isPlainText(value)) return escapedValue(std::string(kByteArray).append(value) + ")", 0x7E);
    return escapedValue(value.starts_with('@') ? "@" + std::string(value) : std::string(value));
}

std::string valueFromSettings(std::string_view written) {
    std::string value;
    const std::vector<QString> parts = ValueReader(written).parts();
    for (std::size_t i = 0; i < parts.size(); ++i) value.append(i == 0 ? "" : ", ").append(meaning(parts[i]));
    return value;
}

}  // namespace relay
