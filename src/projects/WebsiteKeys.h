// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace relay {

// Shown instead of a hidden password.
inline constexpr std::string_view kHiddenPassword = "********";

// Access to a website file by key, for the command line. The keys are those of kWebsiteKeys.

// Throws Failure when there is no such file, with `hint` after the message, or when its folder may not be
// entered.
void requireWebsite(const std::string& path, std::string_view hint = {});
// The text of one key; empty if the file or the key does not exist. Throws Failure for an unknown key.
std::string getKey(const std::string& path, std::string_view key);
struct KeyValue final {
    std::string key;
    std::string value;
};
// Sets keys in one save; a missing file is made with all its keys. Line breaks are treated as in a save.
// Throws Failure, with nothing written, for an unknown key, a key that the program maintains, and a flag
// other than 0 or 1.
void setKeys(const std::string& path, const std::vector<KeyValue>& values);

}  // namespace relay
