// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/JsonLine.h"

#include "core/ScreenText.h"
#include "core/Text.h"

#include <algorithm>
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

bool standsAsItIs(char c) noexcept {
    return c >= ' ' && c <= '~' && c != '"' && c != '\\';
}

}  // namespace

void appendJsonText(std::string& line, std::string_view text) {
    if (std::all_of(text.begin(), text.end(), standsAsItIs)) {
        line += '"';
        line.append(text) += '"';
        return;
    }
    line += withoutRawControls(nlohmann::json(toPrintableUtf8(text)).dump());
}

void JsonLine::addKey(std::string_view key) {
    m_line += m_line.empty() ? "{\"" : ",\"";
    m_line.append(key).append("\":");
}

JsonLine& JsonLine::add(std::string_view key, std::string_view text) {
    addKey(key);
    appendJsonText(m_line, text);
    return *this;
}

JsonLine& JsonLine::add(std::string_view key, std::int64_t number) {
    addKey(key);
    m_line += std::to_string(number);
    return *this;
}

JsonLine& JsonLine::addJson(std::string_view key, std::string_view json) {
    addKey(key);
    m_line += json;
    return *this;
}

const std::string& JsonLine::finish() {
    if (m_line.empty()) m_line = "{";
    return m_line += "}\n";
}

void JsonLine::write(std::ostream& out) {
    out << finish();
}

}  // namespace relay
