// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace relay {

// The practice catalogue's text with its placeholders http://@PRACTICE@ and http://@FAULTS@ replaced by the
// addresses of a running practice web ("http://127.0.0.1:PORT").
std::string pointAtPracticeWeb(std::string_view catalogue, std::string_view address,
                               std::string_view faultAddress);

}  // namespace relay
