// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/SubmissionData.h"
#include "submission/SubmissionRecords.h"
#include "submission/SubmissionReport.h"

#include <QLocale>
#include <QObject>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

class Clock;
class Countries;
class EngineCollection;
class HttpNetwork;
class IniFile;
class Log;
class Prompts;
class Rows;
class clsPreference;
class frmHTTPMX;
struct Paths;
struct SubmissionState;

// What a submission works with. Everything outlives the run.
struct SubmissionServices final {
    const Paths& paths;
    clsPreference& preference;
    Log& log;
    Prompts& prompts;
    const Clock& clock;
    HttpNetwork& network;
    const EngineCollection& engines;
    const Rows& lsvSelectedEngines;  // its rows are the engines of a run
    const Countries& countries;
    QLocale locale;
    std::string commandLine;  // "/U" in it makes the engines in the report links
};

// What the run asks of its scheduler.
class SubmissionScheduler {
  public:
    virtual ~SubmissionScheduler() = default;
    // The connection is free: give it the next engine, now or in a moment.
    virtual void SubmitIt(std::int16_t Index) = 0;
    virtual void stopSubmission() = 0;
};

// The submission run: sends one engine's request a connection, classifies what comes back and keeps the
// results. It does not schedule, and nothing is sent twice. Connections and engines count from 1.
class clsSubmit final : public QObject {
    Q_OBJECT
  public:
    clsSubmit(const SubmissionServices& services, SubmissionState& state, SubmissionScheduler& scheduler);
    ~clsSubmit() override;

    // Reads the website file once for this URL and clears the report's rows and counters.
    void setWebDetails(const std::string& URL, const std::string& WebsiteFile);
    // The engine's expanded template; empty when unusable, a failure is shown.
    std::string getSubmitData(std::string_view EngineName);
    // Fills lsvSiteSubmitting from the checked sites and EngineTable from the selected engines. False, with
    // both lists empty, after a failure: more than 32767 URLs or engines are "Overflow".
    bool createSubmissionData();
    std::int16_t NumOfEngines() const noexcept;

    // Failure 9 "Subscript out of range" below 1.
    void sizeSockets(std::int16_t Count);
    // Throws Failure when the pool cannot be loaded.
    void LoadHTTPMXSocket(std::int16_t Count);
    // Starts the engine on the connection. An engine that ends at once (nothing to send, a start that failed)
    // has its result stored and the scheduler's SubmitIt called before this returns.
    void Submitting(std::int16_t Index, std::int16_t EngineIndex);
    void setSubmitResults(std::int16_t Index, std::string_view Caller, std::string_view Text = "Completed");
    void Disconnect();
    // Empties the list of failed engines; at the start of a run.
    void setFailEngine();

    // Writes the report of one URL, notes it in the website file and appends to fail.eng. A failure goes to
    // the log and into the result.
    UrlReport CreateReport(const std::string& URL, const std::string& WebsiteFile);

    SubmitSocket& socket(int Index) { return m_SubmitSocket[place(Index)]; }
    std::int16_t socketCount() const noexcept { return static_cast<std::int16_t>(m_SubmitSocket.size()); }
    const std::vector<EngineResult>& EngineTable() const noexcept { return m_EngineTable; }
    const std::string& failEngines() const noexcept { return m_FailEngines.text(); }

  Q_SIGNALS:
    void engineEnded(const relay::EngineEnded& ended);

  private:
    // Beside a SubmitSocket: what only the watchers of a run are told.
    struct Watch final {
        std::chrono::steady_clock::time_point started;
        std::int32_t code = 0;
    };

    void m_frmHTTPMX_Completed(std::int16_t Index, std::int32_t Code);
    void m_frmHTTPMX_Progress(std::int16_t Index, std::int32_t Bytes);
    void m_frmHTTPMX_Cancelled();
    void sendRequest(std::int16_t Index, std::int16_t EngineIndex, int& step);
    void endAtOnce(std::int16_t Index);
    void tellEnded(std::int16_t Index);
    void listSiteURLs();
    void listEngines();
    void advanceProgress();
    void showConnection(std::int16_t Index, std::string_view status, std::string_view icon);
    void getSubmitResults();
    void saveReport(const std::string& text, UrlReport& report);
    std::size_t place(int Index) const;

    const SubmissionServices& m_services;
    SubmissionState& m_state;
    SubmissionScheduler& m_scheduler;
    std::unique_ptr<frmHTTPMX> m_frmHTTPMX;
    std::vector<SubmitSocket> m_SubmitSocket;
    std::vector<Watch> m_watch;  // in step with m_SubmitSocket
    std::vector<EngineResult> m_EngineTable;
    WebDetails m_web;
    std::unique_ptr<IniFile> m_website;
    SubmitResults m_results;
    FailEngines m_FailEngines;
    int m_progress = 0;
};

}  // namespace relay
