// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineLists.h"

namespace relay {

namespace {

class EngineRows final : public RowSource {
    static const clsEngines& engine(const void* record) { return *static_cast<const clsEngines*>(record); }

    std::string_view key(const void* record) const override { return engine(record).name(); }
    std::size_t columns(const void*) const override { return 3; }
    std::string_view text(const void* record, std::size_t column) const override {
        const clsEngines& shown = engine(record);
        return column == 0 ? shown.name() : column == 1 ? shown.EngineType() : shown.Country();
    }
    std::string_view icon(const void* record) const override {
        return EngineTypes[engineTypeIndex(engine(record).EngineType())].icon;
    }
};

const EngineRows kEngineRows;

}  // namespace

EngineLists::EngineLists() {
    lsvEngines.setColumns({"All Engines", "Type", "Country"});
    lsvSelectedEngines.setColumns({"Selected Engines", "Type", "Country"});
    for (std::size_t index = 0; index < chkType.size(); ++index) {
        chkType[index].caption = std::string(EngineTypes[index].caption) + "0)";
    }
}

void addEngineListView(Rows& list, const clsEngines& engine) {
    list.add(kEngineRows, &engine);
}

void addEngineListView(Rows& list, const EngineCollection& engines) {
    list.addAll(kEngineRows, engines);
}

}  // namespace relay
