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

// "/200/..." answers 200, and so with any status; any other path waits until the client goes away.
void statusByPath(FaultServer::Peer& peer);

// A home with a catalogue, a submission wizard on it and a server for its engines, and what a run told.
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
    // "Name=<prefix>1" and so on, all with one action and the query "u=<url>"; a path is one of the server's.
    std::string records(std::string_view prefix, int count, std::string_view action) const;
    // A website file of the projects; gives its path.
    std::string website(const std::string& name, const std::vector<std::string>& urls,
                        std::string_view fields = {}) const {
        return home.writeWebsite("Projects/" + name + ".kws", urls, fields);
    }
    // Through the pages up to the list of URLs; then the run starts.
    void prepare(const std::vector<std::string>& websites);
    void start(const std::vector<std::string>& websites);
    void run(const std::vector<std::string>& websites);
    bool waitForEnd();

    std::vector<std::string> boxes() const;  // "title|text" of every message
};

}  // namespace relay::test
