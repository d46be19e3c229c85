// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Failure.h"
#include "core/Prompts.h"

#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace relay {

// What the user would read of the operation's failure; nothing when it succeeded. For the few places where a
// box is not the answer to a failure.
template <typename Operation>
std::optional<std::string> failureOf(Operation&& operation) {
    try {
        operation();
        return std::nullopt;
    } catch (const std::exception& failure) {
        return failureText(failure);
    }
}

// The one trap at the end of a user-level operation: runs `operation`, and on a failure shows `words` with
// the failure's text behind them in a box titled `title`. False when the operation failed. `words` carries
// its own ending ("editProject_Error: ", or "Module: NewProject\r\n").
template <typename Operation>
bool trap(Prompts& prompts, std::string_view words, Operation&& operation, std::string_view title = "Error",
          Icon icon = Icon::Critical) {
    const std::optional<std::string> failure = failureOf(operation);
    if (failure) prompts.message(std::string(words) + *failure, title, icon);
    return !failure;
}

}  // namespace relay
