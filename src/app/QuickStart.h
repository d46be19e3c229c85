// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>
#include <vector>

namespace relay {

// A line of the quick start text and the command in it: `command` is the key of a toolbar button or the name
// of a menu item, `named` the part of the line that stands for it. Both are empty if there is none.
struct QuickStartLine final {
    std::string_view text;
    std::string_view named = {};
    std::string_view command = {};
};

// The lines of lblQuickStartTips. There is no line 6.
const std::vector<QuickStartLine>& quickStartLines();

}  // namespace relay
