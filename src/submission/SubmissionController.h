// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/SubmissionState.h"
#include "submission/clsSubmit.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>

namespace relay {

// The submission wizard's operations and the scheduler of a run: the URLs go one after the other, the engines
// of a URL are spread over the connections, and a connection that ends takes the next engine. Driven by the
// form, the command line and the tests in the same way:
//   addSite()... or loadProject(); cmdNext(); cmdStart(); cmdSubmit(); the event loop until runDone.
class SubmissionController final : public QObject, private SubmissionScheduler {
    Q_OBJECT
  public:
    explicit SubmissionController(const SubmissionServices& services);
    ~SubmissionController() override;

    SubmissionState& state() noexcept { return m_state; }
    const SubmissionState& state() const noexcept { return m_state; }
    clsSubmit& submit() noexcept { return m_clsSubmit; }

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

    // Page 2. cmdRemove drops the highlighted URLs, during a run only those not begun. cmdSubmit starts a run
    // or stops the one that runs, by its caption; false when a run could not start.
    void cmdRemove();
    bool cmdSubmit();

    // Page 3.
    void viewReport();

    // False: the user wants to stay. True: nothing of the run reaches the user any more.
    bool closing();

    bool isRunning() const noexcept { return m_active; }
    // No connection is at work. A failure is shown and gives true: the run must not wait for ever.
    bool isFinish();

  Q_SIGNALS:
    void engineEnded(const relay::EngineEnded& ended);
    void reportWritten(const relay::UrlReport& report);
    void runDone(const relay::RunSummary& summary);
    // Plain values of the state changed (the lists tell their own changes).
    void stateChanged();

  private:
    bool StartSubmit();
    bool startRun();
    std::int16_t connectionsToOpen();
    void startConnections();
    void SubmitIt(std::int16_t Index) override;
    void stopSubmission() override;
    void handOut();
    void handOutFree();
    void handOutLater();
    void endWhenIdle();
    void endRun();
    void giveNextEngine(std::int16_t Index);
    void finishURL();
    void reportURL();
    bool setSiteSubmittingStatus(std::int16_t Row);
    void setSubmitComplete();
    void tellRunDone();
    void TimerSubmit();
    void countEnded(const EngineEnded& ended);
    void resetSubmitButton();

    SubmissionServices m_services;
    SubmissionState m_state;
    clsSubmit m_clsSubmit;
    QTimer m_TimerSubmit;
    std::deque<std::int16_t> m_free;  // connections that wait for an engine, in the order they get one
    std::int16_t m_inHand = 0;        // the connection that is being given an engine
    bool m_handingOut = false;
    bool m_handOutQueued = false;
    bool m_limitTold = false;  // that the system allows fewer connections than the settings ask for
    bool m_active = false;     // from StartSubmit to the end of the run
    bool m_stopping = false;   // the stop was asked for: no engine is handed out any more
    bool m_ended = false;      // the last URL is done, and nobody was told yet
    RunSummary m_summary;
    std::unordered_map<std::string, int> m_reportsOfFile;  // of this run, by path
};

}  // namespace relay
