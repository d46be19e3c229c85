// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace relay {

// The files of an update server by their paths ("/enginedata/krveng5.dat").
using UpdateTexts = std::map<std::string, std::string, std::less<>>;

// The update files of the practice web, and how it answers for each. The files change only before it serves;
// the rest is thread-safe.
class PracticeUpdate final {
  public:
    void publish(UpdateTexts files) { m_files = std::move(files); }
    const UpdateTexts& files() const noexcept { return m_files; }
    // The word of an outcome, or empty for the file itself. Throws Failure for a path that is not published
    // and for a word that is no outcome.
    void fail(std::string_view path, std::string_view word);
    std::string failureOf(std::string_view path) const;

  private:
    UpdateTexts m_files;
    mutable std::mutex m_mutex;
    UpdateTexts m_words;
};

}  // namespace relay
