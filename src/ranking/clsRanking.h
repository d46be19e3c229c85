// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ranking/HistoryStore.h"
#include "ranking/RankingCatalogue.h"
#include "ranking/RankingProfiles.h"
#include "ranking/RankingReport.h"
#include "ranking/RankingRun.h"
#include "ranking/RankingState.h"

#include <QLocale>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

// The operations of rank tracking, for the screen, the command line and tests alike:
//   Load(); cboProfile_Click(NAME); StartSearch(); the event loop until searchEnded; getResults(); Report().
// Each shows its own failures and then returns false. `services` outlives the object.
class clsRanking final : public QObject {
    Q_OBJECT
  public:
    clsRanking(const Services& services, QLocale locale);

    RankingState& state() noexcept { return m_state; }
    const RankingState& state() const noexcept { return m_state; }
    const std::vector<RankEngine>& engines() const noexcept { return m_catalogue.engines(); }
    HistoryStore& history() noexcept { return m_history; }

    // The steps that the screen and the command line share; none of them asks a question.

    // Makes the folders, reads the engines and the profiles, deletes the trace file.
    bool Load();
    bool loadEngineData();
    bool loadProfile();
    // Fills the fields and the engine list from the profile, which becomes the chosen one.
    bool cboProfile_Click(std::string_view name);
    // Ticks exactly these engines. Throws Failure with the first name that the catalogue does not have.
    void tickEngines(const std::vector<std::string>& names);
    bool saveProfile(const std::string& name);
    bool removeProfile(const std::string& name);
    bool StartSearch();
    // Stops the run, if there is one; searchEnded follows before this returns.
    void CancelProcess();
    bool isRunning() const noexcept { return m_run.isRunning(); }
    // Analyses the saved pages of the checked engines and adds the reading to the history; a history that
    // cannot be written is shown and changes nothing else. Windows are drawn between the pages, but take no
    // input. `goOn` is asked before each page; when it says no, the analysis ends without a history and
    // returns false. True without an analysis when there is no folder yet.
    bool getResults(const std::function<bool()>& goOn = {});
    // Writes the report of the last analysis and lists it in the profile; then what was chosen.
    RankingReport Report(const ReportChoices& choices);
    // Of the last analysis, one for each engine; empty when there was none.
    const std::vector<EngineAnalysis>& analysis() const noexcept { return m_analysis; }

    // What the user does on the screen, with its questions.

    // False, after a message, for an address that is refused: it stays in the field.
    bool cmdAddURL_Click(std::string_view url);
    void cmdDeleteURL_Click(int place);  // of lstSiteURL, from 0
    void txtKeyWord_Change(std::string_view text);
    void txtPageLinks_Change(std::string_view text);
    void Option1_Click(RankLimit limit);
    void chkSelectAll_Click(bool on);
    // False after a message; then the field to show is in the signal `refused`.
    bool isValidField();
    void Command1_0();       // start or stop
    void Command1_1();       // report
    void Command2_0();       // new profile
    void Command2_1();       // save
    void Command2_2();       // remove
    void Command3(int row);  // view the report of a row of ListView2; -1: none is chosen
    // For searchEnded: says which pages could not be saved, asks whether to view the report of a run that was
    // not stopped, and makes it.
    void offerReport(const RankingEnd& end);
    void ShowReport() { Command1_1(); }
    // Stops a run and stores the settings; call before the screen goes.
    void closing();

  Q_SIGNALS:
    void stateChanged();  // plain values of the state (its lists have signals of their own)
    void refused(relay::SetupField field);
    void pageSaved(const relay::RankedPage& page);
    void searchEnded(const relay::RankingEnd& end);
    void historyChanged();

  private:
    bool analyse(const std::function<bool()>& goOn);
    void addToHistory(const AnalysisInput& input);
    void enableButtons(bool on);
    void fieldsChanged();
    // Runs the operation; a failure goes to the log, with the remark, and without number and remark to a box.
    template <typename Operation>
    bool loggedTrap(std::string_view words, Operation&& operation, std::string_view title = "Web Ranking",
                    const std::function<std::string()>& remark = {});

    const Services& m_services;
    const QLocale m_locale;
    RankingState m_state;
    RankingCatalogue m_catalogue;
    RankingProfiles m_profiles;
    HistoryStore m_history;
    RankingRun m_run;
    std::vector<EngineAnalysis> m_analysis;
    RankingSetup m_analysedSetup;  // what m_analysis belongs to
};

}  // namespace relay
