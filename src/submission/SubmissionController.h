// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/HealthRecorder.h"
#include "submission/SubmissionRun.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

inline constexpr std::string_view kConfirmURLs =
    "Please confirm the URL(s) you want to submit and click the 'Submit' button:";

// The operations of the submission wizard. The form, the command line and the tests use it alike:
//   addSite()... or loadProject(); cmdNext(); cmdStart(); cmdSubmit(); the event loop until runDone.
// The engines of a run are the catalogue's lsvSelectedEngines. `services` and `catalogue` outlive the
// controller.
class SubmissionController final : public QObject {
    Q_OBJECT
  public:
    SubmissionController(const Services& services, const Catalogue& catalogue, SubmissionOptions options);

    SubmissionState& state() noexcept { return m_state; }
    const SubmissionState& state() const noexcept { return m_state; }
    clsSubmit& submit() noexcept { return m_run.submit(); }
    const clsSubmit& submit() const noexcept { return m_run.submit(); }

    // Page 0. loadProject adds the websites of the project file; addSite adds one website file, checked if it
    // has URLs. addSite returns false when the file has no LastURL or is already listed, and throws Failure
    // when the file exists but cannot be read. Paths that differ in case are two files.
    void loadProject();
    bool hasSite(std::string_view websiteFile) const;
    bool addSite(const std::string& websiteFile, std::string_view name, std::string_view project);
    // Submits these URLs, with the details of the ticked websites, instead of the websites' own. Call after
    // the websites were listed. Ticks one website: the first that has one of the URLs, else the first with a
    // URL of the same host.
    void submitOnly(std::vector<std::string> urls);
    // The user ticked or cleared a row's box; a site without URLs is refused.
    void siteChecked(int row, bool on);
    // Ticks every site that has URLs, or clears all.
    void selectAllSites(bool on);
    bool cmdNext();
    bool getSubmitSummary();
    void getNumOfSelectedSites(int& Sites, int& URLs) const;
    // The warning about ticked websites without a password, for the selected engines; empty if there is none.
    std::string passwordWarning() const;

    // Page 1.
    bool ConfirmSubmit();
    bool cmdStart();
    // Fills lsvSiteSubmitting from the checked sites and EngineTable from the selected engines. After a
    // failure, returns false and both lists are empty; more than 32767 URLs or engines are "Overflow".
    bool createSubmissionData();

    // Page 2. cmdRemove removes the highlighted URLs, during a run only those not yet started. cmdSubmit
    // starts a run or stops the current one, depending on its caption; false when a run could not start.
    void cmdRemove();
    bool cmdSubmit();

    // Page 3.
    void viewReport();
    // Prepares a run of exactly the pairs of engine and URL that did not succeed, those that were never sent
    // included, and shows page 2, like cmdStart; then call cmdSubmit(). False if there are none, or during a
    // run.
    bool runFailedAgain();
    // Asks for a file and writes the results to it as comma separated values.
    void saveResultsAs();

    // The newest run of this home that was interrupted (by a crash, a power cut, or closing the window);
    // nothing if there is none, or if another program uses it. A file that is not a ledger is noted in the
    // log.
    std::optional<CutOffRun> cutOffRun() const;
    // Prepares a run of the rest and shows page 2, like cmdStart; then call cmdSubmit(). The catalogue must
    // be loaded; its selection does not matter. What had ended counts as if it had ended in this run: in the
    // results, the report of the current URL, the summary and fail.eng. Returns false, with a message that
    // says what changed, if the engines, the settings or the websites have changed; also during a run.
    bool resume(CutOffRun run);
    // Removes its ledger.
    void forget(const CutOffRun& run);

    // Shows a page the user chose, if it may be shown: earlier pages while no run is active, and the reports
    // of the last run.
    void showPage(int page);
    bool mayShow(int page) const;

    // False if the user chose to stay. After true, the user hears nothing more of the run.
    bool closing();

    bool isRunning() const noexcept { return m_run.isRunning(); }
    // The user pressed "Stop", and the run has not ended yet.
    bool isStopping() const { return isRunning() && m_state.offersSubmit(); }

  Q_SIGNALS:
    void engineEnded(const relay::EngineEnded& ended);
    void reportWritten(const relay::UrlReport& report);
    void runDone(const relay::RunSummary& summary);
    // Plain values of the state changed (the lists have their own signals).
    void stateChanged();
    // The ledger cannot be written, so the run could not be continued after a crash. At most once per run.
    void ledgerFailed(const std::string& problem);

  private:
    bool maySendTheSame(const CutOffRun& run);
    void preparePlan(const RunPlan& plan, const std::vector<bool>& finished);

    const Services& m_services;
    const Catalogue& m_catalogue;
    SubmissionState m_state;
    SubmissionRun m_run;
    HealthRecorder m_health;
};

}  // namespace relay
