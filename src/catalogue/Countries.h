// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/IniFile.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

struct Paths;

// Countries and their two-letter codes, from AppPath/country.kws. The file is read on first use and at each
// loadCountry(); if it cannot be read or lacks a section, the answers are empty.
class Countries final {
  public:
    explicit Countries(const Paths& paths);

    // Fills cboCountry with the names in file order; false when the file is missing.
    bool loadCountry();
    std::string getCountryName(std::string_view code) const;
    // Takes the name as in form data: each "+" counts as a blank.
    std::string getCountryCode(std::string_view name) const;

    std::vector<std::string> cboCountry;

  private:
    const IniFile& file() const;

    const Paths& m_paths;
    mutable std::optional<IniFile> m_file;
};

}  // namespace relay
