// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/JsonLine.h"

#include "core/ScreenText.h"
#include "core/Text.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <ostream>

namespace relay {

namespace {

// Many of these are legal in JSON, but a terminal obeys them.
std::string withoutRawControls(std::string_view json) {
    std::string out;
    out.reserve(json.size());
    for (std::size_t at = findControlCharacter(json); at != npos; at = findControlCharacter(json)) {
        out.append(json.substr(0, at));
        const Utf8Character control = firstUtf8Character(json.substr(at));
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(control.code));
        out += escape;
        json.remove_prefix(at + control.length);
    }
    return out.append(json);
}

void appendText(std::string& line, std::string_view text) {
    line += nlohmann::json(toPrintableUtf8(text)).dump();
}

}  // namespace

void JsonLine::addKey(std::string_view key) {
    m_line += m_line.empty() ? '{' : ',';
    appendText(m_line, key);
    m_line += ':';
}

JsonLine& JsonLine::add(std::string_view key, std::string_view text) {
    addKey(key);
    appendText(m_line, text);
    return *this;
}

JsonLine& JsonLine::add(std::string_view key, std::int64_t number) {
    addKey(key);
    m_line += std::to_string(number);
    return *this;
}

void JsonLine::write(std::ostream& out) const {
    out << (m_line.empty() ? "{" : withoutRawControls(m_line)) << "}\n";
}

}  // namespace relay
