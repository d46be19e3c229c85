// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace relay {

struct Paths;

// Where a running practice web is found: a file of the home that it writes when it starts and removes when it
// ends.
std::string practiceAddressFile(const Paths& paths);
// The address of the practice web that runs for this home, "http://127.0.0.1:PORT". Throws Failure when none
// answers.
std::string runningPracticeWeb(const Paths& paths);

// Keeps the file for the length of a block.
class PracticeAddress final {
  public:
    // Throws Failure when the file cannot be written.
    PracticeAddress(const Paths& paths, const std::string& address);
    // Removes the file, unless another practice web wrote it since.
    ~PracticeAddress();
    PracticeAddress(const PracticeAddress&) = delete;
    PracticeAddress& operator=(const PracticeAddress&) = delete;

  private:
    std::string m_file;
    std::string m_bytes;
};

}  // namespace relay
