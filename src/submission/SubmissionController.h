// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/Catalogue.h"
#include "submission/EngineDispatcher.h"
#include "submission/ReportWriter.h"
#include "submission/SubmissionState.h"
#include "submission/clsSubmit.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace relay {

// The operations of the submission wizard and the scheduler of a run: URLs go one after the other, the
// engines of a URL are spread over the connections, and a connection that ends takes the next engine. The
// form, the command line and the tests use it alike:
//   addSite()... or loadProject(); cmdNext(); cmdStart(); cmdSubmit(); the event loop until runDone.
// A run holds the catalogue; its engines are lsvSelectedEngines. `services` and `catalogue` outlive the
// controller.
class SubmissionController final : public QObject {
    Q_OBJECT
  public:
    SubmissionController(const Services& services, const Catalogue& catalogue, SubmissionOptions options);

    SubmissionState& state() noexcept { return m_state; }
    const SubmissionState& state() const noexcept { return m_state; }
    clsSubmit& submit() noexcept { return m_clsSubmit; }

    // Page 0. loadProject adds the websites of the project file; addSite adds one website file, checked if it
    // has URLs. addSite returns false when the file has no LastURL or is already listed, and throws Failure
    // when the file exists but cannot be read. Paths that differ in case are two files.
    void loadProject();
    bool hasSite(std::string_view websiteFile) const;
    bool addSite(const std::string& websiteFile, std::string_view name, std::string_view project);
    // The user ticked or cleared a row's box; a site without URLs is refused.
    void siteChecked(int row, bool on);
    // Ticks every site that has URLs, or clears all.
    void selectAllSites(bool on);
    bool cmdNext();
    bool getSubmitSummary();
    void getNumOfSelectedSites(int& Sites, int& URLs) const;

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

    // False if the user chose to stay. After true, the user hears nothing more of the run.
    bool closing();

    bool isRunning() const noexcept { return m_held != nullptr; }
    // True if no connection is active. Shows a failure and returns true then, so that the run cannot wait for
    // ever.
    bool isFinish();

  Q_SIGNALS:
    void engineEnded(const relay::EngineEnded& ended);
    void reportWritten(const relay::UrlReport& report);
    void runDone(const relay::RunSummary& summary);
    // Plain values of the state changed (the lists have their own signals).
    void stateChanged();

  private:
    bool StartSubmit();
    bool startRun();
    std::int16_t connectionsToOpen();
    void beginURL();
    void SubmitIt(std::int16_t Index);
    void submitEngine(std::int16_t Index, std::int16_t EngineIndex);
    void finishURL();
    void reportURL();
    void stopSubmission();
    void endWhenIdle();
    void endRun();
    bool setSiteSubmittingStatus(std::int16_t Row);
    void setSubmitComplete();
    void tellRunDone();
    void TimerSubmit();
    void countEnded(const EngineEnded& ended);
    void showConnection(std::int16_t Index, const std::string& words);
    void resetSubmitButton();

    const Services& m_services;
    const Catalogue& m_catalogue;
    SubmissionState m_state;
    clsSubmit m_clsSubmit;
    EngineDispatcher m_dispatcher;
    ReportWriter m_reports;
    QTimer m_TimerSubmit;
    Catalogue::Hold m_held;    // from StartSubmit to the end of the run
    bool m_ended = false;      // the last URL is done, but not reported yet
    bool m_limitTold = false;  // the message about too few descriptors was shown
    RunSummary m_summary;
    std::unordered_map<std::string, int> m_reportsOfFile;  // of this run, by path
};

}  // namespace relay
