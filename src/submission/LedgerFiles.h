// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/RunDigests.h"

#include <QDateTime>

#include <string>

namespace relay {

// The head of a ledger, apart from the run's plan.
struct LedgerHead final {
    QDateTime time;  // when the run began
    RunDigests digests;
    bool blockSpam = false;  // the setting BlockSpam as the run uses it
};

// Ledgers in a home, and their paths, numbered from 1.
inline constexpr int kMostLedgers = 9;
std::string ledgerPath(const std::string& home, int number);

}  // namespace relay
