// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ftp/FtpWire.h"

#include <cstdint>
#include <optional>
#include <string_view>

// Reading a server's replies.
namespace relay {

// "(h1,h2,h3,h4,p1,p2)" of a 227; nothing when it is not understood.
std::optional<FtpEndpoint> passiveEndpoint(std::string_view message);
// The port of a 229: "(|||40001|)", with any character as the bar.
std::optional<std::uint16_t> extendedPassivePort(std::string_view message);
// The folder that the line of a 257 names, cut at its first blank.
std::string_view folderOfReply(std::string_view line);

// Which lines make a reply: one, or several whose first has a dash behind its code.
class FtpReplyLines final {
  public:
    // True for a line of a reply that goes on after it.
    bool goesOn(std::string_view line);
    void forget() noexcept { m_open = 0; }

  private:
    int m_open = 0;  // code of the reply that goes on
};

}  // namespace relay
