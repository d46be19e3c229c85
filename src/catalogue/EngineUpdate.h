// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/UpdateStore.h"
#include "transport/HttpClient.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace relay {

class Catalogue;
struct Services;
struct UpdateFile;

// What the update's screen shows.
struct UpdateState final {
    std::string Label1;
    bool Label1IsError = false;
    std::string Label2;  // empty: hidden
    bool startEnabled = true;
    std::string step;          // "krveng5.dat (1 of 5)" while a file is fetched
    std::int64_t maximum = 0;  // of the bar, in bytes; 0 while unknown
    std::int64_t value = 0;
    std::string reason;   // why the update failed or cannot start; else empty
    std::string changes;  // what it changed in the catalogue; else empty
    bool canUndo = false;
};

// The fate of one file of an update.
struct UpdatedFile final {
    std::string_view name;
    std::int32_t status = 0;  // HTTP status, or a code of the connection pool
    std::size_t bytes = 0;    // received
};

enum class UpdateEnding {
    Updated,      // all files were stored
    FileFailed,   // those before it stay
    CouldNotRun,  // nothing was requested
    Stopped,
};

// The update of the catalogue's files: fetches them one after the other from the update server and stores
// each. Without a server in the settings the program serves its own installed starter data for the time of
// the update. It has an HTTP client of its own, with the proxy of the settings.
class EngineUpdate final : public QObject {
    Q_OBJECT
  public:
    static constexpr std::size_t kLargestFile = std::size_t{64} * 1024 * 1024;

    // The address of the program's own server, which serves as long as the pointer is kept. Throws Failure.
    using OwnServer = std::function<std::shared_ptr<const std::string>()>;

    EngineUpdate(const Services& services, Catalogue& catalogue, OwnServer ownServer,
                 QObject* parent = nullptr);

    const UpdateState& state() const noexcept { return m_state; }
    bool isRunning() const noexcept { return m_running; }

    // A new showing, with this text.
    void open(std::string_view prompt = {});
    // Uses this server, HOST or HOST:PORT, instead of that of the settings. Throws Failure for other texts.
    void setServer(std::string_view host);
    // Disables Start while a run uses the engines, and says so.
    void checkHold();
    // Starts the update; it ends with ended(), perhaps before this returns. Does nothing while one is running
    // or a run uses the engines. After a failure this is a new try of the same update: undo() takes all tries
    // back, and change() compares with what was there before the first.
    void Start();
    // Ends a running update; the files stored so far stay. Loads them if that has not happened yet.
    void Close();
    // The address behind Label2, for the system's browser; empty when it is no link.
    std::string installerAddress() const;

    // Takes the last update back and loads the files. Throws Failure when there is none, while one is
    // running, and while a run uses the engines.
    void undo();
    // The same after a question, failures shown.
    void askToUndo();
    // What the last Start() or undo() changed.
    const CatalogueChange& change() const noexcept { return m_change; }

  Q_SIGNALS:
    void changed();  // the state
    void fileEnded(const relay::UpdatedFile& file);
    void ended(relay::UpdateEnding ending);

  private:
    template <typename Operation>
    bool attempt(std::string_view words, Operation&& operation);
    void chooseServer();
    void GetFile();
    void received();
    std::string problemOf(std::int32_t status) const;
    bool saveEngineData(std::string_view text);
    void setErrorMsg();
    void finish();
    void leave(UpdateEnding ending);
    void refresh();
    void showProgress(qint32 bytes);

    const Services& m_services;
    Catalogue& m_catalogue;
    OwnServer m_ownServer;
    UpdateStore m_store;
    UpdateState m_state;
    CatalogueChange m_change;
    HttpClient m_client;
    QTimer m_silence;  // fires when the server has sent nothing for too long
    std::string m_server;
    std::string m_address;
    std::shared_ptr<const std::string> m_own;
    std::string m_response;
    std::size_t m_index = 0;
    bool m_running = false;
    bool m_silent = false;
    bool m_requested = false;
    bool m_unloaded = false;  // files were stored that are not loaded yet
};

}  // namespace relay
