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
    // Places in the plan, from 0.
    struct Pair final {
        std::uint16_t url = 0;
        std::uint16_t engine = 0;
        std::int16_t result = NotReached;
        std::int32_t code = 0;
        std::int64_t milliseconds = 0;
    };

    std::string path;  // of the ledger
    LedgerHead head;
    std::vector<Pair> ended;         // in their order
    std::vector<Pair> inFlight;      // begun, and nothing more is known of them: they are sent again
    std::vector<UrlReport> reports;  // of the URLs that are finished
    std::vector<bool> finished;      // by the plan's URLs: reported, or removed by the user

    // Pairs that are still to be sent, those in flight among them.
    std::int64_t left() const;
};

// What a ledger says. Nothing where its run is over, or was cut off before anything was sent. Lines that are
// torn, or of a kind that is not known, are passed over. Throws Failure when the file cannot be read, or is
// no ledger of a version that is known.
std::optional<CutOffRun> readLedger(const std::string& path);

// The newest run of the home that was cut off and that no program is at now; nothing when there is none.
// Throws Failure when there is none but a file that is no ledger.
std::optional<CutOffRun> findCutOffRun(const std::string& home);

// What has changed since the run began, a phrase each ("the engine file krveng5.dat", "the setting
// BlockSpam", "the website file /home/ada/shop.kws"); empty: it may go on.
std::vector<std::string> changedSince(const LedgerHead& head, const RunDigests& now);

}  // namespace relay
