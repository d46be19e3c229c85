// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pagetools/Findings.h"

#include <string>
#include <vector>

namespace relay {

// A table with a line for each finding: address, line, severity, rule, found, and what to do.
std::string findingsAsCsv(const std::vector<FindingsOfPage>& pages);
// The findings in SARIF 2.1.0, as tools for code review read them, with the explanation of each rule.
std::string findingsAsSarif(const std::vector<FindingsOfPage>& pages);

}  // namespace relay
