// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/EngineFields.h"
#include "core/Row.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace relay {

class Countries;
struct EngineLists;
struct Services;

// Builds the engine collection and its lists from WindowsPath/krveng5.dat. Must run after
// EngineCategories::load.
class EngineLoader final {
  public:
    EngineLoader(const Services& services, EngineLists& lists, const EngineCategories& categories,
                 const Countries& countries);

    // Throws Failure, with the engines read so far, when the file is missing, empty or fails while it is
    // read. Replaces the engines and empties the selection; the country filter and the custom engines only
    // ever grow.
    void load();
    // Adds a finished record and its row. One without a name, or for adult sites only where these are
    // refused, is dropped in silence; one whose name is taken goes to the log.
    void addEngineList(const clsEngines& engine);
    void addCountryFilterList(std::string_view code);

  private:
    // What one load counts: lines of the file, in 16 bits that wrap around.
    struct Counts final {
        std::uint16_t engines = 0;
        std::array<std::uint16_t, 7> types{};
    };

    void emptySelection();
    void readEngines();
    void applyItem(clsEngines& engine, EngineKey key, std::string_view value, UpperCaseTexts& upperCase,
                   Counts& counts);
    void applyCategory(clsEngines& engine);
    void showCounts(const Counts& counts);

    const Services& m_services;
    EngineLists& m_lists;
    const EngineCategories& m_categories;
    const Countries& m_countries;
    Row m_row;  // scratch of addEngineList
};

}  // namespace relay
