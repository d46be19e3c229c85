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

// What every program opens first: one home with its places, log, settings, network and catalogue. Nothing is
// read but the settings file, and nothing written, until it is asked for.
class Session final {
  public:
    // `commandLine` is the whole of it without the program's name: the log looks for its switch there.
    // `clock` and `prompts` outlive the session.
    Session(Paths where, const Clock& clock, std::string_view commandLine, Prompts& prompts);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Makes the home's folders and copies the word files that are absent from the installed data. Throws
    // Failure when the home cannot be written.
    void prepareHome() const;
    // Starts the log's run and reads the settings; a failure was told and is in the log.
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
