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
    addEngineListView(list, engine, row);
}

void addEngineListView(Rows& list, const clsEngines& engine, Row& scratch) {
    scratch.key = engine.name;
    scratch.text = engine.name;
    scratch.subItems.resize(2);
    scratch.subItems[0] = engine.EngineType;
    scratch.subItems[1] = engine.Country;
    scratch.icon = EngineTypes[engineTypeIndex(engine.EngineType)].icon;
    list.add(scratch);
}

}  // namespace relay
