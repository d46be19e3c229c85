// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>
#include <vector>

namespace relay {

// A line of the quick start text, and the command it names: `command` is the key of a toolbar button or the
// name of a menu item, `named` the words of the line that stand for it. Both empty where it names none.
struct QuickStartLine final {
    std::string_view text;
    std::string_view named = {};
    std::string_view command = {};
};

// What a newcomer reads in lblQuickStartTips, line by line. There is no line 6.
const std::vector<QuickStartLine>& quickStartLines();

}  // namespace relay
