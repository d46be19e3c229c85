// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Failure.h"
#include "core/Log.h"
#include "core/Prompts.h"
#include "core/Services.h"

#include <exception>
#include <string>
#include <string_view>

namespace relay {

// "6 - Overflow": the number and the text of a failure.
inline std::string numberedText(const std::exception& failure) {
    const auto* const known = dynamic_cast<const Failure*>(&failure);
    return std::to_string(known == nullptr ? 0 : known->number()) + " - " + failureText(failure);
}

// The trap of the operations that also log their failure: `words`, the failure's number and text, and
// `remark` go to a box titled `title` and to the log. False when the operation failed.
template <typename Operation>
bool trapAndLog(const Services& services, std::string_view words, Operation&& operation,
                std::string_view remark = {}, std::string_view title = "Error") {
    try {
        operation();
        return true;
    } catch (const std::exception& failure) {
        const std::string text = std::string(words).append(numberedText(failure)).append(remark);
        services.log.WriteErrorLog(text);
        services.prompts.message(text, title, Icon::Critical);
        return false;
    }
}

}  // namespace relay
