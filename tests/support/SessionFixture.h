// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/FileSystem.h"
#include "session/Session.h"
#include "support/ScriptedPrompts.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace relay::test {

// A session on a home of its own, with boxes answered from a script.
struct SessionFixture {
    explicit SessionFixture(std::string_view commandLine = {})
        : session(home.paths(), clock, commandLine, prompts) {}

    TestHome home;
    FixedClock clock;
    ScriptedPrompts prompts;
    Session session;

    const Services& services = session.services;
    clsPreference& preference = session.preference;
    Log& log = session.log;
    Catalogue& catalogue = session.catalogue;
    EngineLists& lists = catalogue.lists;
    EngineSelection& selection = catalogue.selection;

    bool loadEngines(std::string_view engines, std::string_view tables = "[Free For All Links]\n") {
        home.write("data/catkws.dat", tables);
        home.write("data/krveng5.dat", engines);
        return catalogue.loadEngineData();
    }
    std::string logText() const { return fileExists(home.path("Error.log")) ? home.read("Error.log") : ""; }
};

inline std::vector<std::string> texts(const Rows& rows) {
    std::vector<std::string> all;
    for (int row = 0; row < rows.count(); ++row) all.emplace_back(rows.at(row).text);
    return all;
}

}  // namespace relay::test
