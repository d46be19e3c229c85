// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/EngineUpdate.h"
#include "practice/LoopbackServer.h"
#include "practice/PracticeUpdate.h"

#include <string>
#include <string_view>

namespace relay {

struct Paths;

// The files that an update server publishes, as they were installed with the program; `engines` is the
// sub-folder of the engine files, "" for the starter catalogue. Throws Failure when one is missing.
UpdateTexts readUpdateTexts(const Paths& paths, std::string_view engines = {});

// An update server on 127.0.0.1 with the installed starter data, for as long as it lives.
class StarterServer final {
  public:
    // Throws Failure when a file is missing or it cannot listen.
    explicit StarterServer(const Paths& paths);

    const std::string& address() const noexcept { return m_server.address(); }

  private:
    const UpdateTexts m_files;
    LoopbackServer m_server;
};

// For EngineUpdate. `paths` must outlive the function.
EngineUpdate::OwnServer starterServer(const Paths& paths);

}  // namespace relay
