// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/FtpHost.h"

#include "core/Failure.h"
#include "core/Text.h"
#include "transport/frmHTTP.h"

#include <arpa/inet.h>
#include <charconv>

namespace relay {

namespace {

bool isIPv6(std::string_view text) {
    in6_addr address{};
    const std::string_view bare = text.substr(0, text.find('%'));  // without the name of an interface
    return ::inet_pton(AF_INET6, std::string(bare).c_str(), &address) == 1;
}

std::uint16_t portFrom(std::string_view text) {
    std::uint16_t port = 0;
    const auto [rest, error] = std::from_chars(text.begin(), text.end(), port);
    if (error != std::errc() || rest != text.end() || port == 0)
        throw Failure("The port of the host must be a number from 1 to 65535.");
    return port;
}

FtpHost named(std::string_view name, std::uint16_t port) {
    if (name.empty()) throw Failure("Please enter the host name of the FTP server.");
    if (name.find_first_of("/@ []") != npos)
        throw Failure("The host is only the name or the address of the FTP server, as in ftp.shop.example.");
    return {std::string(name), port, frmHTTP::IsDotAddress(name)};
}

}  // namespace

FtpHost parseFtpHost(std::string_view text) {
    text = trim(text);
    if (hasControlByte(text)) throw Failure("The host has a line break or another control character in it.");
    if (isIPv6(text)) return {std::string(text), kFtpPort, true};
    if (text.starts_with('[')) {
        const std::size_t end = text.find(']');
        const std::string_view rest = end == npos ? "?" : text.substr(end + 1);
        if (end == npos || !isIPv6(text.substr(1, end - 1)) || (!rest.empty() && rest[0] != ':'))
            throw Failure("The host is not an IPv6 address in brackets.");
        return {std::string(text.substr(1, end - 1)), rest.empty() ? kFtpPort : portFrom(rest.substr(1)),
                true};
    }
    const std::size_t colon = text.find(':');
    if (colon == npos) return named(text, kFtpPort);
    if (text.substr(colon).starts_with("://")) return named("/", kFtpPort);
    return named(text.substr(0, colon), portFrom(text.substr(colon + 1)));
}

}  // namespace relay
