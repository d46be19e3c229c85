// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace relay {

// A name that a Query template may hold in angle brackets and that is replaced by a value of the website,
// without regard to case. Any other text in brackets stands for itself. The values come
// from submission/SubmissionData.
bool isKnownMacro(std::string_view name) noexcept;

}  // namespace relay
