// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

struct Paths;

// One ended request of a submission: an engine and a URL.
struct HealthPair final {
    std::string engine;
    std::string url;
    std::int32_t code = 0;    // HTTP status or the pool's code
    std::int16_t result = 0;  // class in the report
    bool succeeded = false;
    QDateTime ended;
};

// How an engine did in the submissions of this home.
struct EngineHealth final {
    static constexpr int kFailingRuns = 3;

    std::string engine;
    QDateTime lastSuccess;  // invalid: never
    int failures = 0;       // requests in a row, up to the last one
    int failedRuns = 0;     // runs in a row in which no request succeeded

    bool isFailing() const noexcept { return failedRuns >= kFailingRuns; }
};

// The engines' health, in the home's history. Operations throw Failure when the file cannot be read or
// written. The newest 200,000 requests are kept, and the health of every engine.
class HealthStore final {
  public:
    explicit HealthStore(const Paths& paths);

    // Adds requests of one run, in the order in which they ended, whole or not at all. `run` is the same for
    // all of one run and for no other.
    void add(std::string_view run, const std::vector<HealthPair>& pairs);
    // By name; none without a history.
    std::vector<EngineHealth> engines() const;

  private:
    std::string m_file;
};

// "2002-04-01 13:05:00"; empty for an invalid time.
std::string healthTime(const QDateTime& time);

}  // namespace relay
