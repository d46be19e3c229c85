// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/Ledger.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace relay {

// A run that was cut off, as its ledger has it.
struct CutOffRun final {
    std::string path;       // of the ledger
    std::int64_t size = 0;  // of the ledger, in bytes
    LedgerHead head;
    RunPlan plan;
    std::vector<PairEnd> ended;      // in their order
    std::vector<PairEnd> inFlight;   // begun, and nothing more is known of them: they are sent again
    std::vector<UrlReport> reports;  // of the URLs that are finished
    std::vector<bool> finished;      // by the plan's URLs: reported, or taken out by the user

    // Pairs that are still to be sent, those in flight among them.
    std::int64_t left() const;
};

// What a ledger says. Nothing where its run is over, or was cut off before anything was sent. Lines that are
// torn, or of a kind that is not known, are passed over. Throws Failure when the file cannot be read, or is
// no ledger, or one of a version that is not known.
std::optional<CutOffRun> readLedger(const std::string& path);

// Whether the end of the run stands in the file, or nothing was sent in it: without reading all of it.
bool isLedgerOver(const std::string& path);

// The newest run of the home that was cut off and that no program is at now; nothing when there is none.
// Throws Failure where there is none, but a file that is no ledger.
std::optional<CutOffRun> findCutOffRun(const std::string& home);

}  // namespace relay
