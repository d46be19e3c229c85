// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/LedgerFiles.h"
#include "submission/RunPlan.h"
#include "submission/SubmissionRecords.h"

#include <QDateTime>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace relay {

// The record of one run as it happens, so that the run can be continued after a crash or a power cut: JSON
// Lines in the file "run.jsonl" of the home ("run-2.jsonl" up to "run-9.jsonl" while that belongs to another
// run), readable by its owner only and only ever appended to. A line is written before a request is sent, and
// another when it has ended. Lines are written without a buffer, so a killed program loses none; a thread of
// the ledger flushes them to the disk once a second. The writer holds a lock on the file. The end of the run
// removes it.
//
// If a line cannot be written (a full disk), the ledger ends and its file is removed: from half a record,
// pairs would be sent twice. The run itself continues; problem() returns the reason.
class Ledger final {
  public:
    Ledger();
    ~Ledger();  // leave()
    Ledger(const Ledger&) = delete;
    Ledger& operator=(const Ledger&) = delete;

    // A new run: takes a free file of the home. If all nine contain interrupted runs, the oldest is removed.
    // Throws Failure.
    void begin(const std::string& home, const LedgerHead& head, const RunPlan& plan);
    // Continues a file that had this many bytes when it was read. Throws Failure if another program writes,
    // or has written, to it.
    void goOn(const std::string& path, std::int64_t size);
    bool isOpen() const noexcept;
    // Why lines could not be written, or empty.
    const std::string& problem() const noexcept;

    // Each does nothing if the ledger is not open.
    void start(const QDateTime& time, std::string_view website, std::string_view URL,
               std::string_view engine);
    void ended(const QDateTime& time, std::string_view website, const EngineEnded& ended);
    // A report is about to be written there, and has been.
    void reporting(const QDateTime& time, std::string_view website, std::string_view URL,
                   std::string_view path);
    void reported(const QDateTime& time, const UrlReport& report);
    // The user removed a URL from the run.
    void removed(const QDateTime& time, std::string_view website, std::string_view URL);
    // The run is over: removes the file.
    void finish();
    // Closes the file and keeps it.
    void leave() noexcept;

  private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

}  // namespace relay
