// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Descriptor.h"

#include <string>

namespace relay {

// Keeps a second run, of this program or another, out of a profile's folder as long as it exists: a lock on a
// hidden file in the folder. The lock of a killed program does not count.
class RunLock final {
  public:
    // Throws Failure when a run has the folder, or the file cannot be made.
    explicit RunLock(const std::string& folder);
    ~RunLock();
    RunLock(const RunLock&) = delete;
    RunLock& operator=(const RunLock&) = delete;

  private:
    std::string m_path;
    Descriptor m_file;
};

}  // namespace relay
