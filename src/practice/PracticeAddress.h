// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/CategoryPage.h"

#include <string>

namespace relay {

struct Paths;
class clsPreference;

// The file of the home with the address of a running practice web, which writes it at its start and removes
// it at its end.
std::string practiceAddressFile(const Paths& paths);
// The address of the practice web running for this home, "http://127.0.0.1:PORT". Throws Failure when none
// answers.
std::string runningPracticeWeb(const Paths& paths);

// The hosts of the two outside directories: those of the settings, else the practice web running for this
// home plays them.
DirectoryHosts directoryHosts(const Paths& paths, const clsPreference& preference);

// Keeps the file for the duration of a block.
class PracticeAddress final {
  public:
    // Throws Failure when the file cannot be written.
    PracticeAddress(const Paths& paths, const std::string& address);
    // Removes the file unless another practice web has written it since.
    ~PracticeAddress();
    PracticeAddress(const PracticeAddress&) = delete;
    PracticeAddress& operator=(const PracticeAddress&) = delete;

  private:
    std::string m_file;
    std::string m_bytes;
};

}  // namespace relay
