// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/EngineUpdate.h"

#include "catalogue/Catalogue.h"
#include "catalogue/UpdateFiles.h"
#include "core/Failure.h"
#include "core/Log.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/SettingsStore.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"
#include "transport/frmHTTPMX.h"

#include <algorithm>
#include <utility>

namespace relay {

namespace {

constexpr std::string_view kWait =
    "Please wait while updating your engine data. It will take a few minutes depending on your Internet "
    "connection .......";
constexpr std::string_view kUpdated =
    "Engine files have been successfully updated.\r\n\r\nWe recommend that you update your Engine Data at "
    "least once per month to keep the Engine Data fresh.";
constexpr std::string_view kFailed =
    "Error occur when update engine data. If you are connected to the internet through a proxy server, "
    "please enter your correct 'Proxy Server' address in the 'File/Configuration' window then try again. "
    "\r\n\r\nIf you are still having problem to update the engine data. please download the engine data "
    "installation program 'krveng.exe' to your PC from below and double click on the file 'krveng.exe' to "
    "install.";
constexpr std::string_view kInstallerLink =
    "Please CLICK here to download the engine data installation program 'krveng.exe'. ";
constexpr std::string_view kReady = "Press the 'Start' button to fetch the current engine data.";
constexpr std::string_view kHeld =
    "A submission is using the engines. You can start an update when it has ended.";
constexpr std::string_view kUndone = "The last update has been taken back.";
constexpr std::string_view kTitle = "Update Engine Data";

// Seconds without a byte after which a server counts as gone.
int patience(const clsPreference& preference) {
    constexpr int kUsual = 30;
    return preference.TimeOut > 0 ? preference.TimeOut : kUsual;
}

HttpProxy proxyOf(const clsPreference& preference) {
    constexpr int kThroughProxy = 2;
    std::string_view host = trim(preference.Proxy);
    if (preference.AccessType != kThroughProxy || host.empty()) return {};
    if (startsWithNoCase(host, "http://")) host.remove_prefix(7);
    return {std::string(host) + ":" + std::to_string(preference.Port), preference.HTTPUserName,
            preference.HTTPPassword};
}

// A page in place of the file, such as the log-in page of a network.
bool isWebPage(std::string_view text) {
    constexpr std::size_t kFront = 1024;  // where a page says that it is one
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n\xEF\xBB\xBF"), text.size()));
    if (!text.starts_with('<')) return false;
    return startsWithNoCase(text, "<!doctype html") || containsNoCase(left(text, kFront), "<html");
}

}  // namespace

EngineUpdate::EngineUpdate(const Services& services, Catalogue& catalogue, OwnServer ownServer,
                           QObject* parent)
    : QObject(parent),
      m_services(services),
      m_catalogue(catalogue),
      m_ownServer(std::move(ownServer)),
      m_store(services.paths),
      m_client(services.network) {
    m_client.setFollowUp(true);
    m_client.setBlocking(false);
    m_client.setTimeout(0);
    m_client.setReplyLimit(kLargestFile);
    m_silence.setSingleShot(true);
    connect(&m_client, &HttpClient::Progress, this, &EngineUpdate::showProgress);
    connect(&m_client, &HttpClient::Done, this, &EngineUpdate::received);
    connect(&m_silence, &QTimer::timeout, this, [this] {
        m_silent = true;
        m_client.Abort();
    });
}

void EngineUpdate::open(std::string_view prompt) {
    m_store.begin();
    m_state = {};
    m_state.Label1 = prompt.empty() ? kReady : prompt;
    m_state.canUndo = m_store.canUndo();
    checkHold();
    Q_EMIT changed();
}

void EngineUpdate::checkHold() {
    const bool held = m_catalogue.isHeld();
    if (m_running || held == (m_state.reason == kHeld)) return;
    m_state.startEnabled = !held;
    m_state.reason = held ? kHeld : "";
    Q_EMIT changed();
}

void EngineUpdate::setServer(std::string_view host) {
    m_server = serverAddress(host);
}

void EngineUpdate::Start() {
    checkHold();
    if (m_running || m_catalogue.isHeld()) return;
    m_running = true;
    m_requested = m_silent = false;
    m_index = 0;
    m_state = {};
    m_state.Label1 = kWait;
    m_state.Label2 = "Connecting to the web server .....";
    m_state.startEnabled = false;
    Q_EMIT changed();
    m_services.log.WriteErrorLog("Update Engine Data file ...");
    GetFile();
}

// The trap, which also keeps the failure's text as the reason.
template <typename Operation>
bool EngineUpdate::attempt(std::string_view words, Operation&& operation) {
    return trap(m_services.prompts, words, [&] {
        const auto failure = failureOf(operation);
        if (!failure) return;
        m_state.reason = *failure;
        throw Failure(*failure);
    });
}

void EngineUpdate::GetFile() {
    m_state.Label2 = "Retrieving engine data from the server...";
    if (m_index == kUpdateFiles.size()) {
        finish();
        return;
    }
    const bool requested = attempt("GetFile_Error: ", [&] {
        if (!m_requested) chooseServer();
        m_client.setURL(m_address + std::string(kUpdateFiles[m_index].serverPath));
        m_client.Get(m_response);
    });
    if (!requested) {
        setErrorMsg();
        return;
    }
    m_requested = true;
    m_state.step = std::string(kUpdateFiles[m_index].name) + " (" + std::to_string(m_index + 1) + " of " +
                   std::to_string(kUpdateFiles.size()) + ")";
    m_silence.start(patience(m_services.preference) * 1000);
    Q_EMIT changed();
}

void EngineUpdate::chooseServer() {
    const std::string& named = m_services.preference.UpdateServer;
    m_own.reset();
    m_address = m_server.empty() && !named.empty() ? serverAddress(named) : m_server;
    if (m_address.empty()) {
        m_own = m_ownServer();
        m_address = *m_own;
    }
    m_client.setProxy(m_own ? HttpProxy() : proxyOf(m_services.preference));
}

void EngineUpdate::showProgress(qint32 bytes) {
    if (!m_running) return;
    m_silence.start();
    m_state.maximum = std::max<std::int64_t>(m_client.Length(), 0);
    m_state.value = bytes;
    Q_EMIT changed();
}

void EngineUpdate::received() {
    if (!m_running) return;  // closed
    m_silence.stop();
    const std::int32_t status =
        std::exchange(m_silent, false) ? frmHTTPMX::kTimedOut : m_client.ResponseCode();
    const UpdatedFile file{kUpdateFiles[m_index].name, status, m_response.size()};
    m_state.reason = problemOf(status);
    bool saved = false;
    if (m_state.reason.empty()) {
        saved = saveEngineData(m_response);
        m_services.log.WriteErrorLog(saved ? "EngineFileSaved: " + std::to_string(m_index)
                                           : std::string("SaveFileError:"));
    }
    Q_EMIT fileEnded(file);
    if (!m_running) return;
    if (saved) {
        GetFile();
        return;
    }
    m_state.reason.insert(0, std::string(file.name) + ": ");
    setErrorMsg();
}

// Why the reply cannot be stored; empty for a good one.
std::string EngineUpdate::problemOf(std::int32_t status) const {
    if (status == frmHTTPMX::kTimedOut)
        return "The server has sent nothing for " + std::to_string(patience(m_services.preference)) +
               " seconds.";
    const std::string_view problem =
        m_client.LocalFailure() != nullptr ? m_client.LocalFailure() : m_client.Problem();
    if (status == HttpClient::kNoStatus)
        return "The server does not answer" + (problem.empty() ? "." : ": " + std::string(problem) + ".");
    if (status != 200) return "The server answered with status " + std::to_string(status) + ".";
    if (!problem.empty()) return "The file did not arrive whole: " + std::string(problem) + ".";
    if (m_response.size() >= kLargestFile) return "The file is too large.";
    if (isWebPage(m_response)) return "The server sent a web page instead of the file.";
    // No data file has a NUL; a compressed one, or a program, does.
    if (m_response.find('\0') != npos) return "The server sent binary data instead of the file.";
    return {};
}

bool EngineUpdate::saveEngineData(std::string_view text) {
    if (text.empty()) {
        m_state.reason = "The file is empty.";
        return false;
    }
    const std::size_t index = m_index++;
    const bool isLast = m_index == kUpdateFiles.size();
    return attempt("saveEngineData_Error:", [&] {
        if (isLast) {
            m_services.preference.DownEngineData = "0";
            m_services.settings.setValue(kApplication, "Setting", "Download", "0");
            m_services.settings.trySave();
            refresh();
        }
        m_store.store(index, text);
        m_unloaded = !isLast;
        m_state.maximum = m_state.value = 0;
    });
}

void EngineUpdate::refresh() {
    m_unloaded = false;
    m_catalogue.RefreshEngineData();
}

void EngineUpdate::setErrorMsg() {
    m_state.Label1 = kFailed;
    m_state.Label1IsError = true;
    m_state.Label2 = kInstallerLink;
    leave(m_requested ? UpdateEnding::FileFailed : UpdateEnding::CouldNotRun);
}

void EngineUpdate::finish() {
    m_state.Label1 = kUpdated;
    m_state.Label2.clear();
    m_services.prompts.beep();
    leave(UpdateEnding::Updated);
}

void EngineUpdate::leave(UpdateEnding ending) {
    m_running = false;
    m_silence.stop();
    m_own.reset();
    m_state.startEnabled = true;
    m_state.step.clear();
    m_state.maximum = m_state.value = 0;
    m_state.canUndo = m_store.canUndo();
    trap(m_services.prompts, "compareCatalogues_Error: ", [&] {
        m_change = m_store.hasStored() ? m_store.change(m_services.preference.refusesAdultSites())
                                       : CatalogueChange();
        if (m_store.hasStored()) m_state.changes = m_change.report();
    });
    if (ending == UpdateEnding::Updated) m_store.begin();
    Q_EMIT changed();
    Q_EMIT ended(ending);
}

void EngineUpdate::Close() {
    m_state.Label2.clear();
    if (m_running) {
        m_client.Abort();
        leave(UpdateEnding::Stopped);
    }
    if (m_unloaded) refresh();
}

std::string EngineUpdate::installerAddress() const {
    if (!containsNoCase(m_state.Label2, "krveng.exe")) return {};
    std::string server = m_server.empty() ? kWebAddress : m_server;
    const std::string& named = m_services.preference.UpdateServer;
    // A name that is no server ended the update; the maker's server is left.
    if (m_server.empty() && !named.empty()) failureOf([&] { server = serverAddress(named); });
    return server + std::string(kInstallerPath);
}

void EngineUpdate::askToUndo() {
    if (!m_services.prompts.ask("This puts the engine data files back as they were before the last update. "
                                "Files that were not there before are removed.\r\n\r\nAre you sure you want "
                                "to take the last update back?",
                                kTitle))
        return;
    trap(m_services.prompts, "undo_Error: ", [&] { undo(); });
}

void EngineUpdate::undo() {
    if (m_running) throw Failure("An update is running.");
    if (m_catalogue.isHeld()) throw Failure(std::string(kHeld));
    if (!m_store.canUndo()) throw Failure("There is no update to take back.");
    CatalogueChange change = m_store.changeOfUndo(m_services.preference.refusesAdultSites());
    m_store.undo();
    m_change = std::move(change);
    if (m_catalogue.engineDataPresent())
        refresh();
    else
        m_catalogue.forgetEngines();
    open(kUndone);
    m_state.changes = m_change.report();
    Q_EMIT changed();
}

}  // namespace relay
