// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace relay::test {

// Cases as data, for functions of text. A table holds a section for each function, "[name]", and in it one
// case a line: "input | input => result". "#" begins a comment. Blanks around a field do not count; "\s"
// stands for a blank that does, \r, \n, \t, \\ and \xNN for bytes, and {x*600} for six hundred of the same
// character. A Failure that leaves the function is the result "failure: " and its words.
using CaseFunction = std::function<std::string(const std::vector<std::string>& inputs)>;

// Plays every case of the table. Each function must have a section in it, and each section a function.
void playCases(const std::string& table, const std::map<std::string, CaseFunction>& functions);

// "a | b", the result of a function that gives several texts.
std::string joined(const std::vector<std::string>& texts);

}  // namespace relay::test
