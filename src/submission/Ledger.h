// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/RunDigests.h"
#include "submission/RunPlan.h"
#include "submission/SubmissionRecords.h"

#include <QDateTime>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace relay {

// What stands in front of a ledger, beside the run's plan.
struct LedgerHead final {
    QDateTime time;  // when the run began
    RunDigests digests;
    bool blockSpam = false;  // the setting BlockSpam as the run uses it
};

// The record of one run as it happens, so that the run can go on after a crash or a power cut: JSON Lines in
// a file "run.jsonl" of the home (or "run-2.jsonl" up to "run-9.jsonl", where runs are side by side or were
// cut off), readable by its owner only and only ever appended to. A line is written before a request is sent
// and one when it has ended. Each is the system's before anything else happens, so a killed program loses
// none; a thread of the ledger's own flushes them to the disk once a second. The writer holds a lock on the
// file. The file goes at the run's end.
//
// A line that cannot be written (a full disk) ends the ledger and removes the file: with half a record, pairs
// would be sent twice. The run goes on; problem() has the reason.
class Ledger final {
  public:
    Ledger();
    ~Ledger();  // leaves the file to be gone on with
    Ledger(const Ledger&) = delete;
    Ledger& operator=(const Ledger&) = delete;

    // A new run: takes a free file of the home. Where all nine hold runs that were cut off, the oldest goes.
    // Throws Failure.
    void begin(const std::string& home, const LedgerHead& head, const RunPlan& plan);
    // Goes on with a file that had this many bytes when it was read. Throws Failure when another program
    // writes to it, or has.
    void goOn(const std::string& path, std::int64_t size);
    bool isOpen() const noexcept;
    // Why lines could not be written, or empty.
    const std::string& problem() const noexcept;

    // Each does nothing on a ledger that is not open.
    void start(const QDateTime& time, std::string_view website, std::string_view URL,
               std::string_view engine);
    void ended(const QDateTime& time, std::string_view website, const EngineEnded& ended);
    // A report is about to be written there, and has been.
    void reporting(const QDateTime& time, std::string_view website, std::string_view URL,
                   std::string_view path);
    void reported(const QDateTime& time, const UrlReport& report);
    // The user took a URL out of the run.
    void removed(const QDateTime& time, std::string_view website, std::string_view URL);
    // The run is over: the file goes.
    void finish();
    // Closes the file, which stays.
    void leave() noexcept;

  private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

// The names a ledger may have in the home.
inline constexpr int kMostLedgers = 9;
std::string ledgerPath(const std::string& home, int number);  // from 1

}  // namespace relay
