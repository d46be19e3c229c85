// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/LedgerFiles.h"

namespace relay {

std::string ledgerPath(const std::string& home, int number) {
    return home + (number == 1 ? "/run.jsonl" : "/run-" + std::to_string(number) + ".jsonl");
}

}  // namespace relay
