// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "practice/LoopbackServer.h"
#include "practice/PracticeUpdate.h"

#include <string>

namespace relay {

// The files that an update server publishes, read from the folder of the files installed with the program;
// `engines` is the sub-folder of the engine files, "" for the starter catalogue. Throws Failure when one is
// missing.
UpdateTexts readUpdateTexts(const std::string& installedData, const std::string& engines = {});

// An update server on 127.0.0.1 with the installed starter data, for as long as it lives.
class StarterServer final {
  public:
    // Throws Failure when a file is missing or it cannot listen.
    explicit StarterServer(const std::string& installedData);

    const std::string& address() const noexcept { return m_server.address(); }

  private:
    const UpdateTexts m_files;
    LoopbackServer m_server;
};

}  // namespace relay
