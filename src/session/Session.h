// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/Catalogue.h"
#include "core/Log.h"
#include "core/Paths.h"
#include "core/Services.h"
#include "core/SettingsStore.h"
#include "core/clsPreference.h"
#include "transport/HttpNetwork.h"

#include <string>
#include <string_view>

namespace relay {

// What every program opens first: one home with its paths, log, settings, network and catalogue. Until asked,
// it reads only the settings file and writes nothing.
class Session final {
  public:
    // `commandLine` is all of it without the program's name; the log looks for its switch there. `clock` and
    // `prompts` must outlive the session.
    Session(Paths where, const Clock& clock, std::string_view commandLine, Prompts& prompts);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Starts the log and reads the settings; shows and logs a failure.
    void readSettings(SettingsReader reader = SettingsReader::Window);

    const Paths paths;
    Log log;
    SettingsStore settings;
    clsPreference preference;
    HttpNetwork network;
    const Services services;
    Catalogue catalogue;
};

}  // namespace relay
