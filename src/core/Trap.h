// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Failure.h"
#include "core/Prompts.h"

#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace relay {

// The text of the operation's failure; nothing when it succeeded. For the few places that handle a failure
// without a message box.
template <typename Operation>
std::optional<std::string> failureOf(Operation&& operation) {
    try {
        operation();
        return std::nullopt;
    } catch (const std::exception& failure) {
        return failureText(failure);
    }
}

// The trap at the end of a user-level operation: runs `operation`, and on failure shows `words` followed by
// the text of the failure in a box titled `title`. False when the operation failed. `words` includes its
// separator ("editProject_Error: ", or "Module: NewProject\r\n").
template <typename Operation>
bool trap(Prompts& prompts, std::string_view words, Operation&& operation, std::string_view title = "Error",
          Icon icon = Icon::Critical) {
    const std::optional<std::string> failure = failureOf(operation);
    if (failure) prompts.message(std::string(words) + *failure, title, icon);
    return !failure;
}

}  // namespace relay
