// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/RunPlan.h"
#include "submission/SubmissionRecords.h"

#include <QDateTime>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

class Catalogue;
struct Services;

// What the requests of a run are made of, as SHA-256 in hex digits. A run goes on only where it is the same.
struct RunDigests final {
    std::map<std::string, std::string> catalogue;  // by the file's name
    std::string settings;                          // as they are kept; a run may use others
    std::map<std::string, std::string> websites;   // by the file's path; the fields and URLs, not its reports

    // Of the catalogue as it is loaded, and of the website files as they stand. One that cannot be read has
    // an empty digest.
    static RunDigests of(const Services& services, const Catalogue& catalogue, const RunPlan& plan);
};

// The first line of a ledger.
struct LedgerHead final {
    QDateTime time;
    RunDigests digests;
    bool blockSpam = false;  // the setting BlockSpam as the run uses it
    RunPlan plan;
};

// The record of one run as it happens, so that the run can go on after a crash or a power cut: JSON Lines in
// a file "run.jsonl" of the home (or "run-2.jsonl" up to "run-9.jsonl", where runs are side by side or were
// cut off), readable by its owner only and only ever appended to. One line goes out before a request is sent
// and one when it has ended; both are the system's before the next thing happens, so a killed program loses
// none, and are flushed to the disk once a second, by a thread of the ledger's own. The writer holds a lock
// on the file. The file goes at the run's end.
//
// A line that cannot be written (a full disk) ends the ledger and removes the file: half a record would have
// pairs sent twice. The run goes on; problem() has the reason.
class Ledger final {
  public:
    Ledger();
    ~Ledger();  // leaves the file to be gone on with
    Ledger(const Ledger&) = delete;
    Ledger& operator=(const Ledger&) = delete;

    // A new run: takes a free file of the home. Where all hold runs that were cut off, the oldest of them
    // goes. Throws Failure.
    void begin(const std::string& home, const LedgerHead& head);
    // Goes on with a file. Throws Failure when another program is writing to it.
    void goOn(const std::string& path);
    bool isOpen() const noexcept;
    const std::string& problem() const noexcept;

    // Each does nothing on a ledger that is not open.
    void start(const QDateTime& time, std::string_view website, std::string_view URL,
               std::string_view engine);
    void ended(const QDateTime& time, std::string_view website, const EngineEnded& ended);
    void reported(const QDateTime& time, const UrlReport& report);
    void removed(const QDateTime& time, std::string_view website, std::string_view URL);
    // The run is over: the file goes.
    void finish();
    // Closes the file, which stays.
    void leave() noexcept;

  private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

}  // namespace relay
