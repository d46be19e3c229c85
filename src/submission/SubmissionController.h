// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/SubmissionRun.h"

#include <string>
#include <string_view>

namespace relay {

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

    bool isRunning() const noexcept { return m_run.isRunning(); }

  Q_SIGNALS:
    void engineEnded(const relay::EngineEnded& ended);
    void reportWritten(const relay::UrlReport& report);
    void runDone(const relay::RunSummary& summary);
    // Plain values of the state changed (the lists have their own signals).
    void stateChanged();

  private:
    const Services& m_services;
    const Catalogue& m_catalogue;
    SubmissionState m_state;
    SubmissionRun m_run;
};

}  // namespace relay
