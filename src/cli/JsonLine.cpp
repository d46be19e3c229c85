// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/JsonLine.h"

#include "core/ScreenText.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <ostream>

namespace relay {

namespace {

// DEL and the controls U+0080 to U+009F are legal in JSON as they stand, but a terminal obeys them.
std::string withoutRawControls(const std::string& json) {
    std::string out;
    out.reserve(json.size());
    for (std::size_t i = 0; i < json.size(); ++i) {
        const auto byte = static_cast<unsigned char>(json[i]);
        const auto next = static_cast<unsigned char>(i + 1 < json.size() ? json[i + 1] : 0);
        const bool control = byte == 0xC2 && next >= 0x80 && next <= 0x9F;
        if (byte != 0x7F && !control) {
            out += json[i];
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(control ? next : byte));
        out += escape;
        if (control) ++i;
    }
    return out;
}

}  // namespace

struct JsonLine::Data final {
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
};

JsonLine::JsonLine() : m_data(std::make_unique<Data>()) {}
JsonLine::~JsonLine() = default;

JsonLine& JsonLine::add(std::string_view key, std::string_view text) {
    m_data->object[toPrintableUtf8(key)] = toPrintableUtf8(text);
    return *this;
}

JsonLine& JsonLine::add(std::string_view key, std::int64_t number) {
    m_data->object[toPrintableUtf8(key)] = number;
    return *this;
}

void JsonLine::write(std::ostream& out) const {
    out << withoutRawControls(m_data->object.dump()) << '\n';
}

}  // namespace relay
