// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace relay {

class JsonLine;
struct EngineEnded;
struct UrlReport;

// The members of a run's events, the same in the output of the command line and in the ledger: url, engine,
// code, result, word, ms ...
void addEngineEnded(JsonLine& line, const EngineEnded& ended);
// ... and url, website, path, success, failed.
void addUrlReport(JsonLine& line, const UrlReport& report);

}  // namespace relay
