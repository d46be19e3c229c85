// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"
#include "submission/Results.h"

#include <QDateTime>

#include <cstdint>
#include <string>
#include <vector>

namespace relay {

// What the submission wizard shows and what a run stores, as plain values; members are named after their
// controls. Only the controller changes it; a form shows it and passes on what the user ticks and highlights.
struct SubmissionState final {
    SubmissionState() {
        lsvSiteSelection.setColumns({"Web Site", "Project", "Number of URLs"});
        lsvSiteSelection.setCheckable(true);
        lsvSiteSubmitting.setColumns({"URL", "Web site", "Status"});
        lsvConnections.setColumns({" ", "Engines", "Status"});
        lsvReport.setColumns({"URL", "Web Site", "Status"});
        lsvSiteSelection.setNumberColumns({2});
    }

    // Makes the button start a run.
    void offerSubmit() {
        cmdSubmit = "&Submit";
        cmdCancelEnabled = true;
    }
    bool offersSubmit() const { return cmdSubmit == "&Submit"; }

    Rows lsvSiteSelection;   // key and tag the website file; "Web Site", "Project", "Number of URLs"
    Rows lsvSiteSubmitting;  // tag the website file; "URL", "Web site", "Status"
    Rows lsvConnections;     // one row per connection; " ", "Engines", "Status"
    Rows lsvReport;          // tag the report; "URL", "Web Site", "Status"

    Results results;  // of the run, as they come; begun anew by the next one

    std::vector<std::string> onlyURLs;  // submitted instead of the websites' own, if there are any
    std::string lblHint = "Click on the \"Check Box\" on the list to select a web site";

    int page = 0;  // of SSTab1: 0 selection, 1 summary, 2 run, 3 reports
    std::string lblNumOfEngines;
    std::string lblNumOfWebsites;
    std::string lblNumOfURLs;
    std::string lblNumOfConnections;
    std::string lblEstimatedTime;
    std::string passwordWarning;  // on the summary page; empty: none
    std::string lblStart;
    std::string lblSubmit;
    std::string cmdSubmit = "&Submit";
    bool cmdCancelEnabled = true;  // of page 2
    int progressValue = 0;
    int progressMaximum = 100;
    std::string StatusBar1;  // messages of the run: how many engines remain, for example
    std::string clock;       // time since the start of the run: "0 :0 :1"

    std::string WebsiteFile;  // of the current URL
    std::string URL;
    QDateTime StartTime;
    std::int16_t URLIndex = 0;           // row of lsvSiteSubmitting, from 1
    std::int16_t EngineCounter = 0;      // last engine handed out for this URL
    std::int16_t Done = 0;               // -1 once the run has ended
    std::int16_t EngineCount = 0;        // engines selected when the summary was made
    std::int16_t ActiveConnections = 0;  // used in this run
    std::int16_t Running = 0;            // -1 from the first engine handed out to the end
};

}  // namespace relay
