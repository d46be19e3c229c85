// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/Categories.h"
#include "catalogue/Countries.h"
#include "catalogue/EngineCategories.h"
#include "catalogue/EngineLists.h"
#include "catalogue/EngineLoader.h"
#include "catalogue/EngineSelection.h"
#include "projects/OpenWebsite.h"
#include "projects/ProjectDesk.h"

#include <string>
#include <vector>

namespace relay {

class Log;
class Prompts;
class clsPreference;
struct Paths;

// The main logic object of the window program: it owns the parts that carry the operations on engines,
// projects and websites, and joins them. All that is handed in must outlive it.
class clsMain final {
  public:
    clsMain(const Paths& paths, clsPreference& preference, Log& log, Prompts& prompts);

    EngineLists engines;
    Countries countries;
    EngineCategories engineCategories;
    EngineLoader engineLoader;
    EngineSelection selection;
    Categories categories;
    OpenWebsite website;
    ProjectDesk desk;

    // Items of cboWebType; adult sites are among them unless they are refused.
    std::vector<std::string> webTypes() const;
    // Items of cboLanguage.
    static std::vector<std::string> languages();
    // Both data files of the engines are there.
    bool engineDataPresent() const;
    // The engines' tables and the engines, as at the start and after their data changed. False when a part
    // failed; the user was told.
    bool loadEngineData();
    // What the toolbar's "Submit" checks: saves, refuses an empty selection (the engine screen then shows),
    // and offers to block the mail of free-for-all sites. True when the submission may open.
    bool readyToSubmit();

  private:
    const Paths& m_paths;
    clsPreference& m_preference;
    Prompts& m_prompts;
};

}  // namespace relay
