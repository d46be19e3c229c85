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
    std::int16_t count = 0;  // Type lines of the file, not usable engines
    bool checked = false;
};

// What the engine screens show and the operations on engines work on: the collection and the lists that refer
// to it by name.
struct EngineLists final {
    EngineLists();

    EngineCollection engines;
    Rows lsvEngines;
    Rows lsvSelectedEngines;
    Rows lstCountry;              // "<name>(<code>)", rows without a key
    CountryFilter countryFilter;  // the codes of lstCountry
    std::vector<std::string> cboCustomEngines;
    std::vector<EngineCategoryEntry> myCustomEngine;  // in step with cboCustomEngines
    std::array<TypeBox, EngineTypes.size()> chkType;
    // While false, clicks on chkType select nothing: the boxes are being ticked by the program.
    bool typeClicksSelect = true;
    // Called while clicks are held back, after the program changed the boxes.
    std::function<void()> typeBoxesChanged;
};

// Adds the engine's row: key and text its name, its type and country beside it, the type's icon. Throws
// Failure 457 when the name has a row already.
void addEngineListView(Rows& list, const clsEngines& engine);
// Adds the rows of all engines, none of which may have one yet.
void addEngineListView(Rows& list, const EngineCollection& engines);

}  // namespace relay
