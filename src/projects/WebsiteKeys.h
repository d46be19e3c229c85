// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace relay {

// What stands in a password's place where it is hidden.
inline constexpr std::string_view kHiddenPassword = "********";

// A website file by its keys, for the command line. The keys are those of kWebsiteKeys.

// Throws Failure, with `hint` behind its words, when there is no such file, and with the reason when its
// folder may not be entered.
void requireWebsite(const std::string& path, std::string_view hint = {});
// One key's text; empty when the file or the key is absent. Throws Failure on a key nobody knows.
std::string getKey(const std::string& path, std::string_view key);
struct KeyValue final {
    std::string key;
    std::string value;
};
// Sets keys in one save; a missing file is made with all its keys. Line breaks go as in a save. Throws
// Failure, with nothing written, on an unknown key, on one the program keeps itself and on a flag that is
// neither 0 nor 1.
void setKeys(const std::string& path, const std::vector<KeyValue>& values);

}  // namespace relay
