// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"
#include "ranking/RankingSetup.h"

#include <string>
#include <vector>

namespace relay {

// What the screen of rank tracking shows, as plain values; members are named after their controls. Only
// clsRanking and its run change it.
struct RankingState final {
    RankingState() {
        lsvRankingEngines.setColumns({"Engines", "Pages", "Position", "Status", "Result"});
        lsvRankingEngines.setCheckable(true);
        ListView2.setColumns({"Profile Name", "URL", "Date"});
    }

    bool offersStart() const { return Command1_0 == "&Start Search"; }
    void offerStart() {
        Command1_0 = "&Start Search";
        Command1_1Enabled = true;
        Command2Enabled = true;
        progressValue = 0;
    }

    // cboProfile, lstSiteURL, txtKeyWord, Option1 and txtPageLinks. An empty profile: none is chosen.
    RankingSetup setup;
    std::vector<std::string> cboProfile;
    // "Result" says how the last analysis ended for the engine; the report does not show it.
    // The engines in the catalogue's order; a row's place is the engine's, so this list is never sorted.
    Rows lsvRankingEngines;
    Rows ListView2;  // tag the report; "Profile Name", "URL", "Date"
    bool chkSaveResults = false;
    bool changed = false;  // a field differs from the saved profile

    std::string Command1_0 = "&Start Search";
    bool Command1_0Enabled = true;
    bool Command1_1Enabled = true;  // the report
    bool Command2Enabled = true;    // new, save and remove
    int progressValue = 0;
    int progressMaximum = 100;
    std::string StatusBar2;
};

// The engine list as the logic takes it.
std::vector<RankRow> rankRows(const Rows& list);

}  // namespace relay
