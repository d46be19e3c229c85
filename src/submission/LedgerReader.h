// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/LedgerFiles.h"
#include "submission/RunPlan.h"
#include "submission/SubmissionRecords.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace relay {

// An interrupted run, as recorded in its ledger.
struct CutOffRun final {
    std::string path;       // of the ledger
    std::int64_t size = 0;  // of the ledger, in bytes
    LedgerHead head;
    RunPlan plan;
    std::vector<PairEnd> ended;      // in the order in which they ended
    std::vector<PairEnd> inFlight;   // sent, but without a known end: they are sent again
    std::vector<UrlReport> reports;  // of the finished URLs
    std::vector<bool> finished;      // by URL of the plan: reported, or removed by the user

    // Pairs still to be sent, including those in flight.
    std::int64_t left() const;
    // "Harbour Search for http://shop.example/", with control characters escaped.
    std::string nameOf(const PairEnd& pair) const;
};

// Reads a ledger. Returns nothing if its run is over or was interrupted before anything was sent. Skips torn
// and unknown lines, and lines over 1 MiB. Throws Failure if the file cannot be read, is not a ledger of a
// known version, or is far larger than its run.
std::optional<CutOffRun> readLedger(const std::string& path);

// True if the run is over or sent nothing. Does not read the whole file.
bool isLedgerOver(const std::string& path);

// The newest interrupted run of the home that no program is continuing, or nothing. Throws Failure if there
// is none but one of the files is not a ledger.
std::optional<CutOffRun> findCutOffRun(const std::string& home);

}  // namespace relay
