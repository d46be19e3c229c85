// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/Session.h"

#include <utility>

namespace relay {

Session::Session(Paths where, const Clock& clock, std::string_view commandLine, Prompts& prompts)
    : paths(std::move(where)),
      log(paths.inApp("Error.log"), clock, commandLine),
      settings(paths.settingsFile),
      preference(paths, settings, log, prompts),
      services{paths, settings, preference, log, prompts, clock, network},
      catalogue(services) {}

void Session::readSettings(SettingsReader reader) {
    if (!preference.GetSettings(reader)) log.WriteErrorLog("GetSettings Error.\r\n");
}

}  // namespace relay
