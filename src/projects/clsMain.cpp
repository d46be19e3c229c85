// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/clsMain.h"

#include "core/Paths.h"
#include "core/Prompts.h"
#include "core/clsPreference.h"

namespace relay {

clsMain::clsMain(const Paths& paths, clsPreference& preference, Log& log, Prompts& prompts)
    : countries(paths),
      engineCategories(paths, prompts),
      engineLoader(engines, engineCategories, countries, paths, preference, log, prompts),
      selection(engines, paths, prompts),
      categories(paths, preference, prompts),
      website(categories, engines, selection, prompts),
      desk(paths, preference, website, prompts),
      m_paths(paths),
      m_preference(preference),
      m_prompts(prompts) {}

std::vector<std::string> clsMain::webTypes() const {
    std::vector<std::string> types = {"Commercial Site", "Personal Site"};
    if (!m_preference.refusesAdultSites()) types.emplace_back("Adult Only Site");
    types.emplace_back("General");
    return types;
}

std::vector<std::string> clsMain::languages() {
    return {"English", "German", "Franch", "Italian", "Spanish", "Japanese", "Chinese", "Others"};
}

bool clsMain::engineDataPresent() const {
    return fileExists(m_paths.inWindows("krveng5.dat")) && fileExists(m_paths.inWindows("catkws.dat"));
}

bool clsMain::loadEngineData() {
    return engineCategories.loadEngineCategory() && engineLoader.loadEngines();
}

bool clsMain::readyToSubmit() {
    desk.autoSave();
    if (engines.lsvSelectedEngines.empty()) {
        m_prompts.message(
            "There is no engine selected.\r\n\r\nPlease select the engines before start submitting.",
            "Submit", Icon::Critical);
        desk.showEngines();
        return false;
    }
    if (selection.isThereFFASites() && m_preference.BlockSpam == 0 &&
        m_prompts.ask("Your selected engines contain FFA links, do you want to block auto-response "
                      "confirmation email or spam ads from FFA sites?",
                      "Submit"))
        m_preference.BlockSpam = 1;
    return true;
}

}  // namespace relay
