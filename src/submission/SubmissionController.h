// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/SubmissionRun.h"

#include <string>
#include <string_view>

namespace relay {

// The submission wizard's operations. Driven by the form, the command line and the tests in the same way:
//   addSite()... or loadProject(); cmdNext(); cmdStart(); cmdSubmit(); the event loop until runDone.
// The engines of a run are the catalogue's lsvSelectedEngines. Everything that is handed in outlives
// the controller.
class SubmissionController final : public QObject {
    Q_OBJECT
  public:
    SubmissionController(const Services& services, const Catalogue& catalogue, SubmissionOptions options);

    SubmissionState& state() noexcept { return m_state; }
    const SubmissionState& state() const noexcept { return m_state; }
    clsSubmit& submit() noexcept { return m_run.submit(); }

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

    // False: the user wants to stay. True: nothing of the run reaches the user any more.
    bool closing();

    bool isRunning() const noexcept { return m_run.isRunning(); }

  Q_SIGNALS:
    void engineEnded(const relay::EngineEnded& ended);
    void reportWritten(const relay::UrlReport& report);
    void runDone(const relay::RunSummary& summary);
    // Plain values of the state changed (the lists tell their own changes).
    void stateChanged();

  private:
    const Services& m_services;
    const Catalogue& m_catalogue;
    SubmissionState m_state;
    SubmissionRun m_run;
};

}  // namespace relay
