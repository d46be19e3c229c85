// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/FtpReplies.h"

#include "core/Text.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace relay {

namespace {

std::optional<std::uint16_t> numberFrom(std::string_view text, unsigned most) {
    unsigned number = 0;
    text = trim(text);
    const auto [rest, error] = std::from_chars(text.begin(), text.end(), number);
    if (error != std::errc() || rest != text.end() || number > most) return std::nullopt;
    return static_cast<std::uint16_t>(number);
}

}  // namespace

std::optional<FtpEndpoint> passiveEndpoint(std::string_view message) {
    const std::size_t open = message.find('(');
    if (open == npos || message.find(',') == npos) return std::nullopt;
    message.remove_prefix(open + 1);
    message = message.substr(0, message.find(')'));
    std::array<std::uint16_t, 6> fields{};
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::size_t comma = std::min(message.find(','), message.size());
        if ((i + 1 == fields.size()) != (comma == message.size())) return std::nullopt;
        const auto number = numberFrom(message.substr(0, comma), 255);
        if (!number) return std::nullopt;
        fields[i] = *number;
        message.remove_prefix(std::min(comma + 1, message.size()));
    }
    FtpEndpoint where;
    for (std::size_t i = 0; i < 4; ++i) where.address += (i == 0 ? "" : ".") + std::to_string(fields[i]);
    where.port = static_cast<std::uint16_t>(fields[4] * 256 + fields[5]);
    if (where.port == 0) return std::nullopt;
    return where;
}

std::optional<std::uint16_t> extendedPassivePort(std::string_view message) {
    const std::size_t open = message.find('(');
    if (open == npos || message.size() < open + 6) return std::nullopt;
    message.remove_prefix(open + 1);
    const char bar = message[0];
    if (message[1] != bar || message[2] != bar) return std::nullopt;
    const std::size_t end = message.find(bar, 3);
    if (end == npos) return std::nullopt;
    const auto port = numberFrom(message.substr(3, end - 3), 65535);
    return port && *port > 0 ? port : std::nullopt;
}

std::string_view folderOfReply(std::string_view line) {
    std::string_view path = line.substr(std::min<std::size_t>(4, line.size()));
    path = path.substr(0, path.find(' '));
    if (path.starts_with('"')) path.remove_prefix(1);
    if (path.ends_with('"')) path.remove_suffix(1);
    return path;
}

bool FtpReplyLines::goesOn(std::string_view line) {
    const bool coded = line.size() >= 3 && line.substr(0, 3).find_first_not_of("0123456789") == npos;
    const int code = coded ? leadingInteger(line.substr(0, 3)) : 0;
    if (m_open != 0) {
        if (code == m_open && (line.size() == 3 || line[3] == ' ')) m_open = 0;
    } else if (coded && line.size() > 3 && line[3] == '-') {
        m_open = code;
    }
    return m_open != 0;
}

}  // namespace relay
