// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace relay::test {

// The sorted names of the subfolders of a folder; each is a case.
std::vector<std::string> goldenCases(std::string_view folder);
// The case's name in a form that is allowed for tests.
std::string goldenName(const testing::TestParamInfo<std::string>& named);

}  // namespace relay::test
