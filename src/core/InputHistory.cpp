// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/InputHistory.h"

#include "core/Failure.h"
#include "core/FolderLock.h"
#include "core/IniFile.h"
#include "core/Text.h"

#include <algorithm>

namespace relay {

namespace {
constexpr std::size_t kKeptRows = 30;
}

std::vector<std::string> LoadInputHistory(const std::string& file, std::string_view section, int maximum) {
    std::vector<std::string> rows;
    IniFile history;
    try {
        history = IniFile::load(file);
    } catch (const Failure&) {
        return rows;  // as in ReadIniValue, a file that cannot be read counts as empty
    }
    for (int n = 1; n <= maximum; ++n) {
        std::string row = history.value(section, std::to_string(n));
        if (row.empty()) break;
        rows.push_back(std::move(row));
    }
    return rows;
}

void SaveInputHistory(const std::string& file, std::string_view section,
                      const std::vector<std::string>& rows) {
    if (rows.empty()) return;
    const FolderLock lock(file);
    IniFile history = IniFile::load(file);
    for (std::size_t i = 0; i < std::min(rows.size(), kKeptRows); ++i)
        history.setValue(section, std::to_string(i + 1), rows[i]);
    history.save(file);
}

void AddInputHistory(std::vector<std::string>& rows, std::string_view text) {
    if (trim(text).empty()) return;
    const auto same = [&](const std::string& row) { return equalsNoCase(row, text); };
    if (std::any_of(rows.begin(), rows.end(), same)) return;
    rows.emplace(rows.begin(), text);
    if (rows.size() > kKeptRows) rows.pop_back();
}

void ExtendInputHistory(const std::string& file, std::string_view section, int maximum,
                        const std::vector<std::string>& texts) {
    if (texts.empty()) return;
    const FolderLock lock(file);
    std::vector<std::string> rows = LoadInputHistory(file, section, maximum);
    for (const std::string& text : texts) AddInputHistory(rows, text);
    SaveInputHistory(file, section, rows);
}

}  // namespace relay
