// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

// What the user typed into a combo box before, kept in WindowsPath/apikrv.dmc, one section a list, keys 1, 2,
// ...
namespace relay {

std::vector<std::string> LoadInputHistory(const std::string& file, std::string_view section, int maximum);
// Writes the first 30 rows; keys beyond that are not removed.
void SaveInputHistory(const std::string& file, std::string_view section,
                      const std::vector<std::string>& rows);
// A text that is there (without regard to case) changes nothing; a new one goes to the top, 30 rows are kept.
void AddInputHistory(std::vector<std::string>& rows, std::string_view text);

}  // namespace relay
