// SPDX-License-Identifier: GPL-3.0-or-later
//
// What the user does on the screen of rank tracking, with its questions.
#include "core/FileSystem.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/SettingsStore.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "ranking/clsRanking.h"

#include <algorithm>

namespace relay {

namespace {

constexpr std::string_view kTitle = "Web Ranking";
constexpr std::string_view kNoBrowser =
    "Invalid Web Browser, please specify a correct web browser location from the 'Preference' setup window !";

}  // namespace

bool clsRanking::cmdAddURL_Click(std::string_view url) {
    return trap(
        m_services.prompts, "",
        [&] {
            m_state.setup.sites.push_back(rankedSite(url));
            fieldsChanged();
        },
        "Add URL", Icon::Information);
}

void clsRanking::cmdDeleteURL_Click(int place) {
    std::vector<std::string>& sites = m_state.setup.sites;
    if (place < 0 || static_cast<std::size_t>(place) >= sites.size()) return;
    sites.erase(sites.begin() + place);
    fieldsChanged();
}

void clsRanking::txtKeyWord_Change(std::string_view text) {
    if (m_state.setup.keywords == text) return;
    m_state.setup.keywords = text;
    fieldsChanged();
}

void clsRanking::txtPageLinks_Change(std::string_view text) {
    if (m_state.setup.pageLinks == text) return;
    m_state.setup.pageLinks = text;
    fieldsChanged();
}

void clsRanking::Option1_Click(RankLimit limit) {
    if (m_state.setup.pageLinks.empty()) m_state.setup.pageLinks = limit == RankLimit::Pages ? "3" : "30";
    m_state.setup.limit = limit;
    fieldsChanged();
}

void clsRanking::fieldsChanged() {
    m_state.changed = true;
    Q_EMIT stateChanged();
}

bool clsRanking::isValidField() {
    if (const auto problem = setupProblem(m_state.setup, rankRows(m_state.lsvRankingEngines))) {
        m_services.prompts.message(problem->text, kTitle, Icon::Information);
        Q_EMIT refused(problem->field);
        return false;
    }
    if (m_state.changed &&
        m_services.prompts.ask("The current profile has been changed, do you want to save the changes before "
                               "a new searching?",
                               kTitle))
        Command2_1();
    return true;
}

void clsRanking::Command1_0() {
    if (!m_state.offersStart()) {
        CancelProcess();
        return;
    }
    if (!isValidField()) return;
    if (m_services.preference.PromptConnection != 0 &&
        !m_services.prompts.ask("Please make sure you are connected to the internet and click on the 'Yes' "
                                "button to Start. \r\n\r\nDo you want to continue?",
                                kTitle))
        return;
    StartSearch();
}

void clsRanking::offerReport(const RankingEnd& end) {
    if (end.cancelled) return;
    if (end.unsaved > 0)
        m_services.prompts.message(
            "Pages that could not be saved: " + std::to_string(end.unsaved) + ".\r\n" + end.problem, kTitle,
            Icon::Critical);
    if (m_services.prompts.ask("Search Completed !\r\n\r\nDo you want to view 'Ranking Report' now?", kTitle))
        Command1_1();
}

void clsRanking::Command1_1() {
    // Not before a report in the making is complete, nor during a run.
    if (!m_state.Command1_0Enabled || isRunning()) return;
    m_state.StatusBar2 = "Please wait for creating ranking report .....";
    enableButtons(false);
    if (getResults()) {
        Report({m_state.chkSaveResults ? SaveResults::Always : SaveResults::Ask, true});
        m_state.StatusBar2.clear();
    }
    m_state.progressValue = 0;
    enableButtons(true);
}

void clsRanking::enableButtons(bool on) {
    m_state.Command1_0Enabled = on;
    m_state.Command1_1Enabled = on;
    m_state.Command2Enabled = on;
    Q_EMIT stateChanged();
}

void clsRanking::Command2_0() {
    constexpr std::string_view kQuestion =
        "Please specify the name of the new profile you would like to save:";
    std::string question(kQuestion);
    for (;;) {
        const std::string name =
            m_services.prompts.input(question, "Add a new profile").value_or(std::string());
        if (name.empty()) return;
        if (const auto problem = profileNameProblem(name)) {
            m_services.prompts.message(*problem, "Add New Profile", Icon::Critical);
            question = kQuestion;
            continue;
        }
        bool exists = false;
        if (!trap(m_services.prompts,
                  "saveProfile_Error: ", [&] { exists = m_profiles.IsProfileExist(name); }))
            return;
        if (!exists) {
            saveProfile(name);
            return;
        }
        question = "The profile '" + name + "' already exists.\r\nPlease specify a new profile name: ";
    }
}

void clsRanking::Command2_1() {
    if (m_state.setup.profile.empty())
        m_services.prompts.message("Please select the profile name you would like to update!", kTitle,
                                   Icon::Information);
    else
        saveProfile(m_state.setup.profile);
}

void clsRanking::Command2_2() {
    const std::string name = m_state.setup.profile;
    if (name.empty())
        m_services.prompts.message("Please select a profile name you want to remove!", kTitle,
                                   Icon::Information);
    else if (m_services.prompts.ask("Are you sure you want to remove this profile: \r\n\r\n" + name, kTitle))
        removeProfile(name);
}

void clsRanking::Command3(int row) {
    if (row < 0 || row >= m_state.ListView2.count()) {
        m_services.prompts.message("Please select a ranking URL from the list.", "View Ranking Report",
                                   Icon::Information);
        return;
    }
    const std::string path(m_state.ListView2.at(row).tag);
    if (!fileExists(path))
        m_services.prompts.message(
            "The ranking report file you want to view is missing or does not exist, please re-run a new "
            "ranking and try again.",
            "View Ranking Report", Icon::Information);
    else if (!m_services.prompts.openWithSystem(path))
        m_services.prompts.message(kNoBrowser, kTitle, Icon::Critical);
}

void clsRanking::closing() {
    CancelProcess();
    trap(m_services.prompts, "Save_Setting_Error: ", [this] {
        m_services.settings.setValue(kApplication, "WebRanking", "AutoSaveResults",
                                     m_state.chkSaveResults ? "1" : "0");
        m_services.settings.save();
    });
}

}  // namespace relay
