// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/SubmissionController.h"
#include "support/FaultServer.h"
#include "support/SessionFixture.h"

#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace relay::test {

// "/200/..." answers 200, and so on for any status; any other path waits until the client leaves.
void statusByPath(FaultServer::Peer& peer);

// A home with a catalogue, its submission wizard, a server for the engines, and the signals of a run.
struct SubmissionFixture : SessionFixture {
    explicit SubmissionFixture(std::string ownCommandLine = {});
    // A new wizard, in place of the one before.
    void openController();

    const FaultServer server{statusByPath};
    std::optional<SubmissionController> controller;

    struct Ended final {
        std::string url;
        std::string engine;
        int code;
        int result;
    };
    std::vector<Ended> ended;
    std::vector<UrlReport> reports;
    std::optional<RunSummary> done;
    bool linkEngines;

    // Loads the records and selects them all.
    void selectEngines(std::string_view records, std::string_view tables = "[Free For All Links]\n");
    // "Name=<prefix>1" and so on, all with one action and the query "u=<url>"; the action may be a path on
    // the server.
    std::string records(std::string_view prefix, int count, std::string_view action) const;
    // Writes a website file and returns its path.
    std::string website(const std::string& name, const std::vector<std::string>& urls,
                        std::string_view fields = {}) const {
        return home.writeWebsite("Projects/" + name + ".kws", urls, fields);
    }
    // prepare() goes through the pages up to the list of URLs; start() also starts the run.
    void prepare(const std::vector<std::string>& websites);
    void start(const std::vector<std::string>& websites);
    void run(const std::vector<std::string>& websites);
    bool waitForEnd();

    std::vector<std::string> boxes() const;  // "title|text" of every message
};

}  // namespace relay::test
