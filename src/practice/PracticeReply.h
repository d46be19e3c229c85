// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "practice/PracticeRequest.h"

#include <functional>
#include <string>
#include <string_view>

namespace relay {

// What the practice web does with a request: a whole answer, or a fault.
struct PracticeReply final {
    enum class Ending {
        Whole,    // the answer, then close
        Half,     // a length for the whole body, half of it, then close
        Stall,    // a length for the whole body, half of it, then silence
        Lying,    // a length for half of the body, all of it, then close
        Reset,    // the connection is reset without an answer
        Empty,    // closed without an answer
        Garbage,  // bytes that are no HTTP, then close
        Never,    // silence until the client goes
        Endless,  // a body without a length and without an end
    };

    int status = 200;
    std::string type = "text/html; charset=utf-8";
    std::string location;  // of a redirect, else empty
    std::string body;
    // For a body too large to be held: puts the next piece of it into the string; false at its end. Asked
    // while the reply is on its way; the length is not told then.
    std::function<bool(std::string& piece)> more;
    int delayMilliseconds = 0;
    Ending ending = Ending::Whole;

    // Status line, headers and the empty line, with the given Content-Length.
    std::string head(std::size_t length) const;
    std::string headWithoutLength() const;
};

// The word behind the number in a status line; "Practice" for numbers that have none.
std::string_view statusWord(int status) noexcept;

}  // namespace relay
