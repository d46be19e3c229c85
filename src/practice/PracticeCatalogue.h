// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace relay {

// Replaces the placeholder http://@PRACTICE@ in the practice catalogue's text by the address of a running
// practice web ("http://127.0.0.1:PORT").
std::string pointAtPracticeWeb(std::string_view catalogue, std::string_view address);

}  // namespace relay
