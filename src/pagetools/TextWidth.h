// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace relay {

// The width in pixels of a text in UTF-8 on one line, in a sans-serif face of `size` pixels with the usual
// metrics of the web. Asks no font, so every machine gives the same number.
int textWidth(std::string_view text, int size) noexcept;

}  // namespace relay
