// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/Catalogue.h"

#include "catalogue/EngineHealth.h"
#include "core/Failure.h"
#include "core/FileSystem.h"
#include "core/Keys.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"

#include <string>
#include <unordered_set>

namespace relay {

namespace {
constexpr std::string_view kDownload =
    " data file is corrupted, you need to download the engine submission data file from our web site by "
    "click on the 'File/Update Engine Data' menu item from the menu bar and following the instruction on the "
    "screen.";
}  // namespace

const std::string_view kMissingDataNotice =
    "Engine Data file was not found or missing. If this is the first time you run the program, you need to "
    "download the engine data file from our web server to make Korvel Relay works correctly. \r\n\r\nPlease "
    "click on the 'File/Update Engine Data' menu item from the menu bar and following the instruction on the "
    "screen. Please re-start the program after you updated the engine data file.";

Catalogue::Catalogue(const Services& services)
    : countries(services.paths),
      categories(services),
      engineLoader(services, lists, engineCategories, countries),
      selection(services, lists),
      m_services(services),
      m_held(std::make_shared<int>()) {}

bool Catalogue::engineDataPresent() const {
    return fileExists(m_services.paths.inWindows("krveng5.dat")) &&
           fileExists(m_services.paths.inWindows("catkws.dat"));
}

bool Catalogue::loadEngineData() {
    const bool loaded = loadEngineCategory() && loadEngines();
    if (afterLoad) afterLoad();
    return loaded;
}

void Catalogue::RefreshEngineData() {
    if (!engineDataPresent()) return;
    m_services.prompts.status("Loading the engine data ...");
    const BusyPointer busy(m_services.prompts);
    loadEngineData();
    m_services.prompts.status("");
}

void Catalogue::showEngineHealth(bool on) {
    Rows& list = lists.lsvEngines;
    std::vector<std::string> titles = {list.columnTitle(0), "Type", "Country"};
    const std::vector<EngineHealth> engines =
        on ? HealthStore(m_services.paths).engines() : std::vector<EngineHealth>();
    m_showsHealth = on;
    const RowsBatch batch(list);
    if (on) titles.insert(titles.end(), {"Last Success", "Failures"});
    list.setColumns(std::move(titles));
    list.setNumberColumns(on ? std::vector<int>{4} : std::vector<int>());
    for (const EngineHealth& engine : engines) {
        const int row = list.indexOf(engine.engine);
        if (row < 0) continue;
        list.setSubItem(row, 3, engine.lastSuccess.isValid() ? healthTime(engine.lastSuccess) : "never");
        list.setSubItem(row, 4, std::to_string(engine.failures));
    }
}

void Catalogue::dropFailingEngines() {
    std::unordered_set<std::string, KeyHash, KeyEqual> failing;
    for (const EngineHealth& engine : HealthStore(m_services.paths).engines())
        if (engine.isFailing()) failing.insert(engine.engine);
    selection.EngineRemoveFailing([&](std::string_view name) { return failing.contains(name); });
}

void Catalogue::forgetEngines() {
    engineCategories = EngineCategories();
    engineLoader.clear();
    if (afterLoad) afterLoad();
}

template <typename Load>
bool Catalogue::load(std::string_view words, std::string_view title, Load&& load) {
    if (isHeld()) {
        m_services.prompts.message("The engines cannot be loaded while a run uses them.", title,
                                   Icon::Information);
        return false;
    }
    try {
        load();
        return true;
    } catch (const std::bad_alloc&) {
        throw;  // not a fault of the file
    } catch (const std::exception&) {
        if (beforeFailure) beforeFailure();
        m_services.prompts.message(std::string(words).append(kDownload), title, Icon::Information);
        return false;
    }
}

bool Catalogue::loadEngineCategory() {
    return load("Category", "Error",
                [this] { engineCategories.load(m_services.paths.inWindows("catkws.dat")); });
}

bool Catalogue::loadEngines() {
    return load("Engine", "Load Engines", [this] { engineLoader.load(); });
}

const clsEngines& Catalogue::engine(std::string_view name) const {
    const clsEngines* const found = lists.engines.find(name);
    if (found == nullptr) throw Failure("There is no engine \"" + std::string(name) + "\" in the catalogue.");
    return *found;
}

}  // namespace relay
