// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "practice/PracticeRequest.h"
#include "practice/PracticeWeb.h"

#include <deque>
#include <mutex>
#include <optional>

namespace relay {

// What the practice web received, oldest first: the newest 10,000 submissions within 32 MiB. Thread-safe.
class ReceivedLog final {
  public:
    static constexpr std::size_t kMostSubmissions = 10000;
    static constexpr std::size_t kMostBytes = std::size_t{32} * 1024 * 1024;

    void add(std::string_view engine, const PracticeRequest& request);
    // At most the newest `count`, oldest first, fields decoded.
    std::vector<ReceivedSubmission> newest(std::size_t count = kMostSubmissions) const;
    // Submission `before` - 1 by order of arrival, or the newest if that is older; nullopt if it is no longer
    // stored. The number is returned too, so that all can be read one by one.
    struct Numbered final {
        std::size_t number = 0;
        ReceivedSubmission submission;
    };
    std::optional<Numbered> newestBefore(std::size_t before) const;
    std::size_t kept() const;
    std::size_t total() const;  // since the start, including those no longer stored
    void clear();

  private:
    struct Kept final {
        QDateTime time;
        std::string engine;
        PracticeRequest request;
        std::size_t bytes;
        ReceivedSubmission decoded() const;
    };

    mutable std::mutex m_mutex;
    std::deque<Kept> m_kept;
    std::size_t m_bytes = 0;
    std::size_t m_total = 0;
};

}  // namespace relay
