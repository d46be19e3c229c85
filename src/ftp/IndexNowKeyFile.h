// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace relay {

struct Services;

// Why the key cannot be one for IndexNow (8 to 128 letters, digits and dashes); empty when it can.
std::string indexNowKeyProblem(std::string_view key);
// Writes the key file (named KEY.txt, holding the key) into the folder "IndexNow" of the home and returns its
// path. Throws Failure.
std::string writeIndexNowKeyFile(const Services& services, std::string_view key);

}  // namespace relay
