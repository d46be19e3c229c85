// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace relay::test {

// The names of the folders in a folder, each of them a case, in their order.
std::vector<std::string> goldenCases(std::string_view folder);
// The case's name as a test may be called.
std::string goldenName(const testing::TestParamInfo<std::string>& named);

}  // namespace relay::test
