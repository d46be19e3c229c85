// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace relay {

// Looks over a page before it is parsed, in one quick walk. A parser needs time in proportion to how deep
// elements nest and to how many attributes a tag has, so pages made to nest without end would keep it busy
// for hours. Returns what is too much, or nothing; counts on the high side where tags are left open.
std::string pageShapeProblem(std::string_view html);

}  // namespace relay
