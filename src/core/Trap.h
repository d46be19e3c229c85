// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Failure.h"
#include "core/Prompts.h"

#include <exception>
#include <string>
#include <string_view>

namespace relay {

// The one trap at the end of a user-level operation: runs `operation`, and on a failure shows `words` with
// the failure's text behind them in a box titled `title`. False when the operation failed. `words` carries
// its own ending ("editProject_Error: ", or "Module: NewProject\r\n").
template <typename Operation>
bool trap(Prompts& prompts, std::string_view words, Operation&& operation, std::string_view title = "Error",
          Icon icon = Icon::Critical) {
    try {
        operation();
        return true;
    } catch (const std::exception& failure) {
        prompts.message(std::string(words) + failureText(failure), title, icon);
        return false;
    }
}

}  // namespace relay
