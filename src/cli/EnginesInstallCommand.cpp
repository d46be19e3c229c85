// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/EnginesInstallCommand.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/PracticeAddress.h"
#include "cli/Table.h"
#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/JsonLine.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "practice/PracticeCatalogue.h"

#include <algorithm>
#include <cctype>
#include <cstring>

namespace relay {

EnginesInstallCommand::EnginesInstallCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "install", "Put the catalogue that comes with the program into the home",
              "engines install\nengines install --practice --replace") {
    app().add_flag("--replace", m_replace, "Replace files that are there and differ");
    CLI::Option* practice =
        app().add_flag("--practice", m_practice, "The practice catalogue, for the practice web that runs");
    app()
        .add_option("--practice-address", m_practiceAddress,
                    "Where the practice web is (default: the one that runs for this home)")
        ->type_name("HOST:PORT")
        ->needs(practice);
}

std::string EnginesInstallCommand::practiceAddress() {
    if (m_practiceAddress.empty()) return runningPracticeWeb(context().home().paths);
    const auto allowed = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || std::strchr(".-:[]", c) != nullptr;
    };
    std::string_view host = m_practiceAddress;
    if (startsWithNoCase(host, "http://")) host.remove_prefix(7);
    if (host.ends_with('/')) host.remove_suffix(1);
    if (host.empty() || !std::all_of(host.begin(), host.end(), allowed))
        throw UsageError("--practice-address takes HOST:PORT, as in 127.0.0.1:8080.");
    return "http://" + std::string(host);
}

std::vector<EnginesInstallCommand::File> EnginesInstallCommand::collect() {
    const std::string address = m_practice ? practiceAddress() : std::string();
    const Paths& paths = context().home().paths;
    const std::string data =
        installedDataFolder(context().console().programFolder, context().console().environment);
    if (data.empty())
        throw Failure(
            "The files that are installed with the program are missing. KORVEL_RELAY_DATA names their "
            "folder.");
    std::vector<File> files;
    for (const char* name : {"country.kws", "cat.kws", "top.kws"})
        files.push_back({paths.inApp(name), readFile(data + "/" + name)});
    for (const char* name : {"krveng5.dat", "catkws.dat"}) {
        std::string bytes = readFile(data + (m_practice ? "/practice/" : "/") + name);
        if (m_practice) bytes = pointAtPracticeWeb(bytes, address);
        files.push_back({paths.inWindows(name), std::move(bytes)});
    }
    return files;
}

void EnginesInstallCommand::compare(std::vector<File>& files) const {
    std::string inTheWay;
    for (File& file : files) {
        if (!fileExists(file.target)) continue;
        if (readFile(file.target) == file.bytes) {
            file.state = "unchanged";
        } else {
            file.state = "replaced";
            inTheWay += "\n  " + file.target;
        }
    }
    if (!m_replace && !inTheWay.empty())
        throw Failure(
            "Nothing was installed: these files are there already, and differ. --replace replaces them." +
            inTheWay);
}

int EnginesInstallCommand::execute() {
    std::vector<File> files = collect();
    compare(files);
    Table table({});
    for (const File& file : files) {
        if (std::string_view(file.state) != "unchanged") writeFile(file.target, file.bytes);
        if (context().json) {
            JsonLine().add("file", file.target).add("state", file.state).write(context().out());
        } else {
            table.add({file.state, file.target});
        }
    }
    if (!context().quiet) table.write(context().console().err, false);
    return kSucceeded;
}

}  // namespace relay
