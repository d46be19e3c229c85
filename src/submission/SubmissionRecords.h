// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace relay {

// The limit for URLs of a run and for engines: both are counted in 16 bits.
inline constexpr std::int16_t kMostOfWork = 32767;

// Result classes of a submission, passed as 16-bit numbers; 0 is an engine that was never reached. The report
// has words for classes 6 to 9, 11 and 12, but nothing sets them.
enum SubmissionResult : std::int16_t {
    NotReached = 0,
    Success = 2,
    Failed = 3,
    SubmissionTimeout = 4,
    Cancelled = 5,
    StartFailed = 10,
    UnknownError = 13,
    ServerError = 14,
};

// The message for choosing a website without URLs.
inline constexpr std::string_view kNoURL =
    "There is not URL in current selected web site, please enter the web site URL before submit.";

// The word for a class in the report; "Unknown Error" outside 2 to 14.
std::string_view resultWord(std::int16_t result) noexcept;
// The class for a code of the pool. Every status below 499 is a success: the page itself is not examined.
std::int16_t classifyReply(std::int32_t code) noexcept;

// One engine of a run. Result is the class for the last URL sent to it.
struct EngineResult final {
    std::string Name;
    std::string Home;
    std::string AddURL;
    std::int16_t Result = NotReached;
};

// How far a connection is with its engine, shown by an icon.
enum class ConnectionStage { Waiting, Connecting, Connected, Completed };

// The work of one connection of the pool.
struct SubmitSocket final {
    ConnectionStage Stage = ConnectionStage::Waiting;
    std::int16_t Stopped = 0;  // -1 once stopSubmission has cancelled it
    std::int16_t Flags = 0;
    std::int16_t Busy = 0;  // 1 from Submitting until the result is stored
    QDateTime LastDone;
    std::string Home;
    std::string EngineName;
    std::string Method;
    std::string Action;  // for a GET the full URL
    std::string SubmitData;
    std::int16_t Result = NotReached;
    std::int16_t EngineIndex = 0;  // index in EngineTable from 1; 0: none yet
    std::chrono::steady_clock::time_point Started{};
    std::int32_t Code = 0;  // from the pool
};

// Data of the signals of a run.
struct EngineEnded final {
    std::string_view URL;  // the views are valid during the call
    std::string_view engine;
    std::int32_t code = 0;  // HTTP status or the pool's code; 0 without a Completed of the pool
    std::int16_t result = NotReached;
    std::int64_t milliseconds = 0;
    std::int16_t EngineIndex = 0;  // place in EngineTable from 1
};

struct UrlReport final {
    std::string URL;
    std::string website;  // path of the website file
    std::string path;     // of the report; empty if it could not be written
    std::string problem;  // why saving failed, or empty
    int success = 0;      // number of engines in the report's tables
    int failed = 0;
};

// Requests of the whole run by outcome; `cancelled` counts those that a stop ended.
struct RunSummary final {
    int urls = 0;
    int success = 0;
    int failed = 0;
    int cancelled = 0;
    int sharedReports = 0;  // reports that share a file with another report of the run
    int sharedFiles = 0;    // the number of such files; each contains its last report
    bool stopped = false;
};

}  // namespace relay
