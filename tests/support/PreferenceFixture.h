// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/FileSystem.h"
#include "core/Log.h"
#include "core/SettingsStore.h"
#include "core/clsPreference.h"
#include "support/ScriptedPrompts.h"
#include "support/TestHome.h"

#include <string>
#include <utility>

namespace relay::test {

// The preference and all it depends on, on a home of its own.
struct PreferenceFixture {
    explicit PreferenceFixture(std::string ownCommandLine = {}) : commandLine(std::move(ownCommandLine)) {}

    TestHome home;
    FixedClock clock;
    ScriptedPrompts prompts;
    std::string commandLine;
    SettingsStore store{home.paths().settingsFile};
    Log log{home.path("Error.log"), clock, commandLine};
    clsPreference preference{home.paths(), store, log, prompts};

    std::string logText() const { return fileExists(home.path("Error.log")) ? home.read("Error.log") : ""; }
};

}  // namespace relay::test
