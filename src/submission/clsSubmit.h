// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/IniFile.h"
#include "submission/SubmissionData.h"
#include "submission/SubmissionRecords.h"
#include "transport/RunPool.h"

#include <QObject>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

class Catalogue;
class Rows;
struct Services;

// The submission run: sends the request of one engine per connection, classifies the reply and stores the
// result. It does not schedule, and sends nothing twice. Connections and engines count from 1.
class clsSubmit final : public QObject {
    Q_OBJECT
  public:
    clsSubmit(const Services& services, const Catalogue& catalogue);

    // Reads the website file, once per URL. If that fails, returns the reason; then the fields of the last
    // URL stay if they are of the same website, else nothing is sent for this URL.
    std::optional<std::string> setWebDetails(const std::string& URL, const std::string& WebsiteFile);
    // The engine's expanded template; empty when unusable. Shows a failure.
    std::string getSubmitData(std::string_view EngineName);
    // Makes EngineTable as long as the list of selected engines. Entries keep everything but the name. Throws
    // Failure 6 "Overflow" for more than 32767.
    void listEngines(const Rows& lsvSelectedEngines);
    // The same for names, with no results.
    void listEngines(const std::vector<std::string>& names);
    // Sets the result that an engine had in an interrupted run.
    void recallResult(std::int16_t EngineIndex, std::int16_t result);
    void forgetEngines() { m_EngineTable.clear(); }
    std::int16_t NumOfEngines() const noexcept;

    // Failure 9 "Subscript out of range" below 1.
    void sizeSockets(std::int16_t Count);
    // Throws Failure when the pool cannot be loaded.
    void LoadHTTPMXSocket(std::int16_t Count);
    // Starts the engine on the connection. If the engine ends at once (nothing to send, failed start), its
    // result is stored and connectionFree emitted before this returns.
    void Submitting(std::int16_t Index, std::int16_t EngineIndex);
    void setSubmitResults(std::int16_t Index, std::string_view Caller, const std::string& Text = "Completed");
    // Records the connection's engine as cancelled, unless it has already ended.
    void cancel(std::int16_t Index);
    void Disconnect() { m_pool.Disconnect(); }

    SubmitSocket& socket(int Index) { return m_SubmitSocket[place(Index)]; }
    std::int16_t socketCount() const noexcept { return static_cast<std::int16_t>(m_SubmitSocket.size()); }
    const std::vector<EngineResult>& EngineTable() const noexcept { return m_EngineTable; }

  Q_SIGNALS:
    // The engine's request is about to be sent.
    void sending(qint16 EngineIndex);
    void engineEnded(const relay::EngineEnded& ended);
    // The stage or the text of the connection changed.
    void connectionChanged(qint16 Index, const std::string& words);
    // The connection can take its next engine.
    void connectionFree(qint16 Index);
    // Disconnect has ended all requests.
    void cancelled();

  private:
    void m_frmHTTPMX_Completed(std::int16_t Index, std::int32_t Code);
    void m_frmHTTPMX_Progress(std::int16_t Index, std::int32_t Bytes);
    void m_frmHTTPMX_Cancelled();
    void sendRequest(std::int16_t Index, std::int16_t EngineIndex, int& step);
    void endAtOnce(std::int16_t Index);
    void show(std::int16_t Index, ConnectionStage stage, const std::string& words);
    std::size_t place(int Index) const;

    const Services& m_services;
    const Catalogue& m_catalogue;
    RunPool m_pool;
    std::vector<SubmitSocket> m_SubmitSocket;
    std::vector<EngineResult> m_EngineTable;
    std::string m_URL;
    std::string m_WebsiteFile;  // source of the fields below; empty: none
    WebDetails m_web;
    IniFile m_website;
};

}  // namespace relay
