// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace relay {

inline constexpr std::uint16_t kFtpPort = 21;

// Where a server listens.
struct FtpHost final {
    std::string name;  // a name, a dotted address or an IPv6 address without brackets
    std::uint16_t port = kFtpPort;
    bool isAddress = false;  // no name to look up
};

// Reads "HOST", "HOST:PORT", "[v6]" and "[v6]:PORT"; a bare IPv6 address is taken, too. Blanks around do not
// count. Throws Failure, in words for the user, on an empty host, a control character, an address with
// "ftp://" or a path, and a port outside 1 to 65535.
FtpHost parseFtpHost(std::string_view text);

}  // namespace relay
