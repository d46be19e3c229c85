// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Clock.h"
#include "core/Paths.h"

#include <QTemporaryDir>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace relay::test {

// A home in a temporary folder, with its folders and nothing else.
class TestHome final {
  public:
    TestHome();

    const Paths& paths() const noexcept { return m_paths; }
    std::string path(std::string_view relative) const;  // inside the home
    // Writes a file inside the home (making folders) and returns its path.
    std::string write(std::string_view relative, std::string_view bytes) const;
    std::string read(std::string_view relative) const;
    // Writes a website file with these URLs, and `fields` ("Key=value\r\n"...) in its first section.
    std::string writeWebsite(std::string_view relative, const std::vector<std::string>& urls,
                             std::string_view fields = {}) const;

  private:
    QTemporaryDir m_folder;
    Paths m_paths;
};

// The permission bits of a file, 0 when there is none.
unsigned modeOf(const std::string& path);

class FixedClock final : public Clock {
  public:
    QDateTime time = QDateTime(QDate(2002, 4, 1), QTime(13, 5, 0));
    QDateTime now() const override { return time; }
};

// Runs the event loop until the condition is true; false after a limit that only a broken program reaches.
bool waitUntil(const std::function<bool()>& condition, int limitMilliseconds = 30000);

}  // namespace relay::test
