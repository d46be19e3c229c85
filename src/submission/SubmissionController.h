// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/Catalogue.h"
#include "submission/EngineDispatcher.h"
#include "submission/Ledger.h"
#include "submission/LedgerReader.h"
#include "submission/ReportWriter.h"
#include "submission/SubmissionState.h"
#include "submission/clsSubmit.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace relay {

inline constexpr std::string_view kConfirmURLs =
    "Please confirm the URL(s) you want to submit and click the 'Submit' button:";

// The submission wizard's operations and the scheduler of a run: the URLs go one after the other, the engines
// of a URL are spread over the connections, and a connection that ends takes the next engine. Driven by the
// form, the command line and the tests in the same way:
//   addSite()... or loadProject(); cmdNext(); cmdStart(); cmdSubmit(); the event loop until runDone.
// A run holds the catalogue, whose lsvSelectedEngines are its engines. Everything that is handed in outlives
// the controller.
class SubmissionController final : public QObject {
    Q_OBJECT
  public:
    SubmissionController(const Services& services, const Catalogue& catalogue, SubmissionOptions options);

    SubmissionState& state() noexcept { return m_state; }
    const SubmissionState& state() const noexcept { return m_state; }
    clsSubmit& submit() noexcept { return m_clsSubmit; }
    const clsSubmit& submit() const noexcept { return m_clsSubmit; }

    // Page 0. loadProject adds the websites of the project file; addSite one website file, checked when it
    // has URLs. addSite gives false when the file has no LastURL or is in the list already, and throws
    // Failure when the file is there but cannot be read. Paths that differ in case are two files.
    void loadProject();
    bool hasSite(std::string_view websiteFile) const;
    bool addSite(const std::string& websiteFile, std::string_view name, std::string_view project);
    // The user ticked or cleared a row's box: a site without URLs is refused.
    void siteChecked(int row, bool on);
    // Ticks every site that has URLs, or clears all.
    void selectAllSites(bool on);
    bool cmdNext();
    bool getSubmitSummary();
    void getNumOfSelectedSites(int& Sites, int& URLs) const;

    // Page 1.
    bool ConfirmSubmit();
    bool cmdStart();
    // Fills lsvSiteSubmitting from the checked sites and EngineTable from the selected engines. False, with
    // both lists empty, after a failure: more than 32767 URLs or engines are "Overflow".
    bool createSubmissionData();

    // Page 2. cmdRemove drops the highlighted URLs, during a run only those not begun. cmdSubmit starts a run
    // or stops the one that runs, by its caption; false when a run could not start.
    void cmdRemove();
    bool cmdSubmit();

    // Page 3.
    void viewReport();
    // Makes exactly the pairs of engine and URL that did not succeed the work of the next run and shows page
    // 2, as cmdStart does; then cmdSubmit(). False when there are none, or while a run is on.
    bool runFailedAgain();
    // Asks where to, and writes the results as comma separated values.
    void saveResultsAs();

    // A run that was cut off (a crash, a power cut, a program closed in the middle). Nothing when there is
    // none in this home, or another program is at it. A file that is no ledger goes to the log.
    std::optional<CutOffRun> cutOffRun() const;
    // Makes what is left of it the work of the next run and shows page 2, as cmdStart does; then cmdSubmit().
    // The catalogue must be loaded; what is selected in it does not matter. What had ended counts as if it
    // had ended in this run: in the results, in the report of the URL that was under way, in the summary and
    // in fail.eng. False, with a message that says what changed, when the engines, the settings or the
    // websites are not what they were; also while a run is on.
    bool resume(CutOffRun run);
    // Removes its ledger.
    void forget(const CutOffRun& run);

    // The page the user wants to see, where it may be shown: back to what was decided before, as long as
    // nothing runs, and forward to the reports of the last run.
    void showPage(int page);
    bool mayShow(int page) const;

    // False: the user wants to stay. True: nothing of the run reaches the user any more.
    bool closing();

    bool isRunning() const noexcept { return m_held != nullptr; }
    // The user pressed "Stop", and the connections have not come to their end yet.
    bool isStopping() const { return isRunning() && m_state.cmdSubmit == kSubmit; }
    // No connection is at work. A failure is shown and gives true: the run must not wait for ever.
    bool isFinish();

  Q_SIGNALS:
    void engineEnded(const relay::EngineEnded& ended);
    void reportWritten(const relay::UrlReport& report);
    void runDone(const relay::RunSummary& summary);
    // The run goes on, but could not after a crash: its ledger cannot be written. Once a run.
    void ledgerFailed(const std::string& problem);
    // Plain values of the state changed (the lists tell their own changes).
    void stateChanged();

  private:
    static constexpr std::string_view kSubmit = "&Submit";

    // What a URL of the run is to do, where that is not to go to every engine of EngineTable.
    struct PartOfEngines final {
        std::vector<std::int16_t> reported;  // engines of its report, from 1; empty: all
        std::vector<std::int16_t> due;       // engines it still goes to
    };

    bool StartSubmit();
    bool startRun();
    void beginRecord();
    RunPlan planOfLists() const;
    void beginLedger();
    void recallCutOff();
    void recallReport(const PlannedURL& url);
    bool maySendTheSame(const CutOffRun& run) const;
    void preparePlan(const RunPlan& plan, const std::vector<bool>& finished);
    void forgetPrepared();
    std::int16_t dueEngines(std::string_view key) const;
    // Records of EngineTable; all of them where no places are given.
    std::vector<EngineResult> enginesOf(const std::vector<std::int16_t>& places) const;
    void noteSending(std::int16_t EngineIndex);
    template <typename Write>
    void writeLedger(Write&& write) {
        if (!m_ledger.isOpen()) return;
        write();
        if (!m_ledger.isOpen()) tellLedgerFailed(m_ledger.problem());
    }
    void tellLedgerFailed(const std::string& problem);
    std::int16_t connectionsToOpen();
    void beginURL();
    void SubmitIt(std::int16_t Index);
    void submitEngine(std::int16_t Index, std::int16_t number);
    void finishURL();
    void reportURL();
    void countReport(const UrlReport& report);
    void stopSubmission();
    void endWhenIdle();
    void endRun();
    bool setSiteSubmittingStatus(std::int16_t Row);
    void setSubmitComplete();
    void tellRunDone();
    void TimerSubmit();
    void countEnded(const EngineEnded& ended);
    void countResult(std::int16_t result);
    void showConnection(std::int16_t Index, const std::string& words);
    void resetSubmitButton();
    void countWork();

    const Services& m_services;
    const Catalogue& m_catalogue;
    SubmissionState m_state;
    clsSubmit m_clsSubmit;
    EngineDispatcher m_dispatcher;
    ReportWriter m_reports;
    bool m_keepLedger;
    QTimer m_TimerSubmit;
    Catalogue::Hold m_held;     // from StartSubmit to the end of the run
    bool m_ended = false;       // the last URL is done, and nobody was told yet
    bool m_limitShown = false;  // that the system allows fewer connections than the settings ask for
    RunSummary m_summary;
    // Made by runFailedAgain() and resume(); by the keys of lsvSiteSubmitting.
    std::unordered_map<std::string, PartOfEngines> m_parts;
    std::optional<CutOffRun> m_cutOff;                          // the run that the next one goes on with
    const PartOfEngines* m_part = nullptr;                      // of the URL under way
    std::unordered_map<std::string, std::size_t> m_placeOfURL;  // in the plan, by key
    std::uint16_t m_place = 0;                                  // of the URL under way
    Ledger m_ledger;
    std::unordered_map<std::string, int> m_reportsOfFile;  // of this run, by path
};

}  // namespace relay
