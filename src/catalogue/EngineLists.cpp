// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineLists.h"

namespace relay {

EngineLists::EngineLists() {
    lsvEngines.setColumns({"All Engines", "Type", "Country"});
    lsvSelectedEngines.setColumns({"Selected Engines", "Type", "Country"});
    for (std::size_t index = 0; index < chkType.size(); ++index) {
        chkType[index].caption = std::string(EngineTypes[index].caption) + "0)";
    }
}

void addEngineListView(Rows& list, const clsEngines& engine) {
    Row row;
    row.key = engine.name;
    row.text = engine.name;
    row.subItems.reserve(2);
    row.subItems.emplace_back(engine.EngineType);
    row.subItems.emplace_back(engine.Country);
    row.icon = EngineTypes[engineTypeIndex(engine.EngineType)].icon;
    list.add(std::move(row));
}

}  // namespace relay
