// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace relay {

class JsonLine;
struct EngineEnded;
struct UrlReport;

// The members of a run's events, as the command line tells them and the ledger keeps them: url, engine, code,
// result, word, ms ...
void addEngineEnded(JsonLine& line, const EngineEnded& ended);
// ... and url, website, path, success, failed.
void addUrlReport(JsonLine& line, const UrlReport& report);

}  // namespace relay
