// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/CatalogueReader.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace relay {

class Countries;
struct EngineLists;
struct Services;

// Builds the engine collection and its lists from WindowsPath/krveng5.dat. Run EngineCategories::load first.
class EngineLoader final {
  public:
    EngineLoader(const Services& services, EngineLists& lists, const EngineCategories& categories,
                 const Countries& countries);

    // Replaces the engines and empties the selection; the country filter and the custom engines only grow.
    // Logs up to a thousand remarks of each kind, then the number of the rest. Throws Failure when the file
    // is missing, empty or fails while it is read; the engines read so far stay.
    void load();
    // Adds a finished record; its row follows at the end of the load. Silently skips one without a name, and
    // one for adult sites only when these are refused; logs one whose name is taken.
    void addEngineList(const clsEngines& engine);
    void addCountryFilterList(std::string_view code);

  private:
    // A remark in the log about a record.
    enum class Remark : std::uint8_t { UnknownAction, NoCategoryData, Duplicate };

    // One load: the file, and its counts, in 16 bits that wrap around.
    struct Load final {
        std::string& text;
        CategoryRule rule;
        std::size_t customNameBytes = 0;
        std::uint16_t engines = 0;
        std::array<std::uint16_t, 7> types{};
    };

    void emptySelection();
    void readEngines();
    void readRecords(Load& load);
    void applyItem(clsEngines& engine, EngineKey key, std::string_view value, Load& load);
    void applyCategory(clsEngines& engine, Load& load);
    void addCustomEngine(const clsEngines& engine, Load& load);
    void showCounts(const Load& load);
    void remark(Remark kind, const clsEngines& engine);
    void logSkippedRemarks();

    const Services& m_services;
    EngineLists& m_lists;
    const EngineCategories& m_categories;
    const Countries& m_countries;
    std::array<std::size_t, 3> m_remarks{};  // of each kind, in the current load
};

}  // namespace relay
