// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineSelection.h"

#include "catalogue/EngineListPage.h"
#include "catalogue/EngineLists.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/ItemReader.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"

namespace relay {

namespace {

constexpr SaveQuestion kSaveQuestion = {
    "Korvel Engine Files (*.eng)|*.eng|Text Files(*.txt)|*.txt|All Files(*.*)|*.*", "The file '",
    "' already exists.\r\nDo you want to replace it?", "Save Selected Engines"};

// The country code in a row of lstCountry.
std::string_view countryCode(std::string_view rowText) noexcept {
    const std::size_t open = rowText.find('(');
    return open == npos ? rowText : rowText.substr(open + 1, 2);
}

}  // namespace

EngineSelection::EngineSelection(const Services& services, EngineLists& lists)
    : m_services(services), m_lists(lists) {}

void EngineSelection::bulk(std::string_view words, const std::function<void()>& operation) {
    trap(m_services.prompts, words, [&] {
        const BusyPointer busy(m_services.prompts);
        const RowsBatch batch(m_lists.lsvSelectedEngines);
        operation();
    });
    renewTitle();
}

void EngineSelection::select(clsEngines& engine) {
    engine.Selected = true;
    // Deleting from lsvEngines may have left the row.
    if (!m_lists.lsvSelectedEngines.contains(engine.name()))
        addEngineListView(m_lists.lsvSelectedEngines, engine);
}

void EngineSelection::selectWhere(const std::function<bool(const clsEngines&)>& qualifies) {
    for (clsEngines& engine : m_lists.engines) {
        if (!engine.Selected && qualifies(engine)) select(engine);
    }
}

// One pass over the rows, however many there are.
void EngineSelection::unselectWhere(const std::function<bool(const clsEngines&)>& qualifies) {
    m_lists.lsvSelectedEngines.removeIf([&](const RowView& row) {
        clsEngines& engine = engineOf(row.key);
        if (!qualifies(engine)) return false;
        engine.Selected = false;
        return true;
    });
}

clsEngines& EngineSelection::engineOf(std::string_view rowKey) const {
    clsEngines* engine = m_lists.engines.find(rowKey);
    if (engine == nullptr) throw Failure("Invalid procedure call or argument", 5);
    return *engine;
}

void EngineSelection::renewTitle() {
    Rows& list = m_lists.lsvSelectedEngines;
    const std::string before = list.columnTitle(0);
    const std::string count = std::to_string(list.count());
    list.setColumnTitle(0, "Selected Engines (" + count + ")");
    // The first count of an empty list is not a change.
    const bool changed = before != list.columnTitle(0) && (before.ends_with(')') || !list.empty());
    if (changed) m_services.prompts.notice("Engines selected: " + count);
}

void EngineSelection::clickType(std::size_t index, bool ticked) {
    m_lists.chkType.at(index).checked = ticked;
    if (m_lists.typeClicksSelect) EngineSelectByType(EngineTypes[index].code, ticked);
}

void EngineSelection::tickAllTypes(bool on) {
    m_lists.typeClicksSelect = false;
    for (TypeBox& box : m_lists.chkType) box.checked = on;
    if (m_lists.typeBoxesChanged) m_lists.typeBoxesChanged();
    m_lists.typeClicksSelect = true;
}

void EngineSelection::EngineSelectByType(std::string_view type, bool on) {
    bulk("EngineSelectByType_Error: ", [&] {
        const auto qualifies = [&](const clsEngines& engine) {
            return equalsNoCase(engine.EngineType(), type) || containsNoCase(engine.EngineType(), "HOT");
        };
        if (on) {
            selectWhere(qualifies);
        } else {
            unselectWhere([&](const clsEngines& engine) { return engine.Selected && qualifies(engine); });
        }
    });
}

void EngineSelection::EngineSelectByCountry(std::string_view rowText) {
    bulk("EngineSelectByCountry_Error: ", [&] {
        const std::string_view code = countryCode(rowText);
        const bool every = equalsNoCase(code, "ALL");
        selectWhere([&](const clsEngines& engine) { return every || equalsNoCase(code, engine.Country()); });
    });
}

void EngineSelection::SelectByMode(std::string_view mode) {
    bulk("EngineSelection_Error: ", [&] {
        unselectWhere([](const clsEngines&) { return true; });
        if (equalsNoCase(mode, "MajorSite")) {
            selectWhere([](const clsEngines& engine) { return engine.SiteLevel() == 1; });
        } else if (equalsNoCase(mode, "CustomEngine")) {
            selectWhere([](const clsEngines& engine) { return equalsNoCase(engine.Category(), "C"); });
        } else if (equalsNoCase(mode, "AdultOnlySite")) {
            selectWhere([](const clsEngines& engine) { return equalsNoCase(engine.AdultOnlySites(), "Y"); });
        }
    });
}

void EngineSelection::EngineSelectNoAdultSites() {
    bulk("EngineSelectNoAdultSites_Error: ", [&] {
        unselectWhere([](const clsEngines& engine) {
            return startsWithNoCase(engine.Adults(), "N") || startsWithNoCase(engine.AdultOnlySites(), "Y");
        });
    });
}

void EngineSelection::EngineRemoveFailing(const std::function<bool(std::string_view name)>& isFailing) {
    bulk("Module: EngineRemoveFailing_Error: ",
         [&] { unselectWhere([&](const clsEngines& engine) { return isFailing(engine.name()); }); });
}

void EngineSelection::EngineSelect(bool all) {
    bulk("Module: EngineSelect_Error: ", [&] {
        for (int place = 0; place < m_lists.lsvEngines.count(); ++place) {
            const RowView row = m_lists.lsvEngines.at(place);
            if (!all && !row.highlighted) continue;
            clsEngines& engine = engineOf(row.key);
            if (!engine.Selected) select(engine);
        }
    });
    if (all) tickAllTypes(true);
}

void EngineSelection::EngineRemove(bool all) {
    bulk("Module: EngineRemove_Error: ", [&] {
        m_lists.lsvSelectedEngines.removeIf([&](const RowView& row) {
            if (!all && !row.highlighted) return false;
            engineOf(row.key).Selected = false;
            return true;
        });
    });
    if (all) tickAllTypes(false);
}

bool EngineSelection::EngineSingleSelect(std::string_view name) {
    clsEngines* engine = m_lists.engines.find(name);
    if (engine == nullptr) return false;
    select(*engine);
    renewTitle();
    return true;
}

void EngineSelection::findEnginesByKeyword(std::string_view text) {
    bool found = false;
    {
        const BusyPointer busy(m_services.prompts);
        const RowsBatch listed(m_lists.lsvEngines);
        const RowsBatch selected(m_lists.lsvSelectedEngines);
        for (int place = 0; place < m_lists.lsvEngines.count(); ++place) {
            if (!containsNoCase(m_lists.lsvEngines.at(place).text, text)) continue;
            found = true;
            m_lists.lsvEngines.setHighlighted(place, true);
            EngineSingleSelect(m_lists.lsvEngines.at(place).key);
        }
    }
    renewTitle();
    if (!found) m_services.prompts.message("No matches found.", "Find Engine", Icon::Information);
}

void EngineSelection::deleteListedEngines() {
    trap(m_services.prompts, "lsvEngines_KeyDown_Error: ", [&] {
        m_lists.lsvEngines.removeIf([&](const RowView& row) {
            if (!row.highlighted) return false;
            engineOf(row.key).Selected = false;
            return true;
        });
    });
    Rows& list = m_lists.lsvEngines;
    list.setColumnTitle(0, "Engines (" + std::to_string(list.count()) + ")");
}

void EngineSelection::saveSelectedEngine(const std::string& path) const {
    std::string lines;
    for (int row = 0; row < m_lists.lsvSelectedEngines.count(); ++row) {
        lines.append(m_lists.lsvSelectedEngines.at(row).text).append("\r\n");
    }
    writeFile(path, lines);
}

bool EngineSelection::readSelection(const std::string& path, Repeated repeated) {
    if (!fileExists(path)) return true;
    int taken = 0;
    try {
        const BusyPointer busy(m_services.prompts);
        const RowsBatch batch(m_lists.lsvSelectedEngines);
        const std::string text = readFile(path);
        ItemReader reader(text);
        std::string_view name;
        while (reader.next(name)) {
            clsEngines* engine = m_lists.engines.find(name);
            if (engine == nullptr) continue;
            engine->Selected = true;
            const bool repeats = m_lists.lsvSelectedEngines.contains(name);
            if (repeats && repeated == Repeated::Skipped) continue;
            if (repeats)
                throw Failure("The engine \"" + std::string(engine->name()) +
                                  "\" is selected already, and the reading stopped there. Engines taken from "
                                  "the file before it: " +
                                  std::to_string(taken) + ".",
                              457);
            addEngineListView(m_lists.lsvSelectedEngines, *engine);
            ++taken;
        }
    } catch (const std::exception& failure) {
        renewTitle();
        m_services.prompts.message(std::string(failure.what()) + "\r\nModule: Load Selected Engine", "Error",
                                   Icon::Critical);
        return false;
    }
    renewTitle();
    m_services.prompts.notice("Engines taken from " + path + ": " + std::to_string(taken));
    return true;
}

void EngineSelection::exportEngineList() const {
    const std::string path = m_services.paths.inApp("englist.htm");
    writeFile(path, engineListPage(m_lists.engines));
    m_services.prompts.notice("Engine list written to " + path);
    openOrTell(m_services.prompts, path, "Export Engine List");
}

void EngineSelection::inEnginesFolder(const std::function<void(const std::string& folder)>& operation) {
    trap(m_services.prompts, "EngineItems_Error: ", [&] {
        const std::string folder = m_services.paths.inApp("Engines");
        makeFolder(folder);
        operation(folder);
    });
}

void EngineSelection::saveSelection() {
    inEnginesFolder([this](const std::string& folder) {
        if (m_lists.lsvSelectedEngines.empty()) {
            m_services.prompts.message(
                "No engines have been selected. Please select the engines you would like to save.",
                kSaveQuestion.title, Icon::Information);
            return;
        }
        const std::string path = askWhereToSave(m_services.prompts, kSaveQuestion, folder);
        if (path.empty()) return;
        saveSelectedEngine(path);
        m_services.prompts.notice("Engines saved to " + path + ": " +
                                  std::to_string(m_lists.lsvSelectedEngines.count()));
    });
}

void EngineSelection::loadSelection() {
    inEnginesFolder([this](const std::string& folder) {
        int filter = 1;
        const std::string path =
            ShowFileDialog(m_services.prompts, false, kSaveQuestion.filter, folder, {}, filter);
        if (!path.empty()) loadSelectedEngine(path);
    });
}

void EngineSelection::selectTopEngines() {
    inEnginesFolder([this](const std::string&) { SelectByMode("MajorSite"); });
}

void EngineSelection::selectCustomEngines() {
    inEnginesFolder([this](const std::string&) { SelectByMode("CustomEngine"); });
}

void EngineSelection::selectFailedEngines() {
    selectFailed(Repeated::Ends);
}

void EngineSelection::selectFailedEnginesOnce() {
    selectFailed(Repeated::Skipped);
}

void EngineSelection::selectFailed(Repeated repeated) {
    inEnginesFolder([&](const std::string&) {
        const std::string path = m_services.paths.inApp("fail.eng");
        if (fileExists(path) && !readFile(path).empty())
            readSelection(path, repeated);
        else
            m_services.prompts.message("Failed engine list is empty.", "Load Engines", Icon::Information);
    });
}

void EngineSelection::offerEngineList() {
    inEnginesFolder([this](const std::string&) {
        if (m_services.prompts.ask("Create a list of all the search engines. Do you want to continue?",
                                   "Export Engine List"))
            exportEngineList();
    });
}

bool EngineSelection::isThereFFASites() const {
    for (int row = 0; row < m_lists.lsvSelectedEngines.count(); ++row) {
        if (equalsNoCase(m_lists.lsvSelectedEngines.at(row).icon, "FFA")) return true;
    }
    return false;
}

std::string EngineSelection::getEngineType() const {
    std::string codes;
    for (std::size_t index = 0; index < m_lists.chkType.size(); ++index) {
        if (!m_lists.chkType[index].checked) continue;
        if (index > 0) codes += ',';
        codes += EngineTypes[index].code;
    }
    return codes;
}

}  // namespace relay
