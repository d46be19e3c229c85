// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "practice/PracticeRequest.h"

#include <functional>
#include <string>
#include <string_view>

namespace relay {

// How the practice web replies to a request: a whole reply or a fault.
struct PracticeReply final {
    enum class Ending {
        Whole,    // the reply, then close
        Half,     // a length for the whole body, half of it, then close
        Stall,    // a length for the whole body, half of it, then silence
        Lying,    // a length for half of the body, all of it, then close
        Reset,    // the connection is reset without a reply
        Empty,    // closed without a reply
        Garbage,  // bytes that are not HTTP, then close
        Never,    // silence until the client leaves
        Endless,  // a body without length or end
    };

    int status = 200;
    std::string type = "text/html; charset=utf-8";
    std::string location;  // of a redirect, else empty
    std::string body;
    // For a body too large for memory: puts the next piece of it into the string; false at its end. Called
    // while the reply is sent, which then has no length.
    std::function<bool(std::string& piece)> more;
    int delayMilliseconds = 0;
    Ending ending = Ending::Whole;

    // Status line, headers and the empty line, with the given Content-Length.
    std::string head(std::size_t length) const;
    std::string headWithoutLength() const;
};

// The text after the number in a status line; "Practice" for unknown numbers.
std::string_view statusWord(int status) noexcept;

}  // namespace relay
