// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/Catalogue.h"

#include "catalogue/CatalogueFiles.h"
#include "core/Failure.h"
#include "core/FileSystem.h"
#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Trap.h"

#include <string>

namespace relay {

namespace {
constexpr std::string_view kDownload =
    " data file is corrupted, you need to download the engine submission data file from our web site by "
    "click on the 'File/Update Engine Data' menu item from the menu bar and following the instruction on the "
    "screen.";
constexpr std::string_view kInstall = "Install Starter Catalogue";
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

bool Catalogue::installStarterCatalogue() {
    bool installed = false;
    trap(m_services.prompts, "installStarterCatalogue_Error: ", [&] {
        std::vector<CatalogueFile> files = readCatalogueFiles(m_services.paths);
        std::string different;
        for (const std::string& path : compareWithHome(files)) different += path + "\r\n";
        if (!different.empty() &&
            !m_services.prompts.ask(
                "These files already exist and differ:\r\n\r\n" + different +
                    "\r\nDo you want to replace them with those of the starter catalogue?",
                kInstall))
            return;
        writeCatalogueFiles(files);
        if (countries.cboCountry.empty()) countries.loadCountry();
        if (categories.lstMainCategory.empty()) categories.loadCategory();
        installed = loadEngineData();
    });
    if (installed)
        m_services.prompts.notice("Engines loaded from the starter catalogue: " +
                                  std::to_string(lists.lsvEngines.count()));
    return installed;
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
