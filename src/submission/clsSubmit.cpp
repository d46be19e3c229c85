// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/clsSubmit.h"

#include "catalogue/Catalogue.h"
#include "core/Failure.h"
#include "core/FileSystem.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"

#include <utility>

namespace relay {

namespace {
const clsEngines& engineNamed(const Catalogue& catalogue, std::string_view name) {
    const clsEngines* engine = catalogue.lists.engines.find(name);
    if (!engine) throw Failure("Invalid procedure call or argument", 5);
    return *engine;
}
}  // namespace

clsSubmit::clsSubmit(const Services& services, const Catalogue& catalogue)
    : m_services(services), m_catalogue(catalogue), m_pool(services) {
    connect(&m_pool, &RunPool::Completed, this, &clsSubmit::m_frmHTTPMX_Completed);
    connect(&m_pool, &RunPool::Progress, this, &clsSubmit::m_frmHTTPMX_Progress);
    connect(&m_pool, &RunPool::Cancelled, this, &clsSubmit::m_frmHTTPMX_Cancelled);
}

std::optional<std::string> clsSubmit::setWebDetails(const std::string& URL, const std::string& WebsiteFile) {
    m_URL = URL;
    const auto failure = failureOf([&] {
        if (!fileExists(WebsiteFile)) throw fileFailure(WebsiteFile, "The website file has gone", 53);
        m_website = IniFile::load(WebsiteFile);
        m_WebsiteFile = WebsiteFile;
    });
    if (failure && m_WebsiteFile != WebsiteFile) {
        m_website = {};
        m_WebsiteFile.clear();
    }
    m_web = readWebDetails(URL, m_website);
    return failure;
}

std::string clsSubmit::getSubmitData(std::string_view EngineName) {
    std::string data;
    if (m_WebsiteFile.empty()) return data;
    trap(m_services.prompts, "Module: getSubmitData\r\n", [&] {
        data = expandQuery({engineNamed(m_catalogue, EngineName), m_web, m_website, m_catalogue.countries,
                            m_services.preference.BlockSpam != 0});
    });
    return data;
}

void clsSubmit::listEngines(const Rows& lsvSelectedEngines) {
    if (lsvSelectedEngines.count() > kMostOfWork) throw Failure("Overflow", 6);
    m_EngineTable.resize(static_cast<std::size_t>(lsvSelectedEngines.count()));
    for (int row = 0; row < lsvSelectedEngines.count(); ++row)
        m_EngineTable[static_cast<std::size_t>(row)].Name = lsvSelectedEngines.at(row).text;
}

void clsSubmit::listEngines(const std::vector<std::string>& names) {
    if (names.size() > std::size_t{kMostOfWork}) throw Failure("Overflow", 6);
    m_EngineTable.assign(names.size(), {});
    for (std::size_t i = 0; i < names.size(); ++i) m_EngineTable[i].Name = names[i];
}

void clsSubmit::recallResult(std::int16_t EngineIndex, std::int16_t result) {
    EngineResult& entry = m_EngineTable.at(static_cast<std::size_t>(EngineIndex - 1));
    entry.Result = result;
    const clsEngines* engine = m_catalogue.lists.engines.find(entry.Name);
    if (!engine) return;
    entry.Home = engine->Home();
    entry.AddURL = engine->AddURL();
}

std::int16_t clsSubmit::NumOfEngines() const noexcept {
    return static_cast<std::int16_t>(m_EngineTable.size());
}

std::size_t clsSubmit::place(int Index) const {
    if (Index < 1 || Index > socketCount()) throw Failure("Subscript out of range", 9);
    return static_cast<std::size_t>(Index - 1);
}

void clsSubmit::sizeSockets(std::int16_t Count) {
    if (Count < 1) throw Failure("Subscript out of range", 9);
    m_SubmitSocket.assign(static_cast<std::size_t>(Count), {});
}

void clsSubmit::LoadHTTPMXSocket(std::int16_t Count) {
    // Replies are not kept: a result depends on the status only.
    m_pool.open({Count, false, [this](std::string_view URL) { return maskPassword(URL, m_web); }});
}

void clsSubmit::Submitting(std::int16_t Index, std::int16_t EngineIndex) {
    int step = 0;
    const auto failure = failureOf([&] { sendRequest(Index, EngineIndex, step); });
    if (!failure) return;
    if (m_services.log.traceOn()) {
        m_services.log.WriteTraceLog("Module : Submitting. \r\n" + escapeControlCharacters(*failure) +
                                     " Line Number: " + std::to_string(step) +
                                     " Socket : " + std::to_string(Index) +
                                     " Engine: " + escapeControlCharacters(socket(Index).EngineName));
    }
    // Nothing else would free this connection, and the run would wait for it.
    if (socket(Index).Busy == 1) endAtOnce(Index);
}

void clsSubmit::sendRequest(std::int16_t Index, std::int16_t EngineIndex, int& step) {
    SubmitSocket& work = socket(Index);
    step = 1;
    work.Stopped = work.Flags = 0;
    work.Result = NotReached;
    work.Busy = 1;
    work.EngineIndex = EngineIndex;
    EngineResult& result = m_EngineTable.at(static_cast<std::size_t>(EngineIndex - 1));
    work.EngineName = result.Name;
    work.Started = std::chrono::steady_clock::now();
    work.Code = 0;
    show(Index, ConnectionStage::Connecting, "Connecting ...");
    step = 2;
    const clsEngines& engine = engineNamed(m_catalogue, result.Name);
    work.Home = engine.Home();
    work.EngineName = engine.name();
    work.Method = engine.Method();
    work.Action = engine.Action();
    result.AddURL = engine.AddURL();
    step = 3;
    work.SubmitData = getSubmitData(work.EngineName);
    step = 4;
    if (auto request = submissionRequest(work.Method, work.Action, work.SubmitData)) {
        work.Action = std::move(request->URL);
        if (m_services.log.traceOn()) {
            m_services.log.WriteTraceLog(
                "Submitting: " + escapeControlCharacters(work.EngineName) + "\r\n" +
                escapeControlCharacters(maskPassword(work.Method + " " + work.Action, m_web)) + "\r\n" +
                escapeControlCharacters(
                    maskPassword(request->isPost() ? work.SubmitData : std::string(), m_web)));
        }
        Q_EMIT sending(EngineIndex);
        m_pool.Connect(Index, work.Action, work.Method, work.SubmitData);
        return;
    }
    step = 5;
    const std::string name = work.EngineName;
    const std::string data = work.SubmitData;
    endAtOnce(Index);
    if (m_services.log.traceOn()) {
        m_services.log.WriteTraceLog("Script Error.\r\n Engine: " + escapeControlCharacters(name) +
                                     "\r\nSubmitData: " + escapeControlCharacters(maskPassword(data, m_web)));
    }
}

void clsSubmit::endAtOnce(std::int16_t Index) {
    socket(Index).Result = Failed;
    setSubmitResults(Index, "clsSubmit_Submitting", "Invalid SubmitData");
    Q_EMIT connectionFree(Index);
}

void clsSubmit::setSubmitResults(std::int16_t Index, std::string_view Caller, const std::string& Text) {
    const auto failure = failureOf([&] {
        SubmitSocket& work = socket(Index);
        work.Busy = 0;
        if (work.EngineIndex < 1) return show(Index, ConnectionStage::Completed, Text);
        // Stored even if the row cannot be shown.
        EngineResult& result = m_EngineTable.at(static_cast<std::size_t>(work.EngineIndex - 1));
        result.Result = work.Result;
        show(Index, ConnectionStage::Completed, Text);
        result.Home = work.Home;
        const auto taken = std::chrono::steady_clock::now() - work.Started;
        Q_EMIT engineEnded({m_URL, work.EngineName, work.Code, work.Result,
                            std::chrono::duration_cast<std::chrono::milliseconds>(taken).count(),
                            work.EngineIndex});
    });
    if (failure && m_services.log.traceOn()) {
        m_services.log.WriteTraceLog("setSubmitResults_Error: " + *failure +
                                     " - Source: " + std::string(Caller) + " - " + Text);
    }
}

void clsSubmit::cancel(std::int16_t Index) {
    SubmitSocket& work = socket(Index);
    if (work.Stage == ConnectionStage::Completed) return;
    work.Result = Cancelled;
    work.Stopped = -1;
    setSubmitResults(Index, "stopSubmission()", "Cancelled");
}

void clsSubmit::show(std::int16_t Index, ConnectionStage stage, const std::string& words) {
    socket(Index).Stage = stage;
    Q_EMIT connectionChanged(Index, words);
}

void clsSubmit::m_frmHTTPMX_Completed(std::int16_t Index, std::int32_t Code) {
    const auto failure = failureOf([&] {
        SubmitSocket& work = socket(Index);
        work.Stopped = work.Busy = 0;
        work.Result = classifyReply(Code);
        work.Code = Code;
        setSubmitResults(Index, "m_frmHTTPMX_Completed");
        Q_EMIT connectionFree(Index);
    });
    if (failure) m_services.log.WriteErrorLog("m_frmHTTPMX_Completed_Error: " + *failure);
}

void clsSubmit::m_frmHTTPMX_Progress(std::int16_t Index, std::int32_t Bytes) {
    if (Index < 1 || Index > socketCount()) return;
    show(Index, ConnectionStage::Connected, std::to_string(Bytes) + " bytes received");
}

void clsSubmit::m_frmHTTPMX_Cancelled() {
    m_services.log.WriteErrorLog("HTTPMX_Cancelled");
    Q_EMIT cancelled();
}

}  // namespace relay
