// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/RunEvents.h"

#include "core/JsonLine.h"
#include "submission/SubmissionRecords.h"

namespace relay {

void addEngineEnded(JsonLine& line, const EngineEnded& ended) {
    line.add("url", ended.URL)
        .add("engine", ended.engine)
        .add("code", ended.code)
        .add("result", ended.result)
        .add("word", resultWord(ended.result))
        .add("ms", ended.milliseconds);
}

void addUrlReport(JsonLine& line, const UrlReport& report) {
    line.add("url", report.URL)
        .add("website", report.website)
        .add("path", report.path)
        .add("success", report.success)
        .add("failed", report.failed);
}

}  // namespace relay
