// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/GoldenCases.h"

#include <algorithm>
#include <filesystem>

namespace relay::test {

std::vector<std::string> goldenCases(std::string_view folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string goldenName(const testing::TestParamInfo<std::string>& named) {
    std::string name = named.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

}  // namespace relay::test
