// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/CountryFilter.h"
#include "catalogue/EngineCategories.h"
#include "catalogue/EngineCollection.h"
#include "catalogue/EngineTypes.h"
#include "core/Rows.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace relay {

// The check box of an engine type.
struct TypeBox final {
    std::string caption;
    std::int16_t count = 0;  // Type lines in the file, not usable engines
    bool checked = false;
};

// The data behind the engine screens: the collection and the lists that refer to it by name.
struct EngineLists final {
    EngineLists();

    EngineCollection engines;
    Rows lsvEngines;
    Rows lsvSelectedEngines;
    Rows lstCountry;              // "<name>(<code>)", rows without a key
    CountryFilter countryFilter;  // the codes of lstCountry
    std::vector<std::string> cboCustomEngines;
    std::vector<EngineCategoryEntry> myCustomEngine;  // parallel to cboCustomEngines
    std::array<TypeBox, EngineTypes.size()> chkType;
    // False while the program itself ticks the boxes of chkType, so that this selects nothing.
    bool typeClicksSelect = true;
    // Called after the program changed the boxes, while typeClicksSelect is false.
    std::function<void()> typeBoxesChanged;
};

// Adds a row for the engine: name as key and text, type and country in further columns, the icon of its type.
// Throws Failure 457 when the name already has a row.
void addEngineListView(Rows& list, const clsEngines& engine);
// Adds rows for all engines; none may have one yet.
void addEngineListView(Rows& list, const EngineCollection& engines);

}  // namespace relay
