// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/EnginesInstallCommand.h"

#include "catalogue/PasswordKey.h"
#include "catalogue/UpdateFiles.h"
#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/Table.h"
#include "core/Failure.h"
#include "core/JsonLine.h"
#include "core/Paths.h"
#include "practice/PracticeAddress.h"
#include "practice/PracticeWeb.h"
#include "session/InstalledData.h"

namespace relay {

EnginesInstallCommand::EnginesInstallCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "install", "Install the program's catalogue in the home",
              "--home try engines install --practice\n--home try engines install --practice --replace") {
    app().add_flag("--replace", m_replace, "Replace existing files that differ");
    CLI::Option* practice =
        app().add_flag("--practice", m_practice, "The practice catalogue, for a running practice web");
    app()
        .add_option("--practice-address", m_practiceAddress,
                    "Address of the practice web (default: the one running for this home)")
        ->type_name("HOST:PORT")
        ->needs(practice);
}

std::string EnginesInstallCommand::practiceAddress() {
    if (m_practiceAddress.empty()) return runningPracticeWeb(context().home().paths);
    try {
        return serverAddress(m_practiceAddress);
    } catch (const Failure&) {
        throw UsageError("--practice-address takes HOST:PORT, as in 127.0.0.1:8080.");
    }
}

std::vector<CatalogueFile> EnginesInstallCommand::collect() {
    const Paths& paths = context().home().paths;
    if (!m_practice) return readCatalogueFiles(paths);
    const std::string address = practiceAddress();
    std::vector<CatalogueFile> files = readCatalogueFiles(paths, "practice");
    for (CatalogueFile& file : files)
        if (file.ofEngines) file.bytes = pointAtPracticeWeb(file.bytes, address);
    return files;
}

void EnginesInstallCommand::compare(std::vector<CatalogueFile>& files) const {
    std::string inTheWay;
    for (const std::string& path : compareWithHome(files)) inTheWay += "\n  " + path;
    if (!m_replace && !inTheWay.empty())
        throw Failure(
            "Nothing was installed: these files already exist and differ. Use --replace to replace them." +
            inTheWay);
}

int EnginesInstallCommand::execute() {
    std::vector<CatalogueFile> files = collect();
    compare(files);
    writeCatalogueFiles(files);
    Table table({});
    for (const CatalogueFile& file : files) {
        if (context().json) {
            JsonLine().add("file", file.target).add("state", stateName(file.state)).write(context().out());
        } else {
            table.add({std::string(stateName(file.state)), file.target});
        }
    }
    if (!context().quiet) table.write(context().console().err, false);
    if (!m_practice) context().note(kPasswordKeyNotice);
    return kSucceeded;
}

}  // namespace relay
