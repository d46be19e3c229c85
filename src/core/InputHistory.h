// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

// Earlier entries of combo boxes, kept in WindowsPath/apikrv.dmc: one section per list, keys 1, 2, ...
namespace relay {

std::vector<std::string> LoadInputHistory(const std::string& file, std::string_view section, int maximum);
// Writes the first 30 rows; keys beyond 30 are not removed.
void SaveInputHistory(const std::string& file, std::string_view section,
                      const std::vector<std::string>& rows);
// A text already in the list (without regard to case) changes nothing; a new one goes to the top. Keeps 30
// rows. Blank texts are left out: they would end the list when it is loaded.
void AddInputHistory(std::vector<std::string>& rows, std::string_view text);
// Adds the texts, the last one on top, to what the file has now: entries that another program saved stay.
void ExtendInputHistory(const std::string& file, std::string_view section, int maximum,
                        const std::vector<std::string>& texts);

}  // namespace relay
